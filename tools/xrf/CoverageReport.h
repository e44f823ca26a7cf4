#pragma once

#include <crossreference/Design.h>
#include <tools/xrf/Json.h>

#include <string>

namespace xrf {

/// {"registers":…,"located":…,…,"modules":[{"path":…,…},…]}, modules in path order.
Json coverageJson(const XRF_RTL2LL::Coverage& coverage);

/// What became of the registers in all, and a table of the modules that miss most.
std::string coverageText(const XRF_RTL2LL::Coverage& coverage, bool colored);

}  // namespace xrf
