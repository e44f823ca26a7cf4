#pragma once

#include <crossreference/XRF_RTL2LL.h>

#include <string>
#include <vector>

namespace xrf {

/// What a design's netlists were tied to, and how.
struct DeviceFiles {
  std::string locations;  ///< empty where there was none
  std::string log;        ///< the same
  XRF_RTL2LL::Matching matching;
};

/// What makes one doubt that the files of a complete design belong together, each as a warning:
/// netlists that were swapped, device files of which no line fits. Strict matching finds none of
/// many lines that fit, so that there it says nothing.
std::vector<std::string> doubtsOf(const XRF_RTL2LL::Design& design, const DeviceFiles& files);

}  // namespace xrf
