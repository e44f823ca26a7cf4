#pragma once

#include <support/HugePages.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace XRF_RTL2LL {

/// Memory of the objects of one model, all released at once. Arrays come in powers of two, and
/// those outgrown are handed out again.
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
    return place;
  }

  template <class T>
  T* allocateArray(std::size_t capacity) {
    return static_cast<T*>(reuse(capacity * sizeof(T)));
  }
  /// Takes back an array of `allocateArray`.
  template <class T>
  void recycle(T* array, std::size_t capacity) {
    if (array != nullptr) release(array, capacity * sizeof(T));
  }

 private:
  static constexpr std::size_t alignment = 8;
  static constexpr std::size_t smallestBlock = std::size_t{1} << 16;
  static constexpr std::size_t largestBlock = std::size_t{1} << 22;

  struct FreeArray {
    FreeArray* next;
  };
  void* allocateSlowly(std::size_t size);
  void* reuse(std::size_t size);
  void release(void* array, std::size_t size);

  char* m_next = nullptr;
  std::size_t m_left = 0;
  std::size_t m_block = smallestBlock;
  std::vector<Pages> m_blocks;
  std::array<FreeArray*, 64> m_free{};
};

}  // namespace XRF_RTL2LL
