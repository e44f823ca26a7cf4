#pragma once

#include <crossreference/Netlist.h>

#include <cstdint>
#include <string>

namespace xrf {

/// What of a design strict reading would not read back from the cross-reference file as it is.
struct StrictTraps {
  StrictTraps(const XRF_RTL2LL::Netlist& netlist, bool showHidden);

  /// Modules without anything to list. Each closes on its own line, which strict reading does not
  /// count, so that what follows ends up inside it. Extended reading counts it.
  std::uint64_t closingModules = 0;
  std::string firstClosingModule;
  /// Names that are empty, or hold a blank or a closing parenthesis: no reading knows their end.
  std::uint64_t brokenNames = 0;
  std::string firstBrokenName;
};

}  // namespace xrf
