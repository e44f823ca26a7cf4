#include <crossreference/Netlist.h>
#include <crossreference/NetlistState.h>
#include <support/Report.h>

#include <algorithm>
#include <stdexcept>

namespace XRF_RTL2LL {

namespace {

constexpr std::size_t views = 2;

template <class Registry>
auto find(const std::array<Registry, views>& registries, EdifView view, const std::string& name)
    -> decltype(registries[0].find(name)) {
  if (view < views) return registries[view].find(name);
  for (const Registry& registry : registries) {
    if (registry.find(name) != nullptr) throw std::out_of_range("vector::_M_range_check");
  }
  return nullptr;
}

// How many bits a signal needs to cover lsb..msb beyond those it has.
std::uint64_t newBits(const Signal* signal, std::uint64_t lsb, std::uint64_t msb) {
  if (signal == nullptr) return msb - lsb + 1;
  return std::max<std::uint64_t>(msb, signal->getMsb()) -
         std::min<std::uint64_t>(lsb, signal->getLsb()) + 1 - signal->getWidth();
}

void clearInferred(const Signal& signal, unsigned int lsb, unsigned int msb) {
  for (std::uint64_t index = lsb; index <= msb; ++index) {
    const BitRef* ref = signal.getBitRef(static_cast<std::uint32_t>(index), true);
    if (ref != nullptr && ref->getBit() != nullptr) ref->getBit()->setInferred(false);
  }
}

}  // namespace

Netlist::Netlist() : m_state(std::make_unique<NetlistState>(ModelState::current())) {
  ModelState& model = m_state->model;
  model.tokenMaps.push_back(std::make_unique<TokenMap>());
  m_state->tokens = model.tokenMaps.back().get();
  initializeMap();
}

Netlist::~Netlist() = default;

Module* Netlist::getTop(EdifView view) const { return m_state->top.at(view); }

void Netlist::setFamily(Family family) {
  if (m_state->family == FAMILY_NONE) m_state->family = family;
}

Family Netlist::getFamily() const { return m_state->family; }

void Netlist::setPart(Part part) {
  if (m_state->part == PART_NONE) m_state->part = part;
}

Part Netlist::getPart() const { return m_state->part; }

void Netlist::registerModule(EdifView view, Module* module) { m_state->enter(view, module); }

void Netlist::registerSignal(EdifView view, Signal* signal) {
  const bool member = signal->getModule()->getSignal(signal->getId(), true) == signal;
  m_state->enter(view, signal, member);
}

Signal* Netlist::addSignal(EdifView view, Module* module, const char* name, unsigned int lsb,
                           unsigned int msb, unsigned int id, char* /*extra*/) {
  const StateScope scope(m_state->model);
  Signal* signal =
      m_state->addSignal(view, module, m_state->model.names.intern(name), lsb, msb, id);
  clearInferred(*signal, lsb, msb);
  return signal;
}

Signal* Netlist::addSignal(unsigned int /*mark*/, EdifView view, Module* module, const char* name,
                           unsigned int lsb, unsigned int msb, unsigned int id, char* extra) {
  return addSignal(view, module, name, lsb, msb, id, extra);
}

ObjectBudget::ObjectBudget(const Limits& limits)
    : m_most(limits.objects), m_most_instances(limits.instances) {}

ObjectBudget::ObjectBudget(const Limits& limits, std::uint64_t words) : ObjectBudget(limits) {
  const std::uint64_t ofWords = Limits::objectsBase + limits.objectsPerWord * words;
  if (ofWords >= m_most) return;
  m_most = ofWords;
  m_words = words;
}

void ObjectBudget::refuseObjects() const {
  if (m_words != 0) {
    fatalHere("The %llu words of the netlist expand to more than %llu modules, signals and bits.",
              static_cast<unsigned long long>(m_words), static_cast<unsigned long long>(m_most));
  }
  fatalHere("The view holds more than %llu modules, signals and bits.",
            static_cast<unsigned long long>(m_most));
}

void ObjectBudget::refuseInstances() const {
  fatalHere("The view holds more than %llu modules.",
            static_cast<unsigned long long>(m_most_instances));
}

Signal* NetlistState::addSignal(EdifView view, Module* module, const Word* name, unsigned int lsb,
                                unsigned int msb, unsigned int id) {
  Signal* signal = module->getSignal(id, true);
  if (budget != nullptr) budget->count(newBits(signal, lsb, msb) + 1);
  if (signal == nullptr) {
    signal = new Signal(model, module, name, id, lsb, msb, false);
    module->addSignal(signal);
    const opKind kind = module->getKind();
    BitRef* first = kind == GND || kind == PWR ? signal->entry(0) : nullptr;
    if (first != nullptr) {
      Bit* bit = first->getBit();
      bit->setKind(Bit::CNST);
      bit->setValue(kind == PWR);
      bit->setValueStr("z");
    }
    signal->clearInferred();
  } else {
    widen(*signal, lsb, msb);
  }
  enter(view, signal, true);
  return signal;
}

NetlistState::NetlistState(ModelState& owner)
    : model(owner),
      ordinal(owner.netlistCount < 0xffff ? ++owner.netlistCount : std::uint16_t{0}),
      modules{ModuleRegistry(RTL, ordinal), ModuleRegistry(SYNTH, ordinal)},
      signals{SignalRegistry(owner, modules[RTL]), SignalRegistry(owner, modules[SYNTH])} {}

Module* NetlistState::enter(EdifView view, Module* module) {
  Module* earlier = modules.at(view).enter(module);
  if (earlier != nullptr) signals.at(view).detach(*earlier);
  return earlier;
}

void NetlistState::enter(EdifView view, Signal* signal, bool member) {
  const Signal* earlier = signals.at(view).enter(signal, member);
  if (earlier == nullptr) return;
  ambiguous.insert(earlier);
  ambiguous.insert(signal);
}

// A bus that grows bit by bit must not be walked for each: only bits that were made now, or were
// passed over before, can carry the mark still.
void NetlistState::widen(Signal& signal, unsigned int lsb, unsigned int msb) {
  const std::uint32_t oldLsb = signal.getLsb();
  const std::uint32_t oldMsb = signal.getMsb();
  signal.expand(lsb, msb);
  if (signal.m_inferred_left) {
    clearInferred(signal, lsb, msb);
    signal.m_inferred_left = lsb > signal.getLsb() || msb < signal.getMsb();
    return;
  }
  if (lsb < oldLsb) clearInferred(signal, lsb, std::min(msb, oldLsb - 1));
  if (msb > oldMsb) clearInferred(signal, std::max(lsb, oldMsb + 1), msb);
  const bool gapBelow = oldLsb > 0 && msb < oldLsb - 1;
  signal.m_inferred_left = gapBelow || lsb > oldMsb + 1;
}

unsigned int NetlistState::freeNumber(const Module& module, std::string_view name) const {
  std::string word(name);
  unsigned int number = tokens->getCode(word);
  // No name ends in a blank, so what such words number is never asked for by a netlist.
  while (module.getSignal(number, true) != nullptr) number = tokens->getCode(word += ' ');
  return number;
}

Module* Netlist::findModule(EdifView view, std::string name) const {
  return find(m_state->modules, view, name);
}

Signal* Netlist::findSignal(EdifView view, std::string name) const {
  return find(m_state->signals, view, name);
}

InstanceRange Netlist::getInstances(EdifView view) const { return {m_state.get(), view}; }

TokenMap* Netlist::getTokenMap() const { return m_state->tokens; }

void Netlist::dump() {}

InstanceRange::value_type InstanceRange::iterator::operator*() const {
  const auto* group = static_cast<const InstanceGroup*>(m_group);
  return {std::string(group->definition), NameKey(*group->modules[m_position]).compose()};
}

InstanceRange::iterator& InstanceRange::iterator::operator++() {
  const auto* group = static_cast<const InstanceGroup*>(m_group);
  if (++m_position < group->modules.size()) return *this;
  const InstanceIndex& index = m_state->instances.at(m_view);
  const auto next = index.upper_bound(group->definition);
  m_group = next == index.end() ? nullptr : &next->second;
  m_position = 0;
  return *this;
}

bool InstanceRange::iterator::operator==(const iterator& other) const {
  return m_group == other.m_group && m_position == other.m_position;
}

InstanceRange::iterator InstanceRange::begin() const {
  const InstanceIndex& index = m_state->instances.at(m_view);
  iterator first;
  first.m_state = m_state;
  first.m_view = m_view;
  first.m_group = index.empty() ? nullptr : &index.begin()->second;
  return first;
}

InstanceRange::iterator InstanceRange::end() const { return {}; }

std::size_t InstanceRange::size() const {
  std::size_t count = 0;
  for (const auto& entry : m_state->instances.at(m_view)) count += entry.second.modules.size();
  return count;
}

bool InstanceRange::empty() const { return m_state->instances.at(m_view).empty(); }

bool InstanceRange::contains(const value_type& instance) const {
  const InstanceIndex& index = m_state->instances.at(m_view);
  const auto found = index.find(instance.first);
  if (found == index.end()) return false;
  const std::vector<Module*>& modules = found->second.modules;
  return std::any_of(modules.begin(), modules.end(), [&](const Module* module) {
    return NameKey::compare(NameKey(*module), NameKey(instance.second)) == 0;
  });
}

void readAs(Netlist& netlist, const Reading& reading) { netlist.m_state->reading = reading; }

}  // namespace XRF_RTL2LL
