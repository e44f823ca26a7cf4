#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>

#include <cstring>
#include <type_traits>

namespace XRF_RTL2LL::members {

namespace {

int order(const Signal* a, const Signal* b) {
  return orderOfSignals(ModelState::nameOf(a), ModelState::nameOf(b));
}
int order(const Module* a, const Module* b) {
  return orderOfModules(ModelState::nameOf(a), ModelState::nameOf(b));
}

// Entries count from 1, so that an index starts as zeros.
void enterAt(std::uint32_t* index, std::uint32_t capacity, std::uint64_t key,
             std::uint32_t position) {
  std::uint32_t at = indexPlace(key, capacity);
  while (index[at] != 0) at = (at + 1) & (capacity - 1);
  index[at] = position + 1;
}

// Signals are found by name too: a second index of the same size follows that of the numbers.
template <class T>
constexpr std::uint32_t indexes = std::is_same_v<T, Signal> ? 2 : 1;

template <class T>
void enter(detail::Members& set, std::uint32_t position) {
  const T* entered = object<T>(set.slots[position]);
  enterAt(set.index, set.indexCapacity, entered->getId(), position);
  if constexpr (indexes<T> == 2) {
    enterAt(set.index + set.indexCapacity, set.indexCapacity, nameKey(ModelState::nameOf(entered)),
            position);
  }
}

// Slots move when a set is sorted, so the index is made anew then.
template <class T>
void reindex(detail::Members& set) {
  if (set.count <= unindexed) return;
  std::memset(set.index, 0, indexes<T> * set.indexCapacity * sizeof(std::uint32_t));
  for (std::uint32_t position = 0; position < set.count; ++position) enter<T>(set, position);
}

template <class T>
void growIndex(Arena& arena, detail::Members& set) {
  arena.recycle(set.index, indexes<T> * set.indexCapacity);
  set.indexCapacity = std::max(set.indexCapacity * 2, 4 * unindexed);
  set.index = arena.allocateArray<std::uint32_t>(indexes<T> * set.indexCapacity);
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
  for (std::uint32_t at = indexPlace(id, set.indexCapacity); set.index[at] != 0;
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
