#include <crossreference/NamePool.h>

#include <limits>
#include <new>
#include <utility>

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

namespace {

// What places count.
std::uint64_t units(std::size_t bytes) { return (bytes + alignof(Word) - 1) / alignof(Word); }

}  // namespace

NamePool::NamePool() : m_slots(m_mask + 1) { intern(std::string_view()); }

const Word* NamePool::enter(std::string_view name, std::uint32_t hash) {
  if ((m_count + std::size_t{1}) * 4 > (m_mask + 1) * 3) grow();
  void* memory = makeRoom(Word::bytes(name.size()));
  std::size_t at = hash & m_mask;
  while (m_slots[at].place != freeSlot) at = (at + 1) & m_mask;
  m_slots[at] = {hash, static_cast<std::uint32_t>(m_next)};
  m_next += units(Word::bytes(name.size()));
  return Word::make(memory, name, m_count++);
}

// Memory for a word at `m_next`, which moves on to the next chunk that is large enough.
void* NamePool::makeRoom(std::size_t bytes) {
  if (bytes > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  Place place(m_next);
  std::uint64_t next = m_next;
  while (place.index + units(bytes) > place.chunkSize()) {
    next += place.chunkSize() - place.index;
    place = Place(next);
  }
  if (place.chunk >= chunks) throw std::bad_alloc();
  Pages& chunk = m_chunks[place.chunk];
  if (chunk == nullptr) {
    const std::size_t size = place.chunkSize() * alignof(Word);
    chunk = allocatePages(size, size >= hugePage);
  }
  m_next = next;
  return static_cast<char*>(chunk.get()) + place.index * alignof(Word);
}

void NamePool::grow() {
  PageArray<Slot> larger(m_slots.size() * 2);
  const std::size_t mask = larger.size() - 1;
  for (const Slot& slot : m_slots) {
    if (slot.place == freeSlot) continue;
    std::size_t at = slot.hash & mask;
    while (larger[at].place != freeSlot) at = (at + 1) & mask;
    larger[at] = slot;
  }
  m_slots = std::move(larger);
  m_mask = mask;
}

}  // namespace XRF_RTL2LL
