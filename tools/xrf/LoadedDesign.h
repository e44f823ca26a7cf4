#pragma once

#include <crossreference/Design.h>
#include <tools/xrf/Session.h>

#include <memory>
#include <string>
#include <string_view>

namespace xrf {

/// Reads a cross-reference file into `design`; one that holds no design is a Failure.
void load(XRF_RTL2LL::Design& design, const std::string& path, Console& console);

/// The design that a cross-reference file holds, within the session's limits and in extended
/// reading: it alone reads every file back and knows the registers.
std::unique_ptr<XRF_RTL2LL::Design> loaded(const std::string& path, Session& session);

/// "rtl" or "synth".
std::string_view viewName(XRF_RTL2LL::EdifView view);

}  // namespace xrf
