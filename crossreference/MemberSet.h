#pragma once

#include <crossreference/ModelState.h>
#include <crossreference/NameOrder.h>

#include <algorithm>
#include <cstdint>
#include <span>

/// The sets of signals and modules that the model's classes keep: slots in the order of their
/// names, sorted when first looked at after an addition, and found by number in constant time. Of
/// several objects whose names count as one, only the first to come is listed; the others keep
/// their slots, since they are found by number.
namespace XRF_RTL2LL::members {

/// Up to here looking through the slots beats an index, and almost every cell is smaller.
inline constexpr std::uint32_t unindexed = 16;

/// Marks in the low bits of a slot.
inline constexpr std::uintptr_t unlisted = 1;
inline constexpr std::uintptr_t visible = 2;
inline constexpr std::uintptr_t marks = unlisted | visible;

/// How `detail::advance` walks.
enum Walk : std::uint32_t { Listed = 1, Visible = 2, Links = 3, Live = 4, Chained = 5 };

template <class T>
T* object(std::uintptr_t slot) {
  return reinterpret_cast<T*>(slot & ~marks);  // NOLINT(performance-no-int-to-ptr)
}

/// The low bits of a number's or stored name's hash tell where its search begins in an index. The
/// high ones stand in its entry, above the position of its slot, so that hardly ever an object is
/// looked at which is another's.
inline std::uint32_t indexHash(std::uint64_t key) {
  return static_cast<std::uint32_t>((key * 0x9e3779b97f4a7c15U) >> 32);
}
/// Positions count from 1, so that an index starts as zeros.
inline std::uint32_t indexEntry(std::uint32_t hash, std::uint32_t position,
                                std::uint32_t capacity) {
  return (hash & ~(capacity - 1)) | (position + 1);
}
inline bool mayBeOf(std::uint32_t entry, std::uint32_t hash, std::uint32_t capacity) {
  return ((entry ^ hash) & ~(capacity - 1)) == 0;
}

/// Calls `visit` with the positions that an index has for a key, others among them, until it
/// returns true.
template <class Visit>
void eachPosition(const std::uint32_t* index, std::uint32_t capacity, std::uint64_t key,
                  Visit visit) {
  const std::uint32_t mask = capacity - 1;
  const std::uint32_t hash = indexHash(key);
  for (std::uint32_t at = hash & mask; index[at] != 0; at = (at + 1) & mask) {
    if (mayBeOf(index[at], hash, capacity) && visit((index[at] & mask) - 1)) return;
  }
}

/// Makes room for exactly so many objects in a new set; the caller fills the slots.
void reserve(Arena& arena, detail::Members& set, std::uint32_t count);
/// Takes slots from the arena, filled with pointers to objects, for those of a new set.
inline void adopt(detail::Members& set, std::span<std::uintptr_t> slots) {
  set.slots = slots.data();
  set.count = static_cast<std::uint32_t>(slots.size());
  set.settled = false;
}

/// Enters all slots in the index of numbers, if the set is large enough for one.
template <class T>
void indexAll(Arena& arena, detail::Members& set);

/// Appends an object without looking for an equal one.
void append(Arena& arena, detail::Members& set, void* object);

/// Makes room in the index of numbers and enters the last slot, once a set is large enough.
template <class T>
void indexLast(Arena& arena, detail::Members& set);

/// Gives a small set the numbers of its objects, slot by slot, which sets alike may share, so that
/// only the object looked for is touched.
inline void shareNumbers(detail::Members& set, std::uint32_t* numbers) {
  if (set.count <= unindexed) set.index = numbers;
}

/// The object of a number, the first to come, or null.
template <class T>
T* find(const detail::Members& set, std::uint32_t id);

/// The object that a look-up in an index will meet first, or null. It need not be the one looked
/// for.
template <class T>
T* candidate(const detail::Members& set, std::uint32_t id) {
  T* first = nullptr;
  if (set.count <= unindexed) return first;
  eachPosition(set.index, set.indexCapacity(), id, [&](std::uint32_t position) {
    first = object<T>(set.slots[position]);
    return true;
  });
  return first;
}

/// The first signal of a stored name that `isWanted` takes, or null.
template <class IsWanted>
Signal* findNamed(const detail::Members& set, const Word* name, IsWanted isWanted);

/// As many slots as it pays to fetch ahead.
inline std::span<const std::uintptr_t> firstOf(std::span<const std::uintptr_t> slots) {
  constexpr std::size_t most = 4;
  return slots.first(std::min(slots.size(), most));
}

/// Calls `visit` with every object, listed or not.
template <class T, class Visit>
void each(const detail::Members& set, Visit visit) {
  for (std::uint32_t at = 0; at < set.count; ++at) visit(object<T>(set.slots[at]));
}

/// Fetch the memory that settling a set of these slots will need, of its first objects: the
/// objects, and once those are there, their names. To be asked for some sets ahead, where the
/// objects are all over memory.
template <class T>
void prefetchObjects(std::span<const std::uintptr_t> slots) {
  for (const std::uintptr_t slot : firstOf(slots)) __builtin_prefetch(object<T>(slot), 1);
}
template <class T>
void prefetchNames(std::span<const std::uintptr_t> slots) {
  for (const std::uintptr_t slot : firstOf(slots)) {
    __builtin_prefetch(ModelState::nameOf(object<T>(slot)));
  }
}

/// Sorts and marks the slots after additions. With `drop`, objects that are not listed lose their
/// slots.
template <class T>
void settle(detail::Members& set, bool drop);

/// Takes the set of visible objects anew.
template <class T, class IsHidden>
void updateVisible(detail::Members& set, IsHidden isHidden) {
  set.visible = 0;
  for (std::uint32_t at = 0; at < set.count; ++at) {
    std::uintptr_t& slot = set.slots[at];
    slot &= ~visible;
    if ((slot & unlisted) != 0 || isHidden(object<T>(slot))) continue;
    slot |= visible;
    ++set.visible;
  }
}

inline std::uint64_t nameKey(const Word* name) {
  return reinterpret_cast<std::uintptr_t>(name) / alignof(Word);
}

template <class IsWanted>
Signal* findNamed(const detail::Members& set, const Word* name, IsWanted isWanted) {
  const auto matches = [&](const Signal* signal) {
    return ModelState::nameOf(signal) == name && isWanted(*signal);
  };
  if (set.count <= unindexed) {
    for (std::uint32_t at = 0; at < set.count; ++at) {
      auto* signal = object<Signal>(set.slots[at]);
      if (matches(signal)) return signal;
    }
    return nullptr;
  }
  Signal* found = nullptr;
  const std::uint32_t* names = set.index + set.indexCapacity();
  eachPosition(names, set.indexCapacity(), nameKey(name), [&](std::uint32_t position) {
    auto* signal = object<Signal>(set.slots[position]);
    if (matches(signal)) found = signal;
    return found != nullptr;
  });
  return found;
}

template <class T>
Range<T> range(const detail::Members& set, bool onlyVisible) {
  return {{set.slots, set.slots + set.count, onlyVisible ? Visible : Listed},
          onlyVisible ? set.visible : set.listed};
}

}  // namespace XRF_RTL2LL::members
