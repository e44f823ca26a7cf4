#pragma once

#include <crossreference/NetlistState.h>

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace XRF_RTL2LL {

/// Which register of the synthesized view is which register of the RTL, as extended reading tells
/// it.
class RegisterPairs {
 public:
  /// A register whose name tells no signal, with the register of the same instance path, if any.
  struct Unnamed {
    const Signal* rtl;
    const Signal* synth;
  };

  explicit RegisterPairs(const NetlistState& state);

  /// RTL signals that hold registers, in name order.
  const std::vector<Signal*>& registers() const { return m_registers; }
  /// The synthesized signal of one of them, or null.
  Signal* twin(const Signal& rtl) const;
  /// Whether a register could not be told from another one.
  bool isDisputed(const Signal& rtl) const { return m_disputed.count(&rtl) != 0; }
  const std::vector<Unnamed>& unnamed() const { return m_unnamed; }
  /// The synthesized signal of the same name below the top, or null.
  Signal* namesake(const Signal& rtl) const;

 private:
  // An RTL register under the name that it may have been flattened from.
  struct FlatName {
    std::string name;
    Signal* rtl;
  };
  using Flattened = std::unordered_multimap<std::string, FlatName>;

  void matchUnnamed();
  void matchFlattened();
  void findKeptLevels();
  bool isJoined(const std::string& name, const std::string& flat) const;
  void addFlattened(Flattened& missing, Signal& rtl) const;
  void settleFlattened(const std::unordered_map<Signal*, std::vector<Signal*>>& claims,
                       const std::unordered_set<const Signal*>& taken,
                       const std::unordered_set<const Signal*>& crowded);
  Signal* unambiguous(const Signal& rtl, Signal* synth) const;
  std::string twinName(const std::string& rtl) const;
  std::string belowTop(const std::string& name, EdifView view) const;

  const NetlistState& m_state;
  std::vector<Signal*> m_registers;
  std::unordered_set<std::uint64_t> m_kept;  // levels that synthesized names still have, hashed
  std::unordered_map<const Signal*, Signal*> m_flattened;
  std::vector<Unnamed> m_unnamed;
  std::unordered_set<const Signal*> m_disputed;  // of a name that may mean two registers
};

}  // namespace XRF_RTL2LL
