#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>

#include <cstring>

namespace XRF_RTL2LL::members {

namespace {

// Up to here looking through the slots beats an index, and almost every cell is smaller.
constexpr std::uint32_t unindexed = 16;

int order(const Signal* a, const Signal* b) {
  return orderOfSignals(ModelState::nameOf(a), ModelState::nameOf(b));
}
int order(const Module* a, const Module* b) {
  return orderOfModules(ModelState::nameOf(a), ModelState::nameOf(b));
}

std::uint32_t place(std::uint32_t id, std::uint32_t capacity) {
  return static_cast<std::uint32_t>((id * 0x9e3779b97f4a7c15U) >> 32) & (capacity - 1);
}

// Slots move when a set is sorted, so the index is made anew then; entries count from 1.
template <class T>
void enter(detail::Members& set, std::uint32_t position) {
  const std::uint32_t id = object<T>(set.slots[position])->getId();
  std::uint32_t at = place(id, set.indexCapacity);
  while (set.index[at] != 0) at = (at + 1) & (set.indexCapacity - 1);
  set.index[at] = position + 1;
}

template <class T>
void reindex(detail::Members& set) {
  if (set.count <= unindexed) return;
  std::memset(set.index, 0, set.indexCapacity * sizeof(std::uint32_t));
  for (std::uint32_t position = 0; position < set.count; ++position) enter<T>(set, position);
}

template <class T>
void growIndex(Arena& arena, detail::Members& set) {
  arena.recycle(set.index, set.indexCapacity);
  set.indexCapacity = std::max(set.indexCapacity * 2, 4 * unindexed);
  set.index = arena.allocateArray<std::uint32_t>(set.indexCapacity);
  reindex<T>(set);
}

template <class T>
void sort(detail::Members& set) {
  const auto less = [](std::uintptr_t a, std::uintptr_t b) {
    return order(object<T>(a), object<T>(b)) < 0;
  };
  constexpr std::uint32_t few = 12;
  if (set.count > few) {
    std::stable_sort(set.slots, set.slots + set.count, less);
    return;
  }
  for (std::uint32_t at = 1; at < set.count; ++at) {
    const std::uintptr_t slot = set.slots[at];
    std::uint32_t to = at;
    for (; to > 0 && less(slot, set.slots[to - 1]); --to) set.slots[to] = set.slots[to - 1];
    set.slots[to] = slot;
  }
}

}  // namespace

void append(Arena& arena, detail::Members& set, void* object) {
  if (set.count == set.capacity) {
    const std::uint32_t capacity = std::max(set.capacity * 2, 2U);
    auto* slots = arena.allocateArray<std::uintptr_t>(capacity);
    std::copy_n(set.slots, set.count, slots);
    arena.recycle(set.slots, set.capacity);
    set.slots = slots;
    set.capacity = capacity;
  }
  set.slots[set.count++] = reinterpret_cast<std::uintptr_t>(object) | unlisted;
  set.settled = false;
}

template <class T>
void indexLast(Arena& arena, detail::Members& set) {
  if (set.count <= unindexed) return;
  if (set.count * 2 > set.indexCapacity) {
    growIndex<T>(arena, set);
  } else {
    enter<T>(set, set.count - 1);
  }
}

template <class T>
T* find(const detail::Members& set, std::uint32_t id) {
  if (set.count <= unindexed) {
    for (std::uint32_t at = 0; at < set.count; ++at) {
      T* candidate = object<T>(set.slots[at]);
      if (candidate->getId() == id) return candidate;
    }
    return nullptr;
  }
  for (std::uint32_t at = place(id, set.indexCapacity); set.index[at] != 0;
       at = (at + 1) & (set.indexCapacity - 1)) {
    T* candidate = object<T>(set.slots[set.index[at] - 1]);
    if (candidate->getId() == id) return candidate;
  }
  return nullptr;
}

template <class T>
void settle(detail::Members& set, bool drop) {
  if (set.settled) return;
  sort<T>(set);
  std::uint32_t kept = 0;
  const T* last = nullptr;
  set.listed = 0;
  for (std::uint32_t at = 0; at < set.count; ++at) {
    std::uintptr_t slot = set.slots[at];
    const bool first = last == nullptr || order(last, object<T>(slot)) != 0;
    slot = first ? slot & ~unlisted : slot | unlisted;
    if (first) {
      last = object<T>(slot);
      ++set.listed;
    }
    if (first || !drop) set.slots[kept++] = slot;
  }
  set.count = kept;
  set.settled = true;
  if (!drop) reindex<T>(set);
}

template void indexLast<Signal>(Arena&, detail::Members&);
template void indexLast<Module>(Arena&, detail::Members&);
template Signal* find<Signal>(const detail::Members&, std::uint32_t);
template Module* find<Module>(const detail::Members&, std::uint32_t);
template void settle<Signal>(detail::Members&, bool);
template void settle<Module>(detail::Members&, bool);

}  // namespace XRF_RTL2LL::members
