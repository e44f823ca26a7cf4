#pragma once

#include <support/HugePages.h>

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace XRF_RTL2LL {

/// An array that grows to hundreds of megabytes without being copied: its pages move instead, so
/// that its memory is touched once. Elements are moved as bytes and never destroyed; growing
/// invalidates pointers to them. What throws std::bad_alloc has changed nothing.
template <class T>
class PageArray {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

 public:
  PageArray() = default;
  /// Elements of zero bytes, which a large array has without touching them.
  explicit PageArray(std::size_t count)
      : m_pages(allocateZeros(count * sizeof(T))), m_size(count), m_capacity(count) {}
  PageArray(PageArray&& other) noexcept
      : m_pages(std::move(other.m_pages)),
        m_size(std::exchange(other.m_size, 0)),
        m_capacity(std::exchange(other.m_capacity, 0)) {}
  PageArray& operator=(PageArray&& other) noexcept {
    m_pages = std::move(other.m_pages);
    m_size = std::exchange(other.m_size, 0);
    m_capacity = std::exchange(other.m_capacity, 0);
    return *this;
  }
  PageArray(const PageArray&) = delete;
  PageArray& operator=(const PageArray&) = delete;
  ~PageArray() = default;

  T* data() { return static_cast<T*>(m_pages.get()); }
  const T* data() const { return static_cast<const T*>(m_pages.get()); }
  T* begin() { return data(); }
  T* end() { return data() + m_size; }
  const T* begin() const { return data(); }
  const T* end() const { return data() + m_size; }
  T& operator[](std::size_t at) { return data()[at]; }
  const T& operator[](std::size_t at) const { return data()[at]; }
  T& back() { return data()[m_size - 1]; }
  const T& back() const { return data()[m_size - 1]; }
  std::size_t size() const { return m_size; }
  std::size_t capacity() const { return m_capacity; }
  bool empty() const { return m_size == 0; }

  void push_back(T element) {
    if (m_size == m_capacity) setCapacity(std::max(m_capacity * 2, smallest));
    data()[m_size++] = element;
  }
  void pop_back() { --m_size; }
  /// What is new becomes `element`.
  void resize(std::size_t count, T element) {
    if (count > m_capacity) setCapacity(std::max(m_capacity * 2, count));
    if (count > m_size) std::fill(data() + m_size, data() + count, element);
    m_size = count;
  }
  /// Drops the elements from `count` on.
  void truncate(std::size_t count) { m_size = count; }
  /// Gives back the memory beyond the last element.
  void shrink_to_fit() {
    if (m_size < m_capacity) setCapacity(m_size);
  }

 private:
  static constexpr std::size_t smallest = 16;

  void setCapacity(std::size_t capacity) {
    resizePages(m_pages, m_size * sizeof(T), capacity * sizeof(T));
    m_capacity = capacity;
  }

  Pages m_pages;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

}  // namespace XRF_RTL2LL
