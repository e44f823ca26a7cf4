#pragma once

#include <crossreference/RegisterPairs.h>

#include <memory>
#include <unordered_map>
#include <vector>

namespace XRF_RTL2LL {

/// The final copy of extended reading: what the synthesized view knows of a register goes to the
/// RTL bit of the same register, wherever the hierarchy was flattened, and only then do other names
/// count.
class RegisterCopy {
 public:
  explicit RegisterCopy(NetlistState& state) : m_state(state), m_pairs(RegisterPairs::of(state)) {}

  /// Registers first, then equally named signals, but never onto another register's bit.
  void copy();
  /// Marks the RTL registers that the synthesized view does not have.
  void markUnread();

 private:
  // An RTL name that can show its bit what the same name knows in the synthesized view.
  struct Name {
    const Bit* bit;
    const BitRef* to;
    const BitRef* from;
  };

  void copyRegisters();
  void copyNames();
  static bool comesFirst(const Name& a, const Name& b);
  static void sortBySignal(std::vector<Name>& names);
  static void keepFirst(std::vector<Name>& names);
  bool isOpen(const Bit& bit) const;
  bool takesName(const BitRef& to, const BitRef& from);
  bool isMere(const Bit& bit);

  NetlistState& m_state;
  std::shared_ptr<const RegisterPairs> m_pairs;
  std::unordered_map<const Bit*, bool> m_mere;  // what was found out about bits of many references
};

}  // namespace XRF_RTL2LL
