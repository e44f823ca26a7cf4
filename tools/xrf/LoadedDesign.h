#pragma once

#include <crossreference/Design.h>
#include <tools/xrf/Console.h>

#include <string>
#include <string_view>

namespace xrf {

/// Reads a cross-reference file into `design`; one that holds no design is a Failure.
void load(XRF_RTL2LL::Design& design, const std::string& path, Console& console);

/// "rtl" or "synth".
std::string_view viewName(XRF_RTL2LL::EdifView view);

}  // namespace xrf
