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

NamePool::NamePool() : m_slots(makeSlots(m_mask + 1)) { intern(std::string_view()); }

NamePool::~NamePool() {
  for (std::uint32_t number = 0; number < m_count; ++number) std::destroy_at(&nameAt(number));
}

Pages NamePool::makeSlots(std::size_t count) {
  const std::size_t size = count * sizeof(Slot);
  Pages slots = allocatePages(size, size >= hugePage);
  std::uninitialized_fill_n(static_cast<Slot*>(slots.get()), count, Slot{});
  return slots;
}

const std::string* NamePool::enter(std::string_view name, std::uint32_t hash) {
  if ((m_count + std::size_t{1}) * 4 > (m_mask + 1) * 3) grow();
  std::size_t at = hash & m_mask;
  while (slots()[at].number != freeSlot) at = (at + 1) & m_mask;
  const Place place(m_count);
  Pages& chunk = m_chunks[place.chunk];
  if (chunk == nullptr) {
    const std::size_t size = (sizeof(Name) << smallestChunk) << place.chunk;
    chunk = allocatePages(size, size >= hugePage);
  }
  const Name* entered =
      new (static_cast<Name*>(chunk.get()) + place.index) Name(name, hash, m_count);
  slots()[at] = {hash, m_count++};
  return entered;
}

const std::string* NamePool::find(std::string_view name) const {
  const std::uint32_t hash = hashOf(name);
  for (std::size_t at = hash & m_mask;; at = (at + 1) & m_mask) {
    const Slot slot = slots()[at];
    if (slot.number == freeSlot) return nullptr;
    if (slot.hash == hash && nameAt(slot.number) == name) return &nameAt(slot.number);
  }
}

void NamePool::grow() {
  const std::size_t count = m_mask + 1;
  Pages larger = makeSlots(count * 2);
  m_mask = count * 2 - 1;
  auto* target = static_cast<Slot*>(larger.get());
  for (std::size_t from = 0; from < count; ++from) {
    const Slot slot = slots()[from];
    if (slot.number == freeSlot) continue;
    std::size_t at = slot.hash & m_mask;
    while (target[at].number != freeSlot) at = (at + 1) & m_mask;
    target[at] = slot;
  }
  m_slots.swap(larger);
}

}  // namespace XRF_RTL2LL
