#pragma once

#include <support/Api.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

/// Read-only views of the model's sets and registries. The order of a range is promised by the
/// function that returns it; how the objects are stored is not. A range stays valid until its set
/// is changed, and its objects live as long as their model.
///
///     for (Signal* signal : module->getSignals(false)) std::puts(signal->getName());
namespace XRF_RTL2LL {

namespace detail {

/// Where a walk over model objects stands. Its meaning belongs to the library.
struct Cursor {
  const void* position = nullptr;
  const void* end = nullptr;
  std::uint32_t walk = 0;
};

/// Steps the cursor and returns the object it passed, or null at the end.
XRF_API void* advance(Cursor& cursor);

/// The slots of a set of model objects: tagged pointers, ordered when first looked at.
struct Members {
  std::uintptr_t* slots = nullptr;
  std::uint32_t* index = nullptr;  // without bits of its own, the numbers of a small set
  std::uint32_t count = 0;
  std::uint32_t listed = 0;
  std::uint32_t visible = 0;
  std::uint8_t capacityBits = 0;  // of a set that grew; else it is full
  std::uint8_t indexBits = 0;
  bool settled = true;

  std::uint32_t capacity() const { return capacityBits == 0 ? count : 1U << capacityBits; }
  std::uint32_t indexCapacity() const { return 1U << indexBits; }
};

}  // namespace detail

template <class T>
class Range {
 public:
  class iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = T*;
    using difference_type = std::ptrdiff_t;
    using pointer = T* const*;
    using reference = T*;

    iterator() = default;
    explicit iterator(detail::Cursor cursor) : m_cursor(cursor) { ++*this; }

    T* operator*() const { return m_object; }
    iterator& operator++() {
      m_object = static_cast<T*>(detail::advance(m_cursor));
      return *this;
    }
    iterator operator++(int) {
      iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const iterator& other) const { return m_object == other.m_object; }

   private:
    detail::Cursor m_cursor;
    T* m_object = nullptr;
  };
  using const_iterator = iterator;
  using value_type = T*;

  Range() = default;
  Range(detail::Cursor start, std::size_t size) : m_start(start), m_size(size) {}

  iterator begin() const { return iterator(m_start); }
  iterator end() const { return iterator(); }
  std::size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }

  /// Whether `object`, which must be null or an object of the same model, is in the set.
  XRF_API bool contains(const T* object) const;

 private:
  detail::Cursor m_start;
  std::size_t m_size = 0;
};

}  // namespace XRF_RTL2LL
