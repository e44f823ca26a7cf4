#include <crossreference/Namesakes.h>
#include <crossreference/Reading.h>
#include <crossreference/RegisterPairs.h>
#include <crossreference/RegisterPlaces.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>

namespace XRF_RTL2LL {

namespace {

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

RegisterPairs::RegisterPairs(const NetlistState& state)
    : m_state(state), m_top(state.top), m_signals(state.model.signals.size()) {
  std::vector<Signal*> registers = tiedSignals(state, RTL);
  sortByName(registers);
  m_registers.reserve(registers.size());
  for (Signal* rtl : registers) m_registers.push_back({rtl, nullptr, false});
  findNamesakes();
  if (m_top[RTL] != nullptr && m_top[SYNTH] != nullptr) {
    matchFlattened();
    matchUnnamed();
  }
  m_by_address.resize(m_registers.size());
  std::iota(m_by_address.begin(), m_by_address.end(), 0U);
  std::sort(m_by_address.begin(), m_by_address.end(), [this](std::uint32_t a, std::uint32_t b) {
    return std::less<>()(m_registers[a].rtl, m_registers[b].rtl);
  });
}

const Signal* RegisterPairs::twin(const Signal& rtl) const {
  const auto found = std::lower_bound(m_by_address.begin(), m_by_address.end(), &rtl,
                                      [this](std::uint32_t number, const Signal* signal) {
                                        return std::less<>()(m_registers[number].rtl, signal);
                                      });
  const bool known = found != m_by_address.end() && m_registers[*found].rtl == &rtl;
  return known ? m_registers[*found].synth : nullptr;
}

std::shared_ptr<const RegisterPairs> RegisterPairs::of(const NetlistState& state) {
  const std::lock_guard<std::mutex> lock(state.pairsLock);
  if (state.pairs == nullptr || !state.pairs->isCurrent()) {
    state.pairs = std::make_shared<const RegisterPairs>(state);
  }
  return state.pairs;
}

bool RegisterPairs::isCurrent() const {
  return m_top == m_state.top && m_signals == m_state.model.signals.size();
}

std::vector<Signal*> RegisterPairs::tiedSignals(const NetlistState& state, EdifView view) {
  std::vector<Signal*> signals = state.tied.at(view);
  std::sort(signals.begin(), signals.end());
  signals.erase(std::unique(signals.begin(), signals.end()), signals.end());
  std::erase_if(signals, [&](const Signal* signal) {
    return !RegisterTies::holdsRegisters(*signal) || !isOfView(state, view, *signal);
  });
  return signals;
}

void RegisterPairs::findNamesakes() {
  Namesakes namesakes(m_state);
  for (Pair& pair : m_registers) pair.synth = namesakes.find(*pair.rtl);
}

bool RegisterPairs::isImplemented(const BitRef& place) const {
  const Signal* synth = twin(*place.getSignal());
  return synth != nullptr && RegisterTies::isTied(refAt(*synth, place.getIndex()));
}

// An instance name such as count_reg_3_ tells no bit, but the same instance in both views is the
// same register.
void RegisterPairs::matchUnnamed() {
  const Namesakes namesakes(m_state);
  m_state.modules[RTL].each([&](const Module* module) {
    if (module->getName() == nullptr || !RegisterTies::isRegister(m_state, *module)) return;
    const Signal* output = RegisterTies::outputOf(*module);
    if (output == nullptr || namesRegister(module->getName())) return;
    const Module* synth = namesakes.find(*module);
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
    std::string path = belowTop(m_state, NameKey(*module).compose(), SYNTH);
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
  Signals taken;
  Flattened missing;
  for (std::size_t number = 0; number < m_registers.size(); ++number) {
    const Signal* same = m_registers[number].synth;
    if (same != nullptr && RegisterTies::holdsRegisters(*same)) {
      taken.insert(same);
    } else {
      addFlattened(missing, number);
    }
  }
  if (missing.empty()) return;
  findKeptLevels();
  Claims claims;
  Signals crowded;
  for (Signal* synth : tiedSignals(m_state, SYNTH)) {
    const std::string name = belowTop(m_state, synth->getFullName(), SYNTH);
    const auto [first, last] = missing.equal_range(joinedLevels(name));
    // As many registers of one name once joined are told from one another.
    std::size_t left = 64;
    for (auto found = first; found != last && left > 0; ++found, --left) {
      if (isJoined(found->second.name, name)) claims[found->second.number].push_back(synth);
    }
    if (left == 0) crowded.insert(synth);
  }
  settleFlattened(claims, taken, crowded);
}

void RegisterPairs::addFlattened(Flattened& missing, std::size_t number) const {
  const std::string name = belowTop(m_state, m_registers[number].rtl->getFullName(), RTL);
  missing.emplace(joinedLevels(name), FlatName{name, number});
  const std::string clean = withCleanLevels(name);
  if (clean != name) missing.emplace(joinedLevels(clean), FlatName{clean, number});
}

// A synthesized register that two RTL registers may be called now is nobody's.
void RegisterPairs::settleFlattened(const Claims& claims, const Signals& taken,
                                    const Signals& crowded) {
  std::unordered_map<const Signal*, unsigned> claimants;
  for (const auto& [number, synths] : claims) {
    for (const Signal* synth : synths) ++claimants[synth];
  }
  for (Pair& pair : m_registers) {
    pair.disputed = pair.synth != nullptr &&
                    (claimants.count(pair.synth) != 0 || crowded.count(pair.synth) != 0);
  }
  for (const auto& [number, synths] : claims) {
    Pair& pair = m_registers[number];
    Signal* synth = synths.front();
    const bool one = synths.size() == 1 && claimants[synth] == 1 && taken.count(synth) == 0 &&
                     crowded.count(synth) == 0;
    if (one) pair.synth = synth;
    pair.disputed = pair.disputed || !one;
  }
  for (Pair& pair : m_registers) {
    if (pair.disputed) pair.synth = nullptr;
  }
}

}  // namespace XRF_RTL2LL
