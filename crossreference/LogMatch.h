#pragma once

#include <crossreference/NetlistState.h>
#include <crossreference/Reading.h>

#include <string>
#include <string_view>
#include <vector>

namespace XRF_RTL2LL {

/// What one line of a synthesis log says of a register, in any of its spellings.
struct LogLine {
  enum Kind { None, Constant, Merge, Suppressed };
  Kind kind = None;
  bool value = false;  ///< of a constant
  std::string name;    ///< the register that is gone
  std::string into;    ///< the register it was merged into

  static LogLine parse(std::string_view text);
};

/// Finds the RTL registers that a log speaks of, as extended reading does it.
class LogMatch {
 public:
  explicit LogMatch(NetlistState& state) : m_state(state) {}

  enum class Outcome {
    Marked,
    Contradicted,  ///< the register is located, so it can be no constant
    Unknown        ///< no register has the name
  };
  Outcome markConstant(const LogLine& line);
  void noteMerge(const LogLine& line) { m_merges.push_back(line); }
  /// Makes merged registers share the bits of their survivors; returns how many lines it could
  /// follow, and the names of the others.
  std::size_t applyMerges(std::vector<std::string>& unmatched);

 private:
  std::vector<BitRef*> find(const std::string& name) const;
  std::vector<BitRef*> registersOf(const NamedBits& bits) const;
  bool merge(const std::vector<BitRef*>& gone, const std::vector<BitRef*>& survivors);

  NetlistState& m_state;
  std::vector<LogLine> m_merges;
};

}  // namespace XRF_RTL2LL
