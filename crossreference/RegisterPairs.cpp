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
#include <string_view>
#include <utility>

namespace XRF_RTL2LL {

namespace {

// Joins all levels of a name, the way flattening names what it brings up all the way.
void joinLevels(std::string& name) { std::replace(name.begin(), name.end(), '/', '_'); }

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
  m_by_address.resize(m_registers.size());
  std::iota(m_by_address.begin(), m_by_address.end(), 0U);
  std::sort(m_by_address.begin(), m_by_address.end(), [this](std::uint32_t a, std::uint32_t b) {
    return std::less<>()(m_registers[a].rtl, m_registers[b].rtl);
  });
  findNamesakes();
  if (m_top[RTL] != nullptr && m_top[SYNTH] != nullptr) {
    matchFlattened();
    matchUnnamed();
  }
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

// Signals of one module lie together.
void RegisterPairs::findNamesakes() {
  Namesakes namesakes(m_state);
  for (const std::uint32_t number : m_by_address) {
    m_registers[number].synth = namesakes.find(*m_registers[number].rtl);
  }
}

bool RegisterPairs::isImplemented(const BitRef& place) const {
  const Signal* synth = twin(*place.getSignal());
  return synth != nullptr && RegisterTies::isTied(refAt(*synth, place.getIndex()));
}

// An instance name such as count_reg_3_ tells no bit, but the same instance in both views is the
// same register.
void RegisterPairs::matchUnnamed() {
  std::vector<const Module*> cells;
  m_state.modules[RTL].each([&](const Module* module) {
    if (module->getName() == nullptr || !RegisterTies::isRegister(m_state, *module)) return;
    const Signal* output = RegisterTies::outputOf(*module);
    if (output == nullptr || namesRegister(module->getName())) return;
    m_unnamed.push_back({output, nullptr});
    cells.push_back(module);
  });
  const std::vector<Module*> twins = Namesakes(m_state).find(cells);
  for (std::size_t at = 0; at < twins.size(); ++at) {
    const Module* synth = twins[at];
    const bool both = synth != nullptr && RegisterTies::isRegister(m_state, *synth);
    if (both) m_unnamed[at].synth = RegisterTies::outputOf(*synth);
  }
}

// Modules that are left, and those that were dissolved with "/": nothing below them was joined to
// their names. Were two hashes ever equal, a register would be left out, never taken for another.
void RegisterPairs::findKeptLevels() {
  NamesBelowTop names(m_state, SYNTH);
  m_state.modules[SYNTH].each([&](const Module* module) {
    if (module->getName() == nullptr) return;
    const bool holdsModules = !module->getChildren(false).empty();
    const bool dissolved = std::strchr(module->getName(), '/') != nullptr;
    if (!holdsModules && !dissolved) return;
    std::string path(names.of(*module));
    if (holdsModules) path += '/';
    eachLevel(path, [&](std::size_t, std::uint64_t hash) { m_kept.insert(hash); });
  });
}

// Whether flattening can have made one name of the other: some levels are joined, all else is kept.
bool RegisterPairs::isJoined(std::string_view name, std::string_view flat) const {
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
  const Flattened missing = namesOfMissing();
  if (missing.empty()) return;
  findKeptLevels();
  Claims claims;
  Signals crowded;
  NamesBelowTop names(m_state, SYNTH);
  std::string joined;
  for (Signal* synth : tiedSignals(m_state, SYNTH)) {
    const std::string_view name = names.of(*synth);
    joined = name;
    joinLevels(joined);
    const auto [first, last] = missing.equal_range(joined);
    // As many registers of one name once joined are told from one another.
    std::size_t left = 64;
    for (auto found = first; found != last && left > 0; ++found, --left) {
      if (isJoined(found->second.name, name)) claims[found->second.number].push_back(synth);
    }
    if (left == 0) crowded.insert(synth);
  }
  settleFlattened(claims, crowded);
}

// The names that registers without a namesake may have been flattened from, by what flattening made
// of them.
RegisterPairs::Flattened RegisterPairs::namesOfMissing() const {
  Flattened missing;
  NamesBelowTop names(m_state, RTL);
  const auto add = [&](std::string name, std::size_t number) {
    std::string joined = name;
    joinLevels(joined);
    missing.emplace(std::move(joined), FlatName{std::move(name), number});
  };
  for (std::size_t number = 0; number < m_registers.size(); ++number) {
    const Pair& pair = m_registers[number];
    if (pair.synth != nullptr && RegisterTies::holdsRegisters(*pair.synth)) continue;
    const std::string name(names.of(*pair.rtl));
    add(name, number);
    const std::string clean = withCleanLevels(name);
    if (clean != name) add(clean, number);
  }
  return missing;
}

// A synthesized register that two RTL registers may be called now is nobody's.
void RegisterPairs::settleFlattened(const Claims& claims, const Signals& crowded) {
  std::unordered_map<const Signal*, unsigned> claimants;
  for (const auto& [number, synths] : claims) {
    for (const Signal* synth : synths) ++claimants[synth];
  }
  Signals taken;
  for (Pair& pair : m_registers) {
    if (pair.synth == nullptr) continue;
    const bool claimed = claimants.count(pair.synth) != 0;
    pair.disputed = claimed || crowded.count(pair.synth) != 0;
    if (claimed && RegisterTies::holdsRegisters(*pair.synth)) taken.insert(pair.synth);
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
