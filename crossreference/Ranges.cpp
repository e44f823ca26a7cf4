#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>

namespace XRF_RTL2LL {

namespace {

template <class T>
bool contains(const Range<T>& range, const T* object) {
  return std::find(range.begin(), range.end(), object) != range.end();
}

}  // namespace

namespace detail {

void* advance(Cursor& cursor) {
  if (cursor.walk == members::Chained) {
    const auto* ref = static_cast<const BitRef*>(cursor.position);
    if (ref != nullptr) cursor.position = ref == cursor.end ? nullptr : ref->m_next;
    return const_cast<BitRef*>(ref);
  }
  if (cursor.walk == members::Links) {
    while (cursor.position != nullptr) {
      const auto* link = static_cast<const Bit::Link*>(cursor.position);
      cursor.position = link == cursor.end ? nullptr : link->next;
      if (link->ref != nullptr) return link->ref;
    }
    return nullptr;
  }
  // Every other walk goes over marked slots; a registry marks those that left or are not made yet.
  const std::uintptr_t wanted = cursor.walk == members::Visible ? members::visible : 0;
  const std::uintptr_t looked = cursor.walk == members::Listed ? members::unlisted : members::marks;
  const auto* slot = static_cast<const std::uintptr_t*>(cursor.position);
  const auto* end = static_cast<const std::uintptr_t*>(cursor.end);
  while (slot != end) {
    const std::uintptr_t current = *slot++;
    if ((current & looked) != wanted) continue;
    cursor.position = slot;
    return members::object<void>(current);
  }
  cursor.position = slot;
  return nullptr;
}

}  // namespace detail

template <>
bool Range<BitRef>::contains(const BitRef* object) const {
  return object != nullptr && XRF_RTL2LL::contains(*this, object);
}

template <>
bool Range<Module>::contains(const Module* object) const {
  return object != nullptr && XRF_RTL2LL::contains(*this, object);
}

template <>
bool Range<Net>::contains(const Net* object) const {
  return object != nullptr && XRF_RTL2LL::contains(*this, object);
}

template <>
bool Range<Bit>::contains(const Bit* object) const {
  if (object == nullptr) return false;
  const auto* slots = static_cast<const std::uintptr_t*>(m_start.position);
  const auto* end = static_cast<const std::uintptr_t*>(m_start.end);
  return object->m_place < static_cast<std::size_t>(end - slots) &&
         slots[object->m_place] == reinterpret_cast<std::uintptr_t>(object);
}

template <>
bool Range<Signal>::contains(const Signal* object) const {
  return object != nullptr && XRF_RTL2LL::contains(*this, object);
}

}  // namespace XRF_RTL2LL
