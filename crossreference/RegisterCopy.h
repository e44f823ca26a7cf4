#pragma once

#include <crossreference/NetlistState.h>

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace XRF_RTL2LL {

/// The final copy of extended reading: what the synthesized view knows of a register goes to the
/// RTL bit of the same register, wherever the hierarchy was flattened, and only then do other names
/// count.
class RegisterCopy {
 public:
  explicit RegisterCopy(NetlistState& state);

  /// Registers first, then equally named signals, but never onto another register's bit.
  void copy();
  /// Marks the RTL registers that the synthesized view does not have.
  void markUnread();

 private:
  // A register whose name tells no signal, with the register of the same instance path, if any.
  struct Unnamed {
    const Signal* rtl;
    const Signal* synth;
  };

  void matchUnnamed();
  void matchFlattened();
  std::string twinName(const std::string& rtl) const;
  Signal* namesake(const Signal& rtl) const;
  Signal* twin(const Signal& rtl) const;
  std::string belowTop(const std::string& name, EdifView view) const;

  NetlistState& m_state;
  std::vector<Signal*> m_registers;  // RTL signals that hold registers, in name order
  std::unordered_map<const Signal*, Signal*> m_flattened;
  std::vector<Unnamed> m_unnamed;
  std::unordered_set<const Signal*> m_disputed;  // of a name that may mean two registers
};

}  // namespace XRF_RTL2LL
