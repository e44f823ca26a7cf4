#pragma once

#include <crossreference/NetlistState.h>
#include <crossreference/Reading.h>

namespace XRF_RTL2LL {

/// Ties the cells that hold state to the register bits their instance names tell, as extended
/// reading does it.
class RegisterTies {
 public:
  RegisterTies(NetlistState& state, EdifView view) : m_state(state), m_view(view) {}

  /// Whether a module counts as a register: by its kind, or as a cell that holds state.
  static bool isRegister(const NetlistState& state, const Module& module);
  /// The port that holds a register's value, or null.
  static Signal* outputOf(const Module& instance);

  /// The signal of a name in a module, made or widened to cover lsb..msb.
  Signal* widen(Module& parent, const std::string& name, std::uint32_t lsb, std::uint32_t msb);
  /// Makes the bits of a register's output the bits it is named for. A replica gives way to its
  /// original, and nobody takes a place twice.
  void tie(Module& parent, Module& instance, const NamedBits& name);
  /// Finds the place of a register of a loaded model, whose bits are merged already.
  void recall(Module& parent, Module& instance, const NamedBits& name);

  /// Takes all registers below a module for disputed, since its name is another's too.
  static void disputeAll(const Module& module);
  /// Joins a net to the signal bit that bears its name; false where that is a register which does
  /// not drive the net.
  static bool join(BitRef& place, BitRef& net);
  static bool isTied(const BitRef& ref) { return ref.m_register; }
  static bool isTied(const BitRef* ref) { return ref != nullptr && ref->m_register; }
  /// Whether a signal has a register at any index.
  static bool holdsRegisters(const Signal& signal);
  /// Whether a place is of several registers, so that it is of none.
  static bool isDisputed(const BitRef& ref) { return ref.m_disputed; }

 private:
  static void dispute(BitRef& place, BitRef& value);
  static void yield(BitRef& place);
  void noteTied(Signal& signal);
  void disputeAt(Module& parent, const Signal& output, const NamedBits& name);
  bool recallAt(Module& parent, const Signal& output, const NamedBits& name);

  NetlistState& m_state;
  EdifView m_view;
};

}  // namespace XRF_RTL2LL
