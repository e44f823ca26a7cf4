#pragma once

#include <crossreference/NetlistState.h>
#include <crossreference/Reading.h>
#include <crossreference/RegisterPairs.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace XRF_RTL2LL {

/// What one line of a synthesis log says of a register, in any of its spellings.
struct LogLine {
  enum Kind { None, Constant, Merge, Suppressed };
  Kind kind = None;
  bool value = false;    ///< of a constant
  bool isLocal = false;  ///< of a merge: the names may be relative to some module
  std::string name;      ///< the register that is gone
  std::string into;      ///< the register it was merged into

  static LogLine parse(std::string_view text);
};

/// Finds the RTL registers that a log speaks of, as extended reading does it. What a log says of a
/// register that has a flip-flop of its own is not believed.
class LogMatch {
 public:
  explicit LogMatch(NetlistState& state) : m_state(state) {}

  enum class Outcome {
    Marked,
    Contradicted,  ///< the register is there, so it can be no constant
    Unknown        ///< no register has the name
  };
  Outcome markConstant(const LogLine& line);
  void noteMerge(const LogLine& line) { m_merges.push_back(line); }
  /// Makes merged registers share the bits of their survivors; returns how many lines it could
  /// follow, and the names of the others.
  std::size_t applyMerges(std::vector<std::string>& unmatched);

 private:
  // The bits of one register, from the right end of its range to the left.
  using Bits = std::vector<BitRef*>;
  enum class Bare { Refuse, Whole };  // what a bus without a range stands for

  std::vector<Bits> find(const std::string& name, Bare bare);
  Bits findBelow(const std::string& scope, const std::string& name, Bare bare) const;
  Bits bitsOf(const NamedBits& name, Bare bare) const;
  std::vector<std::string> scopesOf(const std::string& definition);
  bool follow(const LogLine& line);
  bool followLocally(const LogLine& line);
  bool merge(const Bits& gone, const Bits& survivors);
  bool merge(BitRef& gone, BitRef& survivor);
  const RegisterPairs& pairs();

  NetlistState& m_state;
  std::vector<LogLine> m_merges;
  std::shared_ptr<const RegisterPairs> m_pairs;
  std::unordered_multimap<std::string_view, const Module*> m_instances;  // by definition
  std::unordered_multimap<std::string, const Module*> m_holders;  // of registers, by local name
  std::unordered_set<const BitRef*> m_gone;
};

}  // namespace XRF_RTL2LL
