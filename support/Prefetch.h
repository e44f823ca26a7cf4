#pragma once

namespace XRF_RTL2LL {

/// Fetches an object that is no longer than a line of memory, and so lies in one or two.
template <class Object>
void prefetchWhole(const Object& object) {
  constexpr unsigned line = 64;
  static_assert(sizeof(Object) <= line);
  const char* start = reinterpret_cast<const char*>(&object);
  __builtin_prefetch(start);
  __builtin_prefetch(start + sizeof(Object) - 1);
}

}  // namespace XRF_RTL2LL
