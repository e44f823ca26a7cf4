#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>

#include <algorithm>
#include <string_view>

namespace XRF_RTL2LL {

bool RegisterTies::isRegister(const NetlistState& state, const Module& module) {
  const bool tabled = module.getKind() == REG || module.getKind() == WIDE_FD;
  if (!state.reading.has(Rule::StateCells)) return tabled;
  const char* cell = module.getDefName();
  // A module of the design may be named like a cell.
  return (tabled || (cell != nullptr && holdsState(cell))) && module.getChildren(false).empty();
}

Signal* RegisterTies::outputOf(const Module& instance) {
  Signal* output = instance.getSignal(token::UpperQ, true);
  if (output == nullptr) output = instance.getSignal(token::LowerQ, true);
  if (output != nullptr) return output;
  // An array has its printable name, whatever its identifier is.
  for (Signal* signal : instance.getSignals(false)) {
    const std::string_view name = signal->getName();
    if (name == "Q" || name == "q") return signal;
  }
  return nullptr;
}

Signal* RegisterTies::widen(Module& parent, const std::string& name, std::uint32_t lsb,
                            std::uint32_t msb) {
  const Word* word = m_state.model.names.intern(std::string_view(name));
  const Signal* known = m_state.findByName(m_view, parent, word);
  const unsigned int number = known != nullptr ? known->getId() : m_state.freeNumber(parent, name);
  return m_state.addSignal(m_view, &parent, word, lsb, msb, number);
}

namespace {

// Which index of a register's signal an index of its output stands for.
std::uint32_t placeOf(const NamedBits& name, const Signal& output, std::uint32_t index) {
  if (output.getWidth() > 1 && !name.ranged) return index;
  // The left end of a range that counts up is the output's highest index.
  return name.ascending ? name.msb - (index - output.getLsb())
                        : name.lsb + (index - output.getLsb());
}

// A printed range must be as wide as the output, or nothing tells which bit is which.
bool fits(const NamedBits& name, const Signal& output) {
  return !name.ranged || name.msb - name.lsb + 1 == output.getWidth();
}

}  // namespace

// Two registers whose names mean the same bit: nobody can tell which one a file speaks of, so it is
// no register for anybody. A place that has left the register's bit is known for it by a loaded
// model.
void RegisterTies::dispute(BitRef& place, BitRef& value) {
  place.getBit()->setSrc(false);
  place.m_register = false;
  place.m_disputed = true;
  value.getBit()->setSrc(false);
}

// A replica gives way to its original.
void RegisterTies::yield(BitRef& place) {
  place.leave();
  place.m_register = false;
  place.m_replica = false;
}

bool RegisterTies::holdsRegisters(const Signal& signal) {
  bool any = false;
  eachRef(signal, [&](const BitRef& ref) { any = any || ref.m_register; });
  return any;
}

// The bits of a bus mostly come one after another.
void RegisterTies::noteTied(Signal& signal) {
  std::vector<Signal*>& tied = m_state.tied.at(m_view);
  if (tied.empty() || tied.back() != &signal) tied.push_back(&signal);
}

void RegisterTies::disputeAll(const Module& module) {
  for (Signal* signal : module.getSignals(false)) {
    for (std::uint64_t index = signal->getLsb(); index <= signal->getMsb(); ++index) {
      BitRef* place = signal->getBitRef(static_cast<std::uint32_t>(index), true);
      if (place == nullptr || !place->m_register) continue;
      dispute(*place, *place);
      place->leave();
    }
  }
  for (const Module* child : module.getChildren(false)) disputeAll(*child);
}

bool RegisterTies::join(BitRef& place, BitRef& net) {
  if (place.m_disputed) return true;
  // A register's output is on its net already; any other net of the name is something else.
  if (place.m_register && place.getBit() != net.getBit()) return false;
  place.merge(&net);
  return true;
}

void RegisterTies::tie(Module& parent, Module& instance, const NamedBits& name) {
  Signal* output = outputOf(instance);
  if (output == nullptr || !fits(name, *output)) return;
  const std::uint32_t low = placeOf(name, *output, output->getLsb());
  const std::uint32_t high = placeOf(name, *output, output->getMsb());
  const std::string clean =
      m_state.reading.has(Rule::CleanNames) ? cleaned(name.signal) : name.signal;
  Signal* signal = widen(parent, clean, std::min(low, high), std::max(low, high));
  for (std::uint32_t index = output->getLsb(); index <= output->getMsb(); ++index) {
    BitRef* place = signal->getBitRef(placeOf(name, *output, index));
    BitRef* value = output->getBitRef(index);
    if (place == nullptr || value == nullptr) continue;
    if (place->m_replica && !name.replica) yield(*place);
    const bool taken = place->m_register || place->m_disputed;
    if (taken && !name.replica) {
      dispute(*place, *value);
      place->leave();
    }
    if (taken) continue;
    place->merge(value);
    place->m_register = true;
    noteTied(*signal);
    place->m_replica = name.replica;
  }
}

void RegisterTies::recall(Module& parent, Module& instance, const NamedBits& name) {
  const Signal* output = outputOf(instance);
  if (output == nullptr || !fits(name, *output)) return;
  // A bit of a port whose range the model can't have is a signal of its own.
  if (recallAt(parent, *output, name) || recallAt(parent, *output, name.whole())) return;
  if (!name.replica) disputeAt(parent, *output, name);
}

// A register that is not where its name says shares the name with another one.
void RegisterTies::disputeAt(Module& parent, const Signal& output, const NamedBits& name) {
  const Signal* signal = m_state.findByName(m_view, parent, cleaned(name.signal));
  if (signal == nullptr) return;
  for (std::uint32_t index = output.getLsb(); index <= output.getMsb(); ++index) {
    const std::uint32_t at = placeOf(name, output, index);
    if (at < signal->getLsb() || at > signal->getMsb()) continue;
    BitRef* place = signal->getBitRef(at, true);
    BitRef* value = output.getBitRef(index, true);
    if (place != nullptr && value != nullptr) dispute(*place, *value);
  }
}

bool RegisterTies::recallAt(Module& parent, const Signal& output, const NamedBits& name) {
  Signal* signal = m_state.findByName(m_view, parent, cleaned(name.signal));
  if (signal == nullptr) return false;
  bool any = false;
  for (std::uint32_t index = output.getLsb(); index <= output.getMsb(); ++index) {
    const std::uint32_t at = placeOf(name, output, index);
    if (at < signal->getLsb() || at > signal->getMsb()) continue;
    BitRef* place = signal->getBitRef(at, true);
    const BitRef* value = output.getBitRef(index, true);
    if (place == nullptr || value == nullptr || place->getBit() != value->getBit()) continue;
    place->m_register = true;
    noteTied(*signal);
    any = true;
  }
  return any;
}

}  // namespace XRF_RTL2LL
