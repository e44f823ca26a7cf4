#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>
#include <crossreference/NameRegistry.h>
#include <support/Prefetch.h>

#include <algorithm>
#include <utility>

namespace XRF_RTL2LL {

namespace {

std::string_view view(const Word* text) {
  return text == nullptr ? std::string_view() : text->view();
}

}  // namespace

NameKey::NameKey(const Module& module) : pieces{view(module.m_path), "/", view(module.m_name)} {}

NameKey::NameKey(const Module& module, std::string_view signal)
    : pieces{view(module.m_path), "/", view(module.m_name), "/", signal} {}

NameKey::NameKey(const Signal& signal) {
  const Module& module = *signal.m_module;
  pieces = {view(module.pathOf(signal)), "/", view(module.m_name), "/", view(signal.m_name)};
}

NameKey NameKey::parent() const {
  NameKey key = *this;
  key.pieces[3] = {};
  key.pieces[4] = {};
  return key;
}

std::uint32_t NameKey::hash() const {
  std::uint64_t state = emptyHash;
  for (const std::string_view piece : pieces) state = extendHash(state, piece);
  return finishHash(state);
}

int NameKey::compare(const NameKey& a, const NameKey& b) {
  std::size_t pieceA = 0;
  std::size_t pieceB = 0;
  std::string_view restA = a.pieces[0];
  std::string_view restB = b.pieces[0];
  const auto refill = [](const NameKey& key, std::size_t& piece, std::string_view& rest) {
    while (rest.empty() && ++piece < key.pieces.size()) rest = key.pieces[piece];
  };
  while (true) {
    refill(a, pieceA, restA);
    refill(b, pieceB, restB);
    if (restA.empty() || restB.empty()) {
      return static_cast<int>(restB.empty()) - static_cast<int>(restA.empty());
    }
    const std::size_t common = std::min(restA.size(), restB.size());
    const int order =
        restA.data() == restB.data() ? 0 : restA.substr(0, common).compare(restB.substr(0, common));
    if (order != 0) return order;
    restA.remove_prefix(common);
    restB.remove_prefix(common);
  }
}

std::string NameKey::compose() const {
  std::string name;
  appendTo(name);
  return name;
}

RegisteredName<Module>::RegisteredName(Module* entered) : object(entered), path(entered->m_path) {}

NameKey RegisteredName<Module>::key() const {
  NameKey key(*object);
  key.pieces[0] = view(path);
  return key;
}

template <class T>
std::size_t NameRegistry<T>::place(const NameKey& key, std::uint32_t hash) const {
  const std::size_t mask = m_slots.size() - 1;
  std::size_t at = hash & mask;
  while (m_slots[at].number != 0 &&
         (m_slots[at].hash != hash ||
          NameKey::compare(m_entries[m_slots[at].number - 1].key(), key) != 0)) {
    at = (at + 1) & mask;
  }
  return at;
}

template <class T>
T* NameRegistry<T>::enter(T* object, std::uint32_t hash) {
  if ((m_entries.size() + 1) * 4 > m_slots.size() * 3) grow();
  Slot& slot = m_slots[place(NameKey(*object), hash)];
  if (slot.number == 0) {
    m_entries.push_back(RegisteredName<T>(object));
    slot = {hash, static_cast<std::uint32_t>(m_entries.size())};
    return nullptr;
  }
  RegisteredName<T>& entry = m_entries[slot.number - 1];
  T* replaced = entry.object;
  entry = RegisteredName<T>(object);
  return replaced;
}

template <class T>
const RegisteredName<T>* NameRegistry<T>::find(const NameKey& key, std::uint32_t hash) const {
  if (m_slots.empty()) return nullptr;
  const std::uint32_t number = m_slots[place(key, hash)].number;
  return number == 0 ? nullptr : &m_entries[number - 1];
}

template <class T>
void NameRegistry<T>::grow() {
  PageArray<Slot> slots(std::max<std::size_t>(m_slots.size() * 2, 16));
  const std::size_t mask = slots.size() - 1;
  for (const Slot& slot : m_slots) {
    if (slot.number == 0) continue;
    std::size_t at = slot.hash & mask;
    while (slots[at].number != 0) at = (at + 1) & mask;
    slots[at] = slot;
  }
  m_slots = std::move(slots);
}

template class NameRegistry<Module>;
template class NameRegistry<Signal>;

std::uint32_t ModuleNameHash::operator()(const Module& module) {
  const NameKey key(module);
  if (key.pieces[0].data() != m_path) {
    m_path = key.pieces[0].data();
    m_path_hash = extendHash(extendHash(emptyHash, key.pieces[0]), key.pieces[1]);
  }
  return ofSibling(key.pieces[2]);
}

std::uint32_t ModuleNameHash::ofSibling(std::string_view name) const {
  return finishHash(extendHash(m_path_hash, name));
}

Module* ModuleRegistry::enter(Module* module) {
  Module* replaced = m_names.enter(module, m_hash(*module));
  if (module->m_netlist == 0) module->m_netlist = m_netlist;
  if (replaced != nullptr && replaced->m_netlist == m_netlist) {
    replaced->m_entered = replaced->m_entered & ~(1U << m_view) & 3U;
  }
  if (module->m_netlist == m_netlist) module->m_entered = (module->m_entered | 1U << m_view) & 3U;
  return replaced == module ? nullptr : replaced;
}

void ModuleRegistry::prefetch(std::string_view name) const {
  m_names.prefetch(m_hash.ofSibling(name));
}

void ModuleRegistry::prefetch(std::uint32_t hash, std::size_t step) const {
  if (step == 0) return m_names.prefetch(hash);
  const RegisteredName<Module>* met = m_names.candidate(hash);
  if (met == nullptr) return;
  if (step == 1) return __builtin_prefetch(met);
  const Module* module = met->object;
  if (step == 2) {
    prefetchWhole(module->m_name);
    prefetchWhole(module->m_signals);
    return __builtin_prefetch(met->path);
  }
  __builtin_prefetch(module->m_name);
  __builtin_prefetch(module->m_signals.slots);
  if (module->m_signals.count > members::unindexed) __builtin_prefetch(module->m_signals.index);
}

Module* ModuleRegistry::find(const NameKey& key) const {
  const RegisteredName<Module>* entry = m_names.find(key, key.hash());
  return entry == nullptr ? nullptr : entry->object;
}

void ModuleRegistry::findTogether(std::span<const Module* const> named,
                                  std::span<Module*> found) const {
  std::array<std::uint32_t, mostTogether> hashes;
  std::array<const RegisteredName<Module>*, mostTogether> met;
  ModuleNameHash hashOf;
  for (std::size_t at = 0; at < named.size(); ++at) {
    hashes[at] = hashOf(*named[at]);
    m_names.prefetch(hashes[at]);
  }
  for (std::size_t at = 0; at < named.size(); ++at) {
    met[at] = m_names.candidate(hashes[at]);
    __builtin_prefetch(met[at]);
  }
  for (std::size_t at = 0; at < named.size(); ++at) {
    if (met[at] != nullptr) __builtin_prefetch(met[at]->object);
  }
  for (std::size_t at = 0; at < named.size(); ++at) {
    const RegisteredName<Module>* entry = m_names.find(NameKey(*named[at]), hashes[at]);
    found[at] = entry == nullptr ? nullptr : entry->object;
    if (entry != nullptr) __builtin_prefetch(entry->object->m_signals.slots);
  }
}

bool SignalRegistry::owns(const Module& module) const {
  return module.m_netlist != 0 && module.m_netlist == m_modules.m_netlist;
}

bool SignalRegistry::isHeld(const Signal& signal) const { return (signal.m_held & viewBit()) != 0; }

// Whether a signal that its module lists is found through that module.
bool SignalRegistry::isReachable(const Signal& signal) const {
  return (signal.m_module->m_entered & viewBit()) != 0 && !signal.m_earlier_path &&
         signal.m_name != nullptr;
}

bool SignalRegistry::isPlain(const Module& module) const {
  return owns(module) && (module.m_entered & viewBit()) != 0 && !m_slashed && m_loose.empty();
}

bool SignalRegistry::contains(const Signal& signal) const {
  if (owns(*signal.m_module) && isHeld(signal)) return true;
  return !m_loose.empty() && find(NameKey(signal)) == &signal;
}

Signal* SignalRegistry::findIn(const Module& module, const Word* path, const Word* name) const {
  return members::findNamed(module.m_signals, name, [&](const Signal& signal) {
    return isHeld(signal) && module.pathOf(signal) == path;
  });
}

Signal* SignalRegistry::findLoose(const NameKey& key, std::uint32_t hash) const {
  const RegisteredName<Signal>* entry = m_loose.find(key, hash);
  return entry == nullptr ? nullptr : entry->object;
}

// Looks below every module whose name begins the full name.
Signal* SignalRegistry::findBelow(std::string_view name) const {
  std::uint64_t state = emptyHash;
  std::size_t hashed = 0;
  const std::size_t last = name.rfind('/');
  for (std::size_t at = m_slashed ? name.find('/') : last; at != std::string_view::npos;
       at = at == last ? std::string_view::npos : name.find('/', at + 1)) {
    state = extendHash(state, name.substr(hashed, at - hashed));
    hashed = at;
    const RegisteredName<Module>* entry =
        m_modules.m_names.find(NameKey(name.substr(0, at)), finishHash(state));
    if (entry == nullptr || !owns(*entry->object)) continue;
    const Word* word = m_model.names.find(name.substr(at + 1));
    Signal* signal = word == nullptr ? nullptr : findIn(*entry->object, entry->path, word);
    if (signal != nullptr) return signal;
  }
  return nullptr;
}

Signal* SignalRegistry::find(std::string_view name) const {
  Signal* signal = findBelow(name);
  if (signal != nullptr || m_loose.empty()) return signal;
  const NameKey key(name);
  return findLoose(key, key.hash());
}

Signal* SignalRegistry::find(const NameKey& key) const {
  const std::string_view local = key.pieces.back();
  const bool plain = !m_slashed && m_loose.empty() && !key.pieces[3].empty() &&
                     local.find('/') == std::string_view::npos;
  if (!plain) return find(std::string_view(key.compose()));
  const NameKey holder = key.parent();
  const RegisteredName<Module>* entry = m_modules.m_names.find(holder, holder.hash());
  const Word* word = entry == nullptr ? nullptr : m_model.names.find(local);
  if (word == nullptr || !owns(*entry->object)) return nullptr;
  return findIn(*entry->object, entry->path, word);
}

Signal* SignalRegistry::find(const Module& module, std::string_view name) const {
  const Word* word = m_model.names.find(name);
  return word == nullptr ? nullptr : find(module, word);
}

Signal* SignalRegistry::find(const Module& module, const Word* word) const {
  if (owns(module) && (module.m_entered & viewBit()) != 0) {
    Signal* signal = findIn(module, module.m_path, word);
    if (signal != nullptr) return signal;
  }
  if (m_loose.empty()) return nullptr;
  const NameKey key(module, word->view());
  Signal* signal = findLoose(key, key.hash());
  // Modules may have one name once it is cleaned.
  return signal != nullptr && signal->m_module == &module ? signal : nullptr;
}

std::uint32_t SignalRegistry::hashOf(const Signal& signal) {
  const Word* path = signal.m_module->pathOf(signal);
  if (m_module != signal.m_module || m_path != path) {
    m_module = signal.m_module;
    m_path = path;
    m_module_hash = extendHash(extendHash(emptyHash, *path), "/");
    m_module_hash = extendHash(extendHash(m_module_hash, view(m_module->m_name)), "/");
  }
  return finishHash(extendHash(m_module_hash, view(signal.m_name)));
}

Signal* SignalRegistry::enter(Signal* signal, bool member) {
  const bool own = owns(*signal->m_module);
  if (own && isHeld(*signal)) return nullptr;
  m_slashed = m_slashed || view(signal->m_name).find('/') != std::string_view::npos;
  const bool reachable = own && member && isReachable(*signal);
  // Where no local name holds a "/", only a signal of the same module can have the same name.
  const bool plain = reachable && !m_slashed && m_loose.empty();
  Signal* replaced = plain ? findIn(*signal->m_module, signal->m_module->m_path, signal->m_name)
                           : find(NameKey(*signal));
  if (replaced == signal) return nullptr;
  if (replaced != nullptr && owns(*replaced->m_module)) drop(*replaced);
  if (own) hold(*signal);
  // One that was dropped before may have left the index of its module.
  if (!reachable || signal->m_dropped || (replaced != nullptr && !m_loose.empty())) {
    m_loose.enter(signal, hashOf(*signal));
  }
  return replaced;
}

void SignalRegistry::detach(const Module& module) {
  if (!owns(module)) return;
  members::each<Signal>(module.m_signals, [&](Signal* signal) {
    if (isHeld(*signal)) m_loose.enter(signal, hashOf(*signal));
  });
}

}  // namespace XRF_RTL2LL
