#include <crossreference/Namesakes.h>

#include <algorithm>

namespace XRF_RTL2LL {

Namesakes::Namesakes(const NetlistState& state) : m_state(state) {
  const Module* rtl = state.top[RTL];
  const Module* synth = state.top[SYNTH];
  m_tops = rtl != nullptr && synth != nullptr;
  m_same_top = m_tops && NameKey::compare(NameKey(*rtl), NameKey(*synth)) == 0;
  m_plain = m_same_top && state.isPlain();
}

const Module* Namesakes::twinOf(const Module* module) {
  if (module != m_module) {
    m_module = module;
    m_twin = m_state.modules[SYNTH].find(NameKey(*module));
  }
  return m_twin;
}

bool Namesakes::mayFind(const Signal& rtl) {
  return m_tops && (!m_plain || twinOf(rtl.getModule()) != nullptr);
}

Signal* Namesakes::find(const Signal& rtl) {
  if (!mayFind(rtl)) return nullptr;
  if (m_plain && rtl.getName() != nullptr) return findIn(*twinOf(rtl.getModule()), rtl);
  return unlessAmbiguous(rtl, findAnywhere(rtl));
}

Signal* Namesakes::findIn(const Module& twin, const Signal& rtl) const {
  return unlessAmbiguous(rtl, m_state.signals[SYNTH].find(twin, ModelState::nameOf(&rtl)));
}

Signal* Namesakes::unlessAmbiguous(const Signal& rtl, Signal* synth) const {
  const bool one = synth != nullptr && !m_state.isAmbiguous(rtl) && !m_state.isAmbiguous(*synth);
  return one ? synth : nullptr;
}

std::vector<Module*> Namesakes::find(const std::vector<const Module*>& rtl) const {
  const ModuleRegistry& modules = m_state.modules[SYNTH];
  std::vector<Module*> found(rtl.size());
  if (!m_tops) return found;
  if (!m_same_top) {
    std::transform(rtl.begin(), rtl.end(), found.begin(), [&](const Module* module) {
      return modules.find(twinName(m_state, NameKey(*module).compose()));
    });
    return found;
  }
  const std::span<const Module* const> named(rtl);
  const std::span<Module*> places(found);
  for (std::size_t at = 0; at < rtl.size(); at += ModuleRegistry::mostTogether) {
    const std::size_t count = std::min(ModuleRegistry::mostTogether, rtl.size() - at);
    modules.findTogether(named.subspan(at, count), places.subspan(at, count));
  }
  return found;
}

Signal* Namesakes::findAnywhere(const Signal& rtl) const {
  return m_same_top ? m_state.signals[SYNTH].find(NameKey(rtl))
                    : m_state.signals[SYNTH].find(twinName(m_state, rtl.getFullName()));
}

NamesBelowTop::NamesBelowTop(const NetlistState& state, EdifView view) {
  const Module* top = state.top.at(view);
  if (top != nullptr) NameKey(*top).appendTo(m_prefix);
  m_prefix += '/';
}

std::string twinName(const NetlistState& state, const std::string& rtl) {
  std::string name = NameKey(*state.top[SYNTH]).compose();
  name += '/';
  return name += NamesBelowTop(state, RTL).part(rtl);
}

}  // namespace XRF_RTL2LL
