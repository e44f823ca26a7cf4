#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>

#include <array>
#include <bit>
#include <cstring>
#include <type_traits>
#include <vector>

namespace XRF_RTL2LL::members {

namespace {

int order(const Signal* a, const Signal* b) {
  return orderOfSignals(ModelState::nameOf(a), ModelState::nameOf(b));
}
int order(const Module* a, const Module* b) {
  return orderOfModules(ModelState::nameOf(a), ModelState::nameOf(b));
}

void enterAt(std::uint32_t* index, std::uint32_t capacity, std::uint64_t key,
             std::uint32_t position) {
  const std::uint32_t hash = indexHash(key);
  std::uint32_t at = hash & (capacity - 1);
  while (index[at] != 0) at = (at + 1) & (capacity - 1);
  index[at] = indexEntry(hash, position, capacity);
}

// As enterAt, for the index of names. Where a name was given again and again, the entries of
// signals that lost it are taken, so that no name has a long row of them.
void enterName(std::uint32_t* index, std::uint32_t capacity, const detail::Members& set,
               std::uint32_t position) {
  constexpr std::uint32_t few = 8;
  const Word* name = ModelState::nameOf(object<Signal>(set.slots[position]));
  const std::uint32_t mask = capacity - 1;
  const std::uint32_t hash = indexHash(nameKey(name));
  std::uint32_t at = hash & mask;
  for (std::uint32_t passed = 0; index[at] != 0; at = (at + 1) & mask) {
    if (++passed <= few || !mayBeOf(index[at], hash, capacity)) continue;
    const auto* other = object<Signal>(set.slots[(index[at] & mask) - 1]);
    if (ModelState::lostName(*other) && ModelState::nameOf(other) == name) break;
  }
  index[at] = indexEntry(hash, position, capacity);
}

// Signals are found by name too: a second index of the same size follows that of the numbers.
template <class T>
constexpr std::uint32_t indexes = std::is_same_v<T, Signal> ? 2 : 1;

template <class T>
void enter(detail::Members& set, std::uint32_t position) {
  const T* entered = object<T>(set.slots[position]);
  enterAt(set.index, set.indexCapacity(), entered->getId(), position);
  if constexpr (indexes<T> == 2) {
    enterName(set.index + set.indexCapacity(), set.indexCapacity(), set, position);
  }
}

// Slots move when a set is sorted, so the index is made anew then.
template <class T>
void reindex(detail::Members& set) {
  if (set.count <= unindexed) return;
  std::memset(set.index, 0, indexes<T> * set.indexCapacity() * sizeof(std::uint32_t));
  constexpr std::uint32_t ahead = 16;
  for (std::uint32_t position = 0; position < set.count; ++position) {
    if (position + ahead < set.count) __builtin_prefetch(object<T>(set.slots[position + ahead]));
    enter<T>(set, position);
  }
}

// Makes an index of a size that is a power of two, a quarter of it free at least.
template <class T>
void makeIndex(Arena& arena, detail::Members& set) {
  if (set.indexBits != 0) arena.recycle(set.index, indexes<T> * set.indexCapacity());
  set.indexBits = static_cast<std::uint8_t>(std::bit_width(set.count + set.count / 2));
  set.index = arena.allocateArray<std::uint32_t>(indexes<T> * set.indexCapacity());
  reindex<T>(set);
}

// A slot with the beginning of what its name is ordered by, so that names are rarely looked at.
struct Keyed {
  OrderKey key;
  std::uintptr_t slot;
};

template <class T>
Keyed keyed(std::uintptr_t slot) {
  const Word* name = ModelState::nameOf(object<T>(slot));
  if constexpr (std::is_same_v<T, Signal>) {
    return {orderKeyOfSignal(name), slot};
  } else {
    return {orderKeyOfModule(name), slot};
  }
}

template <class T>
int order(const Keyed& a, const Keyed& b) {
  const int byKey = OrderKey::compare(a.key, b.key);
  if (byKey != 0 || (a.key.whole && b.key.whole)) return byKey;
  return order(object<T>(a.slot), object<T>(b.slot));
}

template <class T>
void sort(Keyed* first, Keyed* last) {
  const auto less = [](const Keyed& a, const Keyed& b) { return order<T>(a, b) < 0; };
  if (std::is_sorted(first, last, less)) return;
  constexpr std::ptrdiff_t few = 12;
  if (last - first > few) {
    std::stable_sort(first, last, less);
    return;
  }
  for (Keyed* at = first; at != last; ++at) {
    const Keyed moved = *at;
    Keyed* to = at;
    for (; to != first && less(moved, to[-1]); --to) *to = to[-1];
    *to = moved;
  }
}

// Calls `visit` with each position until it returns false. Objects and their names may be all over
// memory, so they are asked for ahead of their turn.
template <class T, class Visit>
void eachAhead(std::span<const std::uintptr_t> slots, Visit visit) {
  constexpr std::size_t objectsAhead = 16;
  constexpr std::size_t namesAhead = 8;
  for (std::size_t at = 0; at < slots.size(); ++at) {
    if (at + objectsAhead < slots.size()) {
      __builtin_prefetch(object<T>(slots[at + objectsAhead]));
    }
    if (at + namesAhead < slots.size()) {
      __builtin_prefetch(ModelState::nameOf(object<T>(slots[at + namesAhead])));
    }
    if (!visit(at)) return;
  }
}

// Whether the slots are in order, no two of them under one name.
template <class T>
bool areInOrder(std::span<const std::uintptr_t> slots) {
  Keyed last{};
  bool inOrder = true;
  eachAhead<T>(slots, [&](std::size_t at) {
    const Keyed next = keyed<T>(slots[at]);
    inOrder = at == 0 || order<T>(last, next) < 0;
    last = next;
    return inOrder;
  });
  return inOrder;
}

// Puts the slots in order and marks those that are listed.
template <class T>
void arrange(detail::Members& set, Keyed* scratch, bool drop) {
  const std::span<const std::uintptr_t> slots(set.slots, set.count);
  eachAhead<T>(slots, [&](std::size_t at) {
    scratch[at] = keyed<T>(slots[at]);
    return true;
  });
  sort<T>(scratch, scratch + set.count);
  std::uint32_t kept = 0;
  const Keyed* last = nullptr;
  set.listed = 0;
  for (Keyed* at = scratch; at != scratch + set.count; ++at) {
    const bool first = last == nullptr || order<T>(*last, *at) != 0;
    if (first) {
      last = at;
      ++set.listed;
    }
    if (!first && drop) continue;
    set.slots[kept++] = first ? at->slot & ~unlisted : at->slot | unlisted;
  }
  set.count = kept;
}

}  // namespace

void reserve(Arena& arena, detail::Members& set, std::uint32_t count) {
  set.slots = static_cast<std::uintptr_t*>(arena.allocate(count * sizeof(std::uintptr_t)));
}

template <class T>
void indexAll(Arena& arena, detail::Members& set) {
  if (set.count > unindexed) makeIndex<T>(arena, set);
}

void append(Arena& arena, detail::Members& set, void* object) {
  if (set.count == set.capacity()) {
    const auto bits = static_cast<std::uint8_t>(std::bit_width(std::max(set.count, 1U)));
    const std::size_t capacity = std::size_t{1} << bits;
    if (set.capacityBits != 0) {
      set.slots = arena.growArray(set.slots, set.capacity(), capacity);
    } else {
      auto* slots = arena.allocateArray<std::uintptr_t>(capacity);
      std::copy_n(set.slots, set.count, slots);
      set.slots = slots;
    }
    set.capacityBits = bits;
  }
  if (set.indexBits == 0) set.index = nullptr;
  set.slots[set.count++] = reinterpret_cast<std::uintptr_t>(object) | unlisted;
  set.settled = false;
}

template <class T>
void indexLast(Arena& arena, detail::Members& set) {
  if (set.count <= unindexed) return;
  if (set.indexBits == 0 || set.count * 4 > set.indexCapacity() * 3) {
    makeIndex<T>(arena, set);
  } else {
    enter<T>(set, set.count - 1);
  }
}

template <class T>
T* find(const detail::Members& set, std::uint32_t id) {
  if (set.count <= unindexed) {
    for (std::uint32_t at = 0; at < set.count; ++at) {
      T* met = object<T>(set.slots[at]);
      if ((set.index != nullptr ? set.index[at] : met->getId()) == id) return met;
    }
    return nullptr;
  }
  T* found = nullptr;
  eachPosition(set.index, set.indexCapacity(), id, [&](std::uint32_t position) {
    T* candidate = object<T>(set.slots[position]);
    if (candidate->getId() == id) found = candidate;
    return found != nullptr;
  });
  return found;
}

template <class T>
void settle(detail::Members& set, bool drop) {
  if (set.settled) return;
  set.settled = true;
  // A module's are mostly read and written in the order of their names.
  if (set.count < 2 || (!drop && areInOrder<T>({set.slots, set.count}))) {
    for (std::uint32_t at = 0; at < set.count; ++at) set.slots[at] &= ~unlisted;
    set.listed = set.count;
    return;
  }
  constexpr std::uint32_t few = 16;
  if (set.count <= few) {
    std::array<Keyed, few> scratch;
    arrange<T>(set, scratch.data(), drop);
    return;
  }
  std::vector<Keyed> scratch(set.count);
  arrange<T>(set, scratch.data(), drop);
  if (!drop) reindex<T>(set);
}

template void indexAll<Signal>(Arena&, detail::Members&);
template void indexLast<Signal>(Arena&, detail::Members&);
template void indexLast<Module>(Arena&, detail::Members&);
template Signal* find<Signal>(const detail::Members&, std::uint32_t);
template Module* find<Module>(const detail::Members&, std::uint32_t);
template void settle<Signal>(detail::Members&, bool);
template void settle<Module>(detail::Members&, bool);

}  // namespace XRF_RTL2LL::members
