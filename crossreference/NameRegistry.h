#pragma once

#include <crossreference/Module.h>
#include <crossreference/NamePool.h>

#include <algorithm>
#include <array>
#include <cstdint>
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

  std::uint32_t hash() const;
  /// Byte order of the composed names: negative, zero or positive.
  static int compare(const NameKey& a, const NameKey& b);
  std::string compose() const;
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
  const std::string* path = nullptr;

  RegisteredName() = default;
  explicit RegisteredName(Module* entered);
  NameKey key() const;
};

/// Finds the objects of one view by their full names. An object of a name that is taken replaces
/// the earlier one.
template <class T>
class NameRegistry {
 public:
  /// Returns the object that was replaced, or null.
  T* enter(T* object);
  T* find(std::string_view name) const { return find(NameKey(name)); }
  T* find(const NameKey& key) const;

  template <class Visit>
  void each(Visit visit) const {
    for (const RegisteredName<T>& entry : m_entries) {
      if (entry.object != nullptr) visit(entry.object);
    }
  }
  std::size_t size() const { return m_used; }

 private:
  std::size_t place(const NameKey& key, std::uint32_t hash) const;
  void grow();

  std::vector<RegisteredName<T>> m_entries;
  std::vector<std::uint32_t> m_hashes;
  std::size_t m_used = 0;
};

/// Sorts objects by full name, in byte order.
template <class T>
void sortByName(std::vector<T*>& objects) {
  std::sort(objects.begin(), objects.end(),
            [](const T* a, const T* b) { return NameKey::compare(NameKey(*a), NameKey(*b)) < 0; });
}

}  // namespace XRF_RTL2LL
