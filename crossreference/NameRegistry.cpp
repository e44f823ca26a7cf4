#include <crossreference/ModelState.h>
#include <crossreference/NameRegistry.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

std::string_view view(const std::string* text) {
  return text == nullptr ? std::string_view() : std::string_view(*text);
}

}  // namespace

NameKey::NameKey(const Module& module) : pieces{view(module.m_path), "/", view(module.m_name)} {}

NameKey::NameKey(const Module& module, std::string_view signal)
    : pieces{view(module.m_path), "/", view(module.m_name), "/", signal} {}

NameKey::NameKey(const Signal& signal) {
  const Module& module = *signal.m_module;
  pieces = {view(module.pathOf(signal)), "/", view(module.m_name), "/", view(signal.m_name)};
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
  for (const std::string_view piece : pieces) name += piece;
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
  const std::size_t mask = m_entries.size() - 1;
  std::size_t at = hash & mask;
  while (m_entries[at].object != nullptr &&
         (m_hashes[at] != hash || NameKey::compare(m_entries[at].key(), key) != 0)) {
    at = (at + 1) & mask;
  }
  return at;
}

template <class T>
T* NameRegistry<T>::enter(T* object) {
  if ((m_used + 1) * 4 > m_entries.size() * 3) grow();
  const NameKey key(*object);
  const std::uint32_t hash = key.hash();
  const std::size_t at = place(key, hash);
  T* replaced = m_entries[at].object;
  if (replaced == nullptr) ++m_used;
  m_entries[at] = RegisteredName<T>(object);
  m_hashes[at] = hash;
  return replaced;
}

template <class T>
T* NameRegistry<T>::find(const NameKey& key) const {
  return m_entries.empty() ? nullptr : m_entries[place(key, key.hash())].object;
}

template <class T>
void NameRegistry<T>::grow() {
  std::vector<RegisteredName<T>> entries(std::max<std::size_t>(m_entries.size() * 2, 16));
  std::vector<std::uint32_t> hashes(entries.size());
  const std::size_t mask = entries.size() - 1;
  for (std::size_t from = 0; from < m_entries.size(); ++from) {
    if (m_entries[from].object == nullptr) continue;
    std::size_t at = m_hashes[from] & mask;
    while (entries[at].object != nullptr) at = (at + 1) & mask;
    entries[at] = m_entries[from];
    hashes[at] = m_hashes[from];
  }
  m_entries.swap(entries);
  m_hashes.swap(hashes);
}

template class NameRegistry<Module>;
template class NameRegistry<Signal>;

}  // namespace XRF_RTL2LL
