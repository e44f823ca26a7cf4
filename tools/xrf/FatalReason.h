#pragma once

#include <support/Handlers.h>

#include <string>

namespace xrf {

/// The bare reason of a fatal error, on one line: the library's texts may begin with "ERROR:" and
/// the place, which whoever shows it puts in front.
std::string reasonOf(const XRF_RTL2LL::Fatal& fatal);

}  // namespace xrf
