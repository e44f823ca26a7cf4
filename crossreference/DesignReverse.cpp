#include <crossreference/DesignState.h>
#include <crossreference/NetlistState.h>
#include <crossreference/Reading.h>
#include <crossreference/RegisterPairs.h>
#include <crossreference/RegisterPlaces.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace XRF_RTL2LL {

namespace {

/// The registers of the RTL that live in bits of either view.
class ReverseLookUp {
 public:
  explicit ReverseLookUp(const NetlistState& state) : m_state(state) {}

  /// Adds the registers that live in a bit of the RTL.
  void addRtl(const Bit& bit);
  /// Adds the registers whose flip-flop drives a bit of the synthesized view.
  void addSynthesized(const Bit& bit);
  std::vector<RegisterBit> found();

 private:
  const Module* cellOf(EdifView view, const BitRef& ref) const;
  BitRef* nameOf(const Module& cell, BitRef& output) const;
  BitRef* original(const Module& replica) const;
  void addTwin(const BitRef& place);
  void addNamesake(const Module& cell, const BitRef& output);
  void pair();

  const NetlistState& m_state;
  std::unordered_set<BitRef*> m_found;
  bool m_paired = false;
  std::unordered_map<const Signal*, const Signal*> m_rtl;  // of the synthesized signal
};

// The register cell whose output a reference is, or null.
const Module* ReverseLookUp::cellOf(EdifView view, const BitRef& ref) const {
  const Signal& signal = *ref.getSignal();
  const Module* module = signal.getModule();
  const bool drives = module != nullptr && RegisterTies::isRegister(m_state, *module) &&
                      RegisterTies::outputOf(*module) == &signal;
  return drives && isOfView(m_state, view, signal) ? module : nullptr;
}

// What to call a register that has no place of its own: the signal that its instance is named for
// where that shares its bit, else its net, else its output.
BitRef* ReverseLookUp::nameOf(const Module& cell, BitRef& output) const {
  const Module* around = cell.getParent();
  if (around == nullptr) return &output;
  const NamedBits name = decodeRegister(cell.getName());
  if (name.valid) {
    const std::uint64_t index = name.lsb + (output.getIndex() - output.getSignal()->getLsb());
    const Signal* signal = m_state.findByName(RTL, *around, cleaned(name.signal));
    BitRef* ref = signal == nullptr ? nullptr : refAt(*signal, index);
    if (ref != nullptr && ref->getBit() == output.getBit()) return ref;
  }
  BitRef* net = nullptr;
  for (BitRef* ref : output.getBit()->getBitRefs()) {
    // The alias named like the instance says no more than the output does.
    const bool isAlias = std::string_view(ref->getSignal()->getName()) == cell.getName();
    if (ref->getSignal()->getModule() != around || isAlias) continue;
    if (net == nullptr || isEarlierPlace(ref, net)) net = ref;
  }
  return net == nullptr ? &output : net;
}

void ReverseLookUp::addRtl(const Bit& bit) {
  std::unordered_set<const Module*> around;
  for (BitRef* place : registerPlaces(m_state, RTL, bit)) {
    m_found.insert(place);
    around.insert(place->getSignal()->getModule());
  }
  for (BitRef* ref : bit.getBitRefs()) {
    const Module* cell = cellOf(RTL, *ref);
    if (cell != nullptr && !around.contains(cell->getParent())) m_found.insert(nameOf(*cell, *ref));
  }
}

// The place of the register that synthesis copied, or null.
BitRef* ReverseLookUp::original(const Module& replica) const {
  const NamedBits name = decodeRegister(replica.getName());
  if (!name.valid || !name.replica || replica.getParent() == nullptr) return nullptr;
  const Signal* signal = m_state.findByName(SYNTH, *replica.getParent(), cleaned(name.signal));
  BitRef* ref = signal == nullptr ? nullptr : refAt(*signal, name.lsb);
  return RegisterTies::isTied(ref) ? ref : nullptr;
}

void ReverseLookUp::addSynthesized(const Bit& bit) {
  for (const BitRef* place : registerPlaces(m_state, SYNTH, bit)) addTwin(*place);
  for (const BitRef* ref : bit.getBitRefs()) {
    const Module* cell = cellOf(SYNTH, *ref);
    if (cell == nullptr) continue;
    const BitRef* copied = original(*cell);
    if (copied != nullptr) addTwin(*copied);
    addNamesake(*cell, *ref);
  }
}

void ReverseLookUp::pair() {
  if (m_paired) return;
  m_paired = true;
  const std::shared_ptr<const RegisterPairs> pairs = RegisterPairs::of(m_state);
  for (const RegisterPairs::Pair& pair : pairs->registers()) {
    if (pair.synth != nullptr) m_rtl.emplace(pair.synth, pair.rtl);
  }
  for (const RegisterPairs::Unnamed& same : pairs->unnamed()) {
    if (same.synth != nullptr) m_rtl.emplace(same.synth, same.rtl);
  }
}

void ReverseLookUp::addTwin(const BitRef& place) {
  pair();
  const auto rtl = m_rtl.find(place.getSignal());
  if (rtl == m_rtl.end()) return;
  const BitRef* ref = refAt(*rtl->second, place.getIndex());
  if (RegisterTies::isTied(ref)) addRtl(*ref->getBit());
}

// A register whose name tells no signal, by its output. Strict reading knows registers by the paths
// of their instances alone.
void ReverseLookUp::addNamesake(const Module& cell, const BitRef& output) {
  const Signal* rtl = nullptr;
  if (m_state.reading.has(Rule::RegisterCopy)) {
    pair();
    const auto same = m_rtl.find(output.getSignal());
    if (same != m_rtl.end()) rtl = same->second;
  } else {
    const Module* same = m_state.modules[RTL].find(NameKey(cell));
    if (same != nullptr && RegisterTies::isRegister(m_state, *same)) {
      rtl = RegisterTies::outputOf(*same);
    }
  }
  const BitRef* ref = rtl == nullptr ? nullptr : refAt(*rtl, output.getIndex());
  if (ref != nullptr) addRtl(*ref->getBit());
}

std::vector<RegisterBit> ReverseLookUp::found() {
  std::vector<BitRef*> refs(m_found.begin(), m_found.end());
  std::sort(refs.begin(), refs.end(), isEarlierPlace);
  std::vector<RegisterBit> registers;
  registers.reserve(refs.size());
  for (const BitRef* ref : refs) registers.push_back({ref->getSignal(), ref->getIndex()});
  return registers;
}

/// What a name of the synthesized netlist stands for.
struct Named {
  bool known = false;
  std::vector<const Bit*> bits;

  void add(const Signal& signal, std::uint64_t first, std::uint64_t last) {
    for (std::uint64_t index = first; index <= last; ++index) {
      const Bit* bit = bitAt(signal, index);
      if (bit == nullptr) continue;
      known = true;
      bits.push_back(bit);
    }
  }
};

// What one reading of a name, below the top, stands for.
Named lookUp(const NetlistState& state, const std::string& name, const NamedBits& reading) {
  Named named;
  const std::string fullName = NameKey(*state.top[SYNTH]).compose() + "/" + reading.signal;
  const bool isWhole = reading.signal == name;
  const Module* cell = isWhole ? state.modules[SYNTH].find(fullName) : nullptr;
  named.known = cell != nullptr;
  const Signal* signal = cell != nullptr && RegisterTies::isRegister(state, *cell)
                             ? RegisterTies::outputOf(*cell)
                             : state.signals[SYNTH].find(fullName);
  if (signal == nullptr) return named;
  if (isWhole) {
    named.add(*signal, signal->getLsb(), signal->getMsb());
  } else {
    named.add(*signal, reading.lsb, reading.msb);
  }
  return named;
}

Named lookUp(const NetlistState& state, const std::string& below) {
  Named named;
  if (state.top[SYNTH] == nullptr || below.empty()) return named;
  std::vector<std::string> names{below};
  for (ChangedLevels& changed : changedLevels(below)) names.push_back(std::move(changed.name));
  for (const std::string& name : names) {
    for (const NamedBits& reading : netReadings(name)) {
      Named found = lookUp(state, name, reading);
      if (!found.bits.empty()) return found;
      named.known = named.known || found.known;
    }
  }
  return named;
}

// The part of a name below the top; a name that begins with another top has none.
std::string_view belowTop(const NetlistState& state, std::string_view name) {
  if (!name.starts_with('/')) return name;
  const Module* top = state.top[SYNTH];
  const std::string prefix = top == nullptr ? "/" : NameKey(*top).compose() + "/";
  return name.starts_with(prefix) ? name.substr(prefix.size()) : std::string_view();
}

// Whether the only bit of a signal is written with its index, which its register's instance tells.
bool isWrittenWithIndex(const NetlistState& state, const RegisterBit& bit) {
  if (bit.signal->getMsb() != 0) return true;
  for (const BitRef* ref : bit.signal->getBitRef(bit.index)->getBit()->getBitRefs()) {
    const Module& cell = *ref->getSignal()->getModule();
    if (cell.getParent() != bit.signal->getModule()) continue;
    if (!RegisterTies::isRegister(state, cell)) continue;
    const NamedBits name = decodeRegister(cell.getName());
    if (!name.valid || name.ranged || cleaned(name.signal) != bit.signal->getName()) continue;
    const std::string_view instance = cell.getName();
    // The index is the one group of the instance that the signal's name lacks.
    return std::count(instance.begin(), instance.end(), '[') >
           std::count(name.signal.begin(), name.signal.end(), '<') +
               std::count(name.signal.begin(), name.signal.end(), '[');
  }
  return false;
}

}  // namespace

std::vector<RegisterBit> Design::registersAt(unsigned int frame, unsigned int offset,
                                             unsigned int slr) const {
  const DesignUse use(m_state->model);
  const NetlistState& netlist = *m_state->netlist->m_state;
  std::vector<const Bit*> bits;
  netlist.model.bits.each([&](const Bit* bit) {
    if (bit->getKind() == Bit::STATE && bit->getStateLoc1() == frame &&
        bit->getStateLoc2() == offset && bit->getStateLoc3() == slr) {
      bits.push_back(bit);
    }
  });
  ReverseLookUp registers(netlist);
  for (const Bit* bit : bits) registers.addRtl(*bit);
  std::vector<RegisterBit> found = registers.found();
  if (!found.empty()) return found;
  for (const Bit* bit : bits) registers.addSynthesized(*bit);
  return registers.found();
}

std::vector<RegisterBit> Design::registers() const {
  const DesignUse use(m_state->model);
  const NetlistState& netlist = *m_state->netlist->m_state;
  ReverseLookUp registers(netlist);
  std::unordered_set<const Bit*> seen;
  // By way of the registers' outputs, since clocks have references by the thousand.
  netlist.model.signals.each([&](const Signal* output) {
    if (!output->isSrcState() || !RegisterTies::isRegister(netlist, *output->getModule())) return;
    eachRef(*output, [&](const BitRef& ref) {
      const Bit* bit = ref.getBit();
      if (bit != nullptr && seen.insert(bit).second) registers.addRtl(*bit);
    });
  });
  return registers.found();
}

std::optional<std::vector<RegisterBit>> Design::registersOf(const std::string& name) const {
  const DesignUse use(m_state->model);
  const NetlistState& netlist = *m_state->netlist->m_state;
  const std::string below = cleaned(belowTop(netlist, name));
  Named named = lookUp(netlist, below);
  // Where the hierarchy was flattened, an instance is found only without its pin.
  const bool isPin = below.ends_with("/Q") || below.ends_with("/q");
  if (!named.known && isPin) named = lookUp(netlist, below.substr(0, below.size() - 2));
  if (!named.known) return std::nullopt;
  ReverseLookUp registers(netlist);
  for (const Bit* bit : named.bits) registers.addSynthesized(*bit);
  return registers.found();
}

std::string Design::writtenName(const RegisterBit& bit) const {
  const DesignUse use(m_state->model);
  std::string name = bit.signal->getFullName();
  std::string groups;
  while (name.ends_with('>')) {
    const std::size_t open = name.find_last_of("</");
    if (open == std::string::npos || name[open] == '/') break;
    groups.insert(0, "[" + name.substr(open + 1, name.size() - open - 2) + "]");
    name.resize(open);
  }
  if (isWrittenWithIndex(*m_state->netlist->m_state, bit)) {
    groups += "[" + std::to_string(bit.index) + "]";
  }
  return name + groups;
}

}  // namespace XRF_RTL2LL
