#include <crossreference/RegisterPairs.h>
#include <crossreference/RegisterTies.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

bool isTied(const BitRef* ref) { return ref != nullptr && RegisterTies::isTied(*ref); }

bool holdsRegisters(const Signal& signal) {
  for (std::uint64_t index = signal.getLsb(); index <= signal.getMsb(); ++index) {
    if (isTied(signal.getBitRef(static_cast<std::uint32_t>(index), true))) return true;
  }
  return false;
}

std::string flattened(std::string name) {
  std::replace(name.begin(), name.end(), '/', '_');
  return normalised(std::move(name));
}

void sortByName(std::vector<Signal*>& signals) {
  std::sort(signals.begin(), signals.end(), [](const Signal* a, const Signal* b) {
    return NameKey::compare(NameKey(*a), NameKey(*b)) < 0;
  });
}

}  // namespace

RegisterPairs::RegisterPairs(const NetlistState& state) : m_state(state) {
  m_state.signals[RTL].each([&](Signal* signal) {
    if (holdsRegisters(*signal)) m_registers.push_back(signal);
  });
  sortByName(m_registers);
  matchFlattened();
  matchUnnamed();
}

std::string RegisterPairs::belowTop(const std::string& name, EdifView view) const {
  const Module* top = m_state.top.at(view);
  const std::string prefix = top == nullptr ? "/" : NameKey(*top).compose() + "/";
  return name.compare(0, prefix.size(), prefix) == 0 ? name.substr(prefix.size()) : name;
}

// The full name that an object of the RTL view has in the synthesized view.
std::string RegisterPairs::twinName(const std::string& rtl) const {
  std::string name = NameKey(*m_state.top[SYNTH]).compose();
  name += '/';
  return name += belowTop(rtl, RTL);
}

Signal* RegisterPairs::namesake(const Signal& rtl) const {
  const Module* rtlTop = m_state.top[RTL];
  const Module* synthTop = m_state.top[SYNTH];
  if (rtlTop == nullptr || synthTop == nullptr) return nullptr;
  if (NameKey::compare(NameKey(*rtlTop), NameKey(*synthTop)) == 0) {
    return m_state.signals[SYNTH].find(NameKey(rtl));
  }
  return m_state.signals[SYNTH].find(twinName(rtl.getFullName()));
}

// An instance name such as count_reg_3_ tells no bit, but the same instance in both views is the
// same register.
void RegisterPairs::matchUnnamed() {
  if (m_state.top[RTL] == nullptr || m_state.top[SYNTH] == nullptr) return;
  m_state.modules[RTL].each([&](const Module* module) {
    if (module->getName() == nullptr || !RegisterTies::isRegister(m_state, *module)) return;
    const Signal* output = RegisterTies::outputOf(*module);
    if (output == nullptr || decodeRegister(module->getName()).valid) return;
    const Module* synth = m_state.modules[SYNTH].find(twinName(NameKey(*module).compose()));
    const bool both = synth != nullptr && RegisterTies::isRegister(m_state, *synth);
    m_unnamed.push_back({output, both ? RegisterTies::outputOf(*synth) : nullptr});
  });
}

// Where the hierarchy was flattened with "_", a register is found by its name with all levels
// joined, if that can mean only one register on either side.
void RegisterPairs::matchFlattened() {
  std::unordered_map<std::string, std::vector<Signal*>> missing;
  std::unordered_map<const Signal*, bool> taken;
  for (Signal* rtl : m_registers) {
    Signal* same = namesake(*rtl);
    if (same != nullptr && holdsRegisters(*same)) {
      taken[same] = true;
    } else {
      missing[flattened(belowTop(rtl->getFullName(), RTL))].push_back(rtl);
    }
  }
  if (missing.empty()) return;
  // A register that has its twin may be what a flattened one is called now.
  for (const Signal* rtl : m_registers) {
    const std::string name = flattened(belowTop(rtl->getFullName(), RTL));
    const auto found = missing.find(name);
    if (found == missing.end()) continue;
    const bool other = found->second.size() > 1 || found->second.front() != rtl;
    if (other) m_disputed.insert(rtl);
  }
  std::unordered_map<std::string, std::vector<Signal*>> left;
  m_state.signals[SYNTH].each([&](Signal* synth) {
    if (taken.count(synth) != 0 || !holdsRegisters(*synth)) return;
    left[flattened(belowTop(synth->getFullName(), SYNTH))].push_back(synth);
  });
  for (const auto& [name, signals] : missing) {
    const auto found = left.find(name);
    if (found == left.end() || signals.size() != 1 || found->second.size() != 1) continue;
    m_flattened[signals.front()] = found->second.front();
  }
}

Signal* RegisterPairs::twin(const Signal& rtl) const {
  if (m_disputed.count(&rtl) != 0) return nullptr;
  const auto found = m_flattened.find(&rtl);
  return found != m_flattened.end() ? found->second : namesake(rtl);
}

}  // namespace XRF_RTL2LL
