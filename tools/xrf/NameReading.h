#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace xrf {

/// One way to take a name that a user asked for: a signal, or some of its bits.
struct NameReading {
  std::string name;                  ///< of the signal
  std::optional<std::string> index;  ///< of the bits, possibly with wildcards; absent for all bits
};

/// The readings of a name as written in RTL, the most literal first: `m[3][5]` is the signal of
/// that name, bit 5 of `m[3]`, bit 5 of `m<3>` (as the model names words of an array), or the whole
/// of `m<3><5>`.
std::vector<NameReading> readingsOf(const std::string& name);

/// The signal's part of a full name spelt as netlist identifiers are: "[", "]", "." and "$" as "_".
std::string asIdentifier(const std::string& name);

/// The name as a cross-reference file carries it: blanks, parentheses and control bytes as "_".
std::string asCarried(std::string name);

bool hasWildcard(std::string_view text);

/// Whether `text` matches a pattern of "*" (any characters, "/" included, or none) and "?" (one
/// character). All other characters stand for themselves.
bool matchesPattern(std::string_view pattern, std::string_view text);

}  // namespace xrf
