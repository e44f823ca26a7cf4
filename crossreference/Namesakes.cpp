#include <crossreference/Namesakes.h>

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
  if (!mayFind(rtl) || m_state.isAmbiguous(rtl)) return nullptr;
  const char* name = rtl.getName();
  Signal* synth = m_plain && name != nullptr
                      ? m_state.findByName(SYNTH, *twinOf(rtl.getModule()), name)
                      : findAnywhere(rtl);
  return synth == nullptr || m_state.isAmbiguous(*synth) ? nullptr : synth;
}

const Module* Namesakes::find(const Module& rtl) const {
  const ModuleRegistry& modules = m_state.modules[SYNTH];
  if (!m_tops) return nullptr;
  return m_same_top ? modules.find(NameKey(rtl))
                    : modules.find(twinName(m_state, NameKey(rtl).compose()));
}

Signal* Namesakes::findAnywhere(const Signal& rtl) const {
  return m_same_top ? m_state.signals[SYNTH].find(NameKey(rtl))
                    : m_state.signals[SYNTH].find(twinName(m_state, rtl.getFullName()));
}

std::string belowTop(const NetlistState& state, const std::string& name, EdifView view) {
  const Module* top = state.top.at(view);
  const std::string prefix = top == nullptr ? "/" : NameKey(*top).compose() + "/";
  return name.compare(0, prefix.size(), prefix) == 0 ? name.substr(prefix.size()) : name;
}

std::string twinName(const NetlistState& state, const std::string& rtl) {
  std::string name = NameKey(*state.top[SYNTH]).compose();
  name += '/';
  return name += belowTop(state, rtl, RTL);
}

}  // namespace XRF_RTL2LL
