#pragma once

#include <string>

namespace xrf {

/// Names of a design that a shell asks for.
struct WantedNames {
  std::string typed;  ///< what they begin with
  std::string view;   ///< "rtl" or "synth"; empty for both
  bool cells;         ///< registers and other hidden cells, too
};

/// Prints the names of one level of the hierarchy, those of modules with a "/" behind them. Ends
/// the process without any when the file cannot be read within a second.
void offerNames(const std::string& file, const WantedNames& wanted);

}  // namespace xrf
