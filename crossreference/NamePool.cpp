#include <crossreference/NamePool.h>

#include <memory>
#include <new>

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

NamePool::NamePool() : m_slots(64), m_mask(m_slots.size() - 1) { intern(std::string_view()); }

NamePool::~NamePool() {
  for (std::uint32_t number = 0; number < m_count; ++number) std::destroy_at(&nameAt(number));
  for (Name* chunk : m_chunks) ::operator delete(chunk);
}

const std::string* NamePool::enter(std::string_view name, std::uint32_t hash) {
  if ((m_count + std::size_t{1}) * 4 > m_slots.size() * 3) grow();
  std::size_t at = hash & m_mask;
  while (m_slots[at].number != freeSlot) at = (at + 1) & m_mask;
  const Place place(m_count);
  Name*& chunk = m_chunks[place.chunk];
  if (chunk == nullptr) {
    chunk = static_cast<Name*>(::operator new((sizeof(Name) << smallestChunk) << place.chunk));
  }
  Name* entered = new (chunk + place.index) Name(name, hash, m_count);
  m_slots[at] = {hash, m_count++};
  return entered;
}

const std::string* NamePool::find(std::string_view name) const {
  const std::uint32_t hash = hashOf(name);
  for (std::size_t at = hash & m_mask; m_slots[at].number != freeSlot; at = (at + 1) & m_mask) {
    if (m_slots[at].hash != hash) continue;
    const Name& stored = nameAt(m_slots[at].number);
    if (stored == name) return &stored;
  }
  return nullptr;
}

void NamePool::grow() {
  std::vector<Slot> larger(m_slots.size() * 2);
  m_mask = larger.size() - 1;
  for (const Slot& slot : m_slots) {
    if (slot.number == freeSlot) continue;
    std::size_t at = slot.hash & m_mask;
    while (larger[at].number != freeSlot) at = (at + 1) & m_mask;
    larger[at] = slot;
  }
  m_slots.swap(larger);
}

}  // namespace XRF_RTL2LL
