#pragma once

#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>
#include <support/PageArray.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace XRF_RTL2LL {

/// A hierarchical name in pieces, so that it can be hashed and compared without being composed.
struct NameKey {
  std::array<std::string_view, 5> pieces{};

  explicit NameKey(std::string_view name) : pieces{name} {}
  /// The module's path, "/" and its name; for a signal its full name.
  explicit NameKey(const Module& module);
  explicit NameKey(const Signal& signal);
  /// A signal of a module by its local name.
  NameKey(const Module& module, std::string_view signal);

  /// Of a signal's key that of its module.
  NameKey parent() const;
  std::uint32_t hash() const;
  /// Byte order of the composed names: negative, zero or positive.
  static int compare(const NameKey& a, const NameKey& b);
  std::string compose() const;
  void appendTo(std::string& text) const {
    for (const std::string_view piece : pieces) text += piece;
  }
};

/// What a registry keeps of an object, enough to tell the name under which it was entered. A
/// signal's full name never changes, but a module may be attached elsewhere later.
template <class T>
struct RegisteredName {
  T* object = nullptr;

  RegisteredName() = default;
  explicit RegisteredName(T* entered) : object(entered) {}
  NameKey key() const { return NameKey(*object); }
};

template <>
struct RegisteredName<Module> {
  Module* object = nullptr;
  const Word* path = nullptr;

  RegisteredName() = default;
  explicit RegisteredName(Module* entered);
  NameKey key() const;
};

/// Finds objects by the full names under which they were entered. An object of a name that is taken
/// replaces the earlier one.
template <class T>
class NameRegistry {
 public:
  /// Returns the object that was replaced, or null. The hash is that of the object's name.
  T* enter(T* object, std::uint32_t hash);
  /// What was entered under a name, or null.
  const RegisteredName<T>* find(const NameKey& key, std::uint32_t hash) const;
  /// Fetches the memory in which a look-up begins.
  void prefetch(std::uint32_t hash) const {
    if (!m_slots.empty()) __builtin_prefetch(&m_slots[hash & (m_slots.size() - 1)]);
  }
  /// What a look-up will meet first, or null. It need not be what is looked for.
  const RegisteredName<T>* candidate(std::uint32_t hash) const {
    if (m_slots.empty()) return nullptr;
    const Slot slot = m_slots[hash & (m_slots.size() - 1)];
    return slot.number == 0 || slot.hash != hash ? nullptr : &m_entries[slot.number - 1];
  }
  /// In the order in which the names came.
  template <class Visit>
  void each(Visit visit) const {
    constexpr std::size_t ahead = 16;
    for (std::size_t at = 0; at < m_entries.size(); ++at) {
      if (at + ahead < m_entries.size()) __builtin_prefetch(m_entries[at + ahead].object);
      visit(m_entries[at].object);
    }
  }
  bool empty() const { return m_entries.empty(); }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = 0;  // of the entry, counted from 1; 0 is a free slot
  };
  std::size_t place(const NameKey& key, std::uint32_t hash) const;
  void grow();

  PageArray<RegisteredName<T>> m_entries;
  PageArray<Slot> m_slots;
};

/// Hashes the names of modules. Those of one parent mostly come one after another, so the hash of
/// their path is kept.
class ModuleNameHash {
 public:
  std::uint32_t operator()(const Module& module);
  /// For a module of a name beside the last one.
  std::uint32_t ofSibling(std::string_view name) const;

 private:
  const char* m_path = nullptr;
  std::uint64_t m_path_hash = 0;
};

/// The modules of one view of a netlist.
class ModuleRegistry {
 public:
  /// As many names as it pays to look up together.
  static constexpr std::size_t mostTogether = 32;

  ModuleRegistry(EdifView view, std::uint16_t netlist) : m_view(view), m_netlist(netlist) {}

  /// Returns the module that was replaced, or null.
  Module* enter(Module* module);
  Module* find(std::string_view name) const { return find(NameKey(name)); }
  Module* find(const NameKey& key) const;
  /// Finds the modules that bear the names of up to `mostTogether` others, null where there is
  /// none. The waits for memory overlap, also those for where the signals of the found ones are.
  void findTogether(std::span<const Module* const> named, std::span<Module*> found) const;
  /// In the order in which their names came.
  template <class Visit>
  void each(Visit visit) const {
    m_names.each(visit);
  }
  /// Fetches the memory that entering a module of a name beside the last one will need.
  void prefetch(std::string_view name) const;
  /// Fetches what finding a module of a full name's hash will need, and then a signal of it: what
  /// one step fetches tells where that of the next one is.
  static constexpr std::size_t steps = 4;
  void prefetch(std::uint32_t hash, std::size_t step) const;

 private:
  friend class SignalRegistry;

  EdifView m_view;
  std::uint16_t m_netlist;
  NameRegistry<Module> m_names;
  ModuleNameHash m_hash;
};

/// Whether a local name is there and does not look like a path.
inline bool isPlainName(const Word* name) {
  return name != nullptr && name->view().find('/') == std::string_view::npos;
}

/// The signals of one view of a netlist. A signal is found through its module and by its local
/// name, and remembers whether its full name is held by it, so that the millions of them need no
/// table. The few that can't be found in this way have one.
class SignalRegistry {
 public:
  SignalRegistry(ModelState& model, const ModuleRegistry& modules)
      : m_model(model), m_modules(modules) {}

  /// Returns the signal that was replaced, or null. `member` tells that its module lists it.
  Signal* enter(Signal* signal, bool member);
  /// Whether a new signal of a module, of a name that is new to the module and without "/", is
  /// found through the module alone.
  bool isPlain(const Module& module) const;
  /// Whether all signals are found through their modules alone.
  bool isPlain() const { return !m_slashed && m_loose.empty(); }
  /// Enters such a signal.
  void hold(Signal& signal) const { signal.m_held = (signal.m_held | viewBit()) & 3U; }
  Signal* find(std::string_view name) const;
  Signal* find(const NameKey& key) const;
  /// The signal of a module by its local name.
  Signal* find(const Module& module, std::string_view name) const;
  /// The same for a name that the model stores.
  Signal* find(const Module& module, const Word* word) const;
  /// Whether a signal's full name finds it.
  bool contains(const Signal& signal) const;
  /// Keeps the signals of a module whose name went to another one.
  void detach(const Module& module);
  /// In the order in which they were made.
  template <class Visit>
  void each(Visit visit) const;
  /// Those that are found through a module, in its order.
  template <class Visit>
  void eachOf(const Module& module, Visit visit) const {
    if (!owns(module)) return;
    members::each<Signal>(module.m_signals, [&](Signal* signal) {
      if (isHeld(*signal)) visit(signal);
    });
  }

 private:
  bool owns(const Module& module) const;
  void drop(Signal& signal) const {
    signal.m_held = signal.m_held & ~viewBit() & 3U;
    signal.m_dropped = true;
  }
  std::uint32_t viewBit() const { return 1U << m_modules.m_view; }
  bool isHeld(const Signal& signal) const;
  bool isReachable(const Signal& signal) const;
  Signal* findIn(const Module& module, const Word* path, const Word* name) const;
  Signal* findBelow(std::string_view name) const;
  Signal* findLoose(const NameKey& key, std::uint32_t hash) const;
  std::uint32_t hashOf(const Signal& signal);

  ModelState& m_model;
  const ModuleRegistry& m_modules;
  NameRegistry<Signal> m_loose;
  bool m_slashed = false;  // whether a local name contains "/"
  // Signals of one module mostly come one after another, so the hash of their path is kept.
  const Module* m_module = nullptr;
  const Word* m_path = nullptr;
  std::uint64_t m_module_hash = 0;
};

template <class Visit>
void SignalRegistry::each(Visit visit) const {
  const auto held = [this](const Signal& signal) {
    return owns(*signal.getModule()) && isHeld(signal);
  };
  m_model.signals.each([&](Signal* signal) {
    if (held(*signal)) visit(signal);
  });
  m_loose.each([&](Signal* signal) {
    if (!held(*signal)) visit(signal);
  });
}

/// Sorts objects by full name, in byte order. The names are composed, since their pieces are all
/// over memory.
template <class T>
void sortByName(std::vector<T*>& objects) {
  struct Named {
    std::size_t start;
    std::size_t size;
    T* object;
  };
  std::string names;
  std::vector<Named> named;
  named.reserve(objects.size());
  for (T* object : objects) {
    const std::size_t start = names.size();
    NameKey(*object).appendTo(names);
    named.push_back({start, names.size() - start, object});
  }
  const auto nameOf = [&](const Named& one) {
    return std::string_view(names).substr(one.start, one.size);
  };
  std::sort(named.begin(), named.end(),
            [&](const Named& a, const Named& b) { return nameOf(a) < nameOf(b); });
  std::transform(named.begin(), named.end(), objects.begin(),
                 [](const Named& one) { return one.object; });
}

}  // namespace XRF_RTL2LL
