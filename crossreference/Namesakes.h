#pragma once

#include <crossreference/NetlistState.h>

namespace XRF_RTL2LL {

/// Finds the signals of the synthesized view that bear the names of RTL signals below the top. It
/// remembers the last module, since signals of one module mostly come one after another.
class Namesakes {
 public:
  explicit Namesakes(const NetlistState& state);

  /// False for a signal of a module that the synthesized view does not have, at little cost.
  bool mayFind(const Signal& rtl);
  /// Null where there is none, and where several signals have the name on either side.
  Signal* find(const Signal& rtl);
  /// The module of the synthesized view that bears the name of an RTL module below the top, or
  /// null.
  const Module* find(const Module& rtl) const;

 private:
  const Module* twinOf(const Module* module);
  Signal* findAnywhere(const Signal& rtl) const;

  const NetlistState& m_state;
  bool m_tops = false;      // both views have one
  bool m_same_top = false;  // of one name
  bool m_plain = false;     // so that modules tell where names are
  const Module* m_module = nullptr;
  const Module* m_twin = nullptr;
};

/// The part of a full name of a view that is below its top.
std::string belowTop(const NetlistState& state, const std::string& name, EdifView view);

/// The full name that an object of the RTL view has in the synthesized view, which has a top.
std::string twinName(const NetlistState& state, const std::string& rtl);

}  // namespace XRF_RTL2LL
