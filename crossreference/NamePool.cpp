#include <crossreference/NamePool.h>

namespace XRF_RTL2LL {

std::uint64_t extendHash(std::uint64_t state, std::string_view text) {
  constexpr std::uint64_t prime = 0x100000001b3U;
  for (const char byte : text) state = (state ^ static_cast<unsigned char>(byte)) * prime;
  return state;
}

std::uint32_t finishHash(std::uint64_t state) {
  state ^= state >> 32;
  state *= 0x9e3779b97f4a7c15U;
  return static_cast<std::uint32_t>(state >> 32);
}

NamePool::NamePool() : m_slots(64) { intern(std::string_view()); }

const std::string* NamePool::intern(std::string_view name) {
  if (m_names.size() * 4 >= m_slots.size() * 3) grow();
  const std::uint32_t hash = finishHash(extendHash(emptyHash, name));
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
    Slot& slot = m_slots[at];
    if (slot.number == 0) {
      m_names.emplace_back(name);
      slot = {hash, static_cast<std::uint32_t>(m_names.size())};
      return &m_names.back();
    }
    if (slot.hash != hash) continue;
    const std::string& stored = m_names[slot.number - 1];
    if (stored == name) return &stored;
  }
}

const std::string* NamePool::find(std::string_view name) const {
  const std::uint32_t hash = finishHash(extendHash(emptyHash, name));
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t at = hash & mask; m_slots[at].number != 0; at = (at + 1) & mask) {
    if (m_slots[at].hash != hash) continue;
    const std::string& stored = m_names[m_slots[at].number - 1];
    if (stored == name) return &stored;
  }
  return nullptr;
}

void NamePool::grow() {
  std::vector<Slot> larger(m_slots.size() * 2);
  const std::size_t mask = larger.size() - 1;
  for (const Slot& slot : m_slots) {
    if (slot.number == 0) continue;
    std::size_t at = slot.hash & mask;
    while (larger[at].number != 0) at = (at + 1) & mask;
    larger[at] = slot;
  }
  m_slots.swap(larger);
}

}  // namespace XRF_RTL2LL
