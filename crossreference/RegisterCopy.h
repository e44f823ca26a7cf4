#pragma once

#include <crossreference/RegisterPairs.h>

namespace XRF_RTL2LL {

/// The final copy of extended reading: what the synthesized view knows of a register goes to the
/// RTL bit of the same register, wherever the hierarchy was flattened, and only then do other names
/// count.
class RegisterCopy {
 public:
  explicit RegisterCopy(NetlistState& state) : m_state(state), m_pairs(state) {}

  /// Registers first, then equally named signals, but never onto another register's bit.
  void copy();
  /// Marks the RTL registers that the synthesized view does not have.
  void markUnread();

 private:
  void copyRegisters();
  void copyNames();
  bool isOpen(const Bit& bit) const;
  static bool isMereName(const BitRef& ref);

  NetlistState& m_state;
  RegisterPairs m_pairs;
};

}  // namespace XRF_RTL2LL
