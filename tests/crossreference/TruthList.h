#pragma once

#include <crossreference/XRF_RTL2LL.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace test {

/// A register bit of a generated design, and what became of it. The design generator writes these
/// lists from what it invented; no reader of this library had a part in them.
struct Truth {
  enum Status : std::uint8_t { Located, Constant, Removed };

  std::string source;  ///< name in the source
  std::string signal;  ///< full name of the signal that carries it in the RTL view
  unsigned int index = 0;
  Status status = Removed;
  unsigned int frame = 0;
  unsigned int offset = 0;
  bool value = false;
  bool isFound = false;  ///< by strict reading; where not, it must find nothing

  bool operator==(const Truth& other) const = default;
};

/// What stands between the tabs of a line.
std::vector<std::string> tabColumns(const std::string& line);
/// The lines of a truth list, comments included.
std::vector<std::string> truthLines(const std::string& path);
/// Throws for a line that is no register.
std::vector<Truth> parseTruth(const std::vector<std::string>& lines);

struct Verdict {
  std::vector<std::string> faults;
  std::size_t surviving = 0;  ///< registers that synthesis did not remove
  std::size_t found = 0;      ///< of these, the ones whose own location or constant was found
};

/// Compares a whole RTL view with a truth list. Every register must have what the list says and a
/// bit that no other register has, and no bit beside those of the list may be located, a constant
/// that nothing explains, or a register.
Verdict judge(const XRF_RTL2LL::Design& design, const std::vector<Truth>& truth);
/// Compares only the registers that must be found.
Verdict judgeFound(const XRF_RTL2LL::Design& design, const std::vector<Truth>& truth);

}  // namespace test
