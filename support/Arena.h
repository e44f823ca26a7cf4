#pragma once

#include <support/HugePages.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace XRF_RTL2LL {

/// Memory of the objects of one model, all released at once. Arrays come in powers of two. Those
/// outgrown are handed out again, or go back to the kernel where they are large.
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  void* allocate(std::size_t size) {
    size = (size + alignment - 1) & ~(alignment - 1);
    if (size > m_left) return allocateSlowly(size);
    void* place = m_next;
    m_next += size;
    m_left -= size;
    // What is cleared by the kernel is far away again until it is handed out.
    if (m_left > ahead) __builtin_prefetch(m_next + ahead, 1);
    return place;
  }

  template <class T>
  T* allocateArray(std::size_t capacity) {
    return static_cast<T*>(reuse(capacity * sizeof(T)));
  }
  /// An array of another capacity in place of one of `allocateArray`, with all its elements.
  template <class T>
  T* growArray(T* array, std::size_t capacity, std::size_t larger) {
    static_assert(std::is_trivially_copyable_v<T>);
    return static_cast<T*>(grow(array, capacity * sizeof(T), larger * sizeof(T)));
  }
  /// Takes back an array of `allocateArray`.
  template <class T>
  void recycle(T* array, std::size_t capacity) {
    if (array != nullptr) release(array, capacity * sizeof(T));
  }

 private:
  static constexpr std::size_t alignment = 8;
  static constexpr std::size_t ahead = 512;
  static constexpr std::size_t smallestBlock = std::size_t{1} << 16;
  static constexpr std::size_t largestBlock = std::size_t{1} << 22;
  // What is larger gets memory of its own where it does not fit into the block in hand.
  static constexpr std::size_t largestShared = largestBlock / 4;

  struct FreeArray {
    FreeArray* next;
  };
  void* allocateSlowly(std::size_t size);
  void* reuse(std::size_t size);
  void* grow(void* array, std::size_t size, std::size_t larger);
  void release(void* array, std::size_t size);

  char* m_next = nullptr;
  std::size_t m_left = 0;
  std::size_t m_block = smallestBlock;
  std::vector<Pages> m_blocks;
  std::unordered_map<const void*, Pages> m_alone;
  std::array<FreeArray*, 64> m_free{};
};

}  // namespace XRF_RTL2LL
