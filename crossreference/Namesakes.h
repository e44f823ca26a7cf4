#pragma once

#include <crossreference/NetlistState.h>

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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
  /// The modules of the synthesized view that bear the names of RTL modules below the top, null
  /// where there is none.
  std::vector<Module*> find(const std::vector<const Module*>& rtl) const;
  /// Calls `visit` with each RTL signal that `isWanted` takes and its namesake, in any order.
  template <class IsWanted, class Visit>
  void eachPair(IsWanted isWanted, Visit visit);

 private:
  /// Calls `visit` with each RTL module and the synthesized one of its name.
  template <class Visit>
  void eachTwin(Visit visit) const;
  Signal* findIn(const Module& twin, const Signal& rtl) const;
  const Module* twinOf(const Module* module);
  Signal* findAnywhere(const Signal& rtl) const;
  Signal* unlessAmbiguous(const Signal& rtl, Signal* synth) const;

  const NetlistState& m_state;
  bool m_tops = false;      // both views have one
  bool m_same_top = false;  // of one name
  bool m_plain = false;     // so that modules tell where names are
  const Module* m_module = nullptr;
  const Module* m_twin = nullptr;
};

template <class Visit>
void Namesakes::eachTwin(Visit visit) const {
  std::array<const Module*, ModuleRegistry::mostTogether> modules;
  std::array<Module*, ModuleRegistry::mostTogether> twins;
  std::size_t count = 0;
  const auto settle = [&] {
    m_state.modules[SYNTH].findTogether(std::span(modules).first(count), twins);
    for (std::size_t at = 0; at < count; ++at) {
      if (twins[at] != nullptr) visit(*modules[at], *twins[at]);
    }
    count = 0;
  };
  m_state.modules[RTL].each([&](const Module* module) {
    modules[count++] = module;
    if (count == modules.size()) settle();
  });
  settle();
}

template <class IsWanted, class Visit>
void Namesakes::eachPair(IsWanted isWanted, Visit visit) {
  const SignalRegistry& signals = m_state.signals[RTL];
  if (m_plain) {
    eachTwin([&](const Module& module, const Module& twin) {
      signals.eachOf(module, [&](const Signal* rtl) {
        const Signal* synth = isWanted(*rtl) ? findIn(twin, *rtl) : nullptr;
        if (synth != nullptr) visit(*rtl, *synth);
      });
    });
    return;
  }
  signals.each([&](const Signal* rtl) {
    const Signal* synth = mayFind(*rtl) && isWanted(*rtl) ? find(*rtl) : nullptr;
    if (synth != nullptr) visit(*rtl, *synth);
  });
}

/// Tells the part of full names of a view that is below its top.
class NamesBelowTop {
 public:
  NamesBelowTop(const NetlistState& state, EdifView view);

  /// Of a module or signal; valid until the next call.
  template <class T>
  std::string_view of(const T& object) {
    m_name.clear();
    NameKey(object).appendTo(m_name);
    return part(m_name);
  }
  /// Of a full name.
  std::string_view part(std::string_view name) const {
    return name.substr(name.starts_with(m_prefix) ? m_prefix.size() : 0);
  }

 private:
  std::string m_prefix;
  std::string m_name;
};

/// The full name that an object of the RTL view has in the synthesized view, which has a top.
std::string twinName(const NetlistState& state, const std::string& rtl);

}  // namespace XRF_RTL2LL
