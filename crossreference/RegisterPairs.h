#pragma once

#include <crossreference/NetlistState.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace XRF_RTL2LL {

/// Which register of the synthesized view is which register of the RTL, as extended reading tells
/// it.
class RegisterPairs {
 public:
  /// An RTL signal that holds registers, and the synthesized signal of the same, or null.
  struct Pair {
    Signal* rtl;
    Signal* synth;
    bool disputed;  ///< it could not be told from another one
  };
  /// A register whose name tells no signal, with the register of the same instance path, if any.
  struct Unnamed {
    const Signal* rtl;
    const Signal* synth;
  };

  explicit RegisterPairs(const NetlistState& state);

  /// The pairs of a netlist, worked out when first asked for and again when it has grown.
  static std::shared_ptr<const RegisterPairs> of(const NetlistState& state);

  /// In name order of the RTL.
  const std::vector<Pair>& registers() const { return m_registers; }
  const std::vector<Unnamed>& unnamed() const { return m_unnamed; }
  /// Whether a register of the RTL has a flip-flop of its own name.
  bool isImplemented(const BitRef& place) const;

 private:
  // An RTL register under the name that it may have been flattened from.
  struct FlatName {
    std::string name;
    std::size_t number;  // of the register
  };
  using Flattened = std::unordered_multimap<std::string, FlatName>;
  using Signals = std::unordered_set<const Signal*>;
  // The synthesized signals that each register may be called now, by its number.
  using Claims = std::unordered_map<std::size_t, std::vector<Signal*>>;

  const Signal* twin(const Signal& rtl) const;
  static std::vector<Signal*> tiedSignals(const NetlistState& state, EdifView view);
  void findNamesakes();
  void matchUnnamed();
  void matchFlattened();
  void findKeptLevels();
  bool isJoined(std::string_view name, std::string_view flat) const;
  Flattened namesOfMissing() const;
  void settleFlattened(const Claims& claims, const Signals& crowded);
  bool isCurrent() const;

  const NetlistState& m_state;
  std::array<Module*, 2> m_top;
  std::size_t m_signals;  // how many the model had
  std::vector<Pair> m_registers;
  std::vector<std::uint32_t> m_by_address;   // numbers of the registers by their RTL signals
  std::unordered_set<std::uint64_t> m_kept;  // levels that synthesized names still have, hashed
  std::vector<Unnamed> m_unnamed;
};

}  // namespace XRF_RTL2LL
