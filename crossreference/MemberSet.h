#pragma once

#include <crossreference/Module.h>
#include <crossreference/NameOrder.h>
#include <support/Arena.h>
#include <support/Range.h>

#include <algorithm>
#include <cstdint>

/// The sets of signals and modules that the model's classes keep: slots in the order of their
/// names, sorted when first looked at after an addition, and found by number in constant time. Of
/// several objects whose names count as one, only the first to come is listed; the others keep
/// their slots, since they are found by number.
namespace XRF_RTL2LL::members {

/// Marks in the low bits of a slot.
inline constexpr std::uintptr_t unlisted = 1;
inline constexpr std::uintptr_t visible = 2;
inline constexpr std::uintptr_t marks = unlisted | visible;

/// How `detail::advance` walks.
enum Walk : std::uint32_t { Listed = 1, Visible = 2, Links = 3, Live = 4 };

template <class T>
T* object(std::uintptr_t slot) {
  return reinterpret_cast<T*>(slot & ~marks);  // NOLINT(performance-no-int-to-ptr)
}

/// Appends an object without looking for an equal one.
void append(Arena& arena, detail::Members& set, void* object);

/// Makes room in the index of numbers and enters the last slot, once a set is large enough.
template <class T>
void indexLast(Arena& arena, detail::Members& set);

/// The object of a number, the first to come, or null.
template <class T>
T* find(const detail::Members& set, std::uint32_t id);

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

template <class T>
Range<T> range(const detail::Members& set, bool onlyVisible) {
  return {{set.slots, set.slots + set.count, onlyVisible ? Visible : Listed},
          onlyVisible ? set.visible : set.listed};
}

}  // namespace XRF_RTL2LL::members
