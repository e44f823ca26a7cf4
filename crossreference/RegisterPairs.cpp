#include <crossreference/Reading.h>
#include <crossreference/RegisterPairs.h>
#include <crossreference/RegisterTies.h>
#include <support/Limits.h>

#include <algorithm>
#include <cstring>

namespace XRF_RTL2LL {

namespace {

bool isTied(const BitRef* ref) { return ref != nullptr && RegisterTies::isTied(*ref); }

bool holdsRegisters(const Signal& signal) {
  for (std::uint64_t index = signal.getLsb(); index <= signal.getMsb(); ++index) {
    if (isTied(signal.getBitRef(static_cast<std::uint32_t>(index), true))) return true;
  }
  return false;
}

// A name with all its levels joined, the way flattening names what it brings up all the way.
std::string joinedLevels(std::string name) {
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

// Calls `visit` with the place of each "/" of a name and a hash of what stands before it.
template <class Visit>
void eachLevel(std::string_view name, Visit visit) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (std::size_t at = 0; at < name.size(); ++at) {
    if (name[at] == '/') visit(at, hash);
    hash = (hash ^ static_cast<unsigned char>(name[at])) * 0x100000001b3;
  }
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
    return unambiguous(rtl, m_state.signals[SYNTH].find(NameKey(rtl)));
  }
  return unambiguous(rtl, m_state.signals[SYNTH].find(twinName(rtl.getFullName())));
}

// A name that several signals have tells nothing.
Signal* RegisterPairs::unambiguous(const Signal& rtl, Signal* synth) const {
  const bool several =
      m_state.isAmbiguous(rtl) || (synth != nullptr && m_state.isAmbiguous(*synth));
  return several ? nullptr : synth;
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

// Modules that are left, and those that were dissolved with "/": nothing below them was joined to
// their names. Were two hashes ever equal, a register would be left out, never taken for another.
void RegisterPairs::findKeptLevels() {
  m_state.modules[SYNTH].each([&](const Module* module) {
    if (module->getName() == nullptr) return;
    const bool holdsModules = !module->getChildren(false).empty();
    const bool dissolved = std::strchr(module->getName(), '/') != nullptr;
    if (!holdsModules && !dissolved) return;
    std::string path = belowTop(NameKey(*module).compose(), SYNTH);
    if (holdsModules) path += '/';
    eachLevel(path, [&](std::size_t, std::uint64_t hash) { m_kept.insert(hash); });
  });
}

// Whether flattening can have made one name of the other: some levels are joined, all else is kept.
bool RegisterPairs::isJoined(const std::string& name, const std::string& flat) const {
  if (name.size() != flat.size()) return false;
  bool joined = true;
  eachLevel(name, [&](std::size_t at, std::uint64_t hash) {
    joined = joined && (flat[at] == '/' || (flat[at] == '_' && m_kept.count(hash) == 0));
  });
  return joined && std::equal(name.begin(), name.end(), flat.begin(),
                              [](char from, char to) { return from == to || from == '/'; });
}

// Where the hierarchy was flattened with "_", a register is found by its name with levels joined,
// if that can mean only one register on either side.
void RegisterPairs::matchFlattened() {
  if (m_state.top[RTL] == nullptr || m_state.top[SYNTH] == nullptr) return;
  std::unordered_set<const Signal*> taken;
  Flattened missing;
  for (Signal* rtl : m_registers) {
    const Signal* same = namesake(*rtl);
    if (same != nullptr && holdsRegisters(*same)) {
      taken.insert(same);
    } else {
      addFlattened(missing, *rtl);
    }
  }
  if (missing.empty()) return;
  findKeptLevels();
  std::unordered_map<Signal*, std::vector<Signal*>> claims;
  std::unordered_set<const Signal*> crowded;
  m_state.signals[SYNTH].each([&](Signal* synth) {
    if (!holdsRegisters(*synth)) return;
    const std::string name = belowTop(synth->getFullName(), SYNTH);
    const auto [first, last] = missing.equal_range(joinedLevels(name));
    std::size_t left = limits::flattenedNames;
    for (auto found = first; found != last && left > 0; ++found, --left) {
      if (isJoined(found->second.name, name)) claims[found->second.rtl].push_back(synth);
    }
    // So many registers of one name once joined can't be told from one another.
    if (left == 0) crowded.insert(synth);
  });
  settleFlattened(claims, taken, crowded);
}

void RegisterPairs::addFlattened(Flattened& missing, Signal& rtl) const {
  const std::string name = belowTop(rtl.getFullName(), RTL);
  missing.emplace(joinedLevels(name), FlatName{name, &rtl});
  const std::string clean = withCleanLevels(name);
  if (clean != name) missing.emplace(joinedLevels(clean), FlatName{clean, &rtl});
}

// A synthesized register that two RTL registers may be called now is nobody's.
void RegisterPairs::settleFlattened(const std::unordered_map<Signal*, std::vector<Signal*>>& claims,
                                    const std::unordered_set<const Signal*>& taken,
                                    const std::unordered_set<const Signal*>& crowded) {
  std::unordered_map<const Signal*, unsigned> claimants;
  for (const auto& [rtl, synths] : claims) {
    for (const Signal* synth : synths) ++claimants[synth];
  }
  for (const auto& [rtl, synths] : claims) {
    const Signal* synth = synths.front();
    const bool one = synths.size() == 1 && claimants[synth] == 1 && taken.count(synth) == 0 &&
                     crowded.count(synth) == 0;
    if (one) {
      m_flattened[rtl] = synths.front();
    } else {
      m_disputed.insert(rtl);
    }
  }
  for (const Signal* rtl : m_registers) {
    const Signal* same = namesake(*rtl);
    const bool claimed =
        same != nullptr && (claimants.count(same) != 0 || crowded.count(same) != 0);
    if (claimed) m_disputed.insert(rtl);
  }
}

Signal* RegisterPairs::twin(const Signal& rtl) const {
  if (m_disputed.count(&rtl) != 0) return nullptr;
  const auto found = m_flattened.find(&rtl);
  return found != m_flattened.end() ? found->second : namesake(rtl);
}

}  // namespace XRF_RTL2LL
