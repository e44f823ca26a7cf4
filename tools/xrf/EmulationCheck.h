#pragma once

#include <support/Limits.h>

#include <string>

namespace xrf {

/// Throws a Failure when `file` cannot be read, is no sound metadata document, or is one from which
/// the emulation map would not come back: the map itself reads in silence.
void requireMappable(const std::string& file, const XRF_RTL2LL::Limits& limits);

}  // namespace xrf
