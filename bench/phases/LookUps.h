#pragma once

#include <crossreference/XRF_RTL2LL.h>

#include <cstddef>
#include <string>
#include <vector>

namespace phases {

/// The full name of a signal and the view that it is in.
struct SignalName {
  XRF_RTL2LL::EdifView view;
  std::string name;
};

/// Names of `count` signals of a design of the current model, half of them from each view and
/// spread evenly over it.
std::vector<SignalName> pickNames(const XRF_RTL2LL::Design& design, std::size_t count);

/// Looks all names up and returns how many were found.
std::size_t findAll(const XRF_RTL2LL::Design& design, const std::vector<SignalName>& names);

}  // namespace phases
