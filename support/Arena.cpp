#include <support/Arena.h>

#include <algorithm>
#include <bit>

namespace XRF_RTL2LL {

namespace {

std::size_t sizeClass(std::size_t size) {
  return static_cast<std::size_t>(std::bit_width(std::max(size, std::size_t{8}) - 1));
}

}  // namespace

void* Arena::allocateSlowly(std::size_t size) {
  const bool alone = size > largestBlock / 4;
  const std::size_t block = alone ? size : std::max(m_block, size);
  m_blocks.push_back(allocatePages(block, block >= hugePage));
  char* start = static_cast<char*>(m_blocks.back().get());
  if (alone) return start;
  m_block = std::min(m_block * 2, largestBlock);
  m_next = start + size;
  m_left = block - size;
  return start;
}

void* Arena::reuse(std::size_t size) {
  const std::size_t index = sizeClass(size);
  FreeArray* array = m_free[index];
  if (array == nullptr) return allocate(std::size_t{1} << index);
  m_free[index] = array->next;
  return array;
}

void Arena::release(void* array, std::size_t size) {
  const std::size_t index = sizeClass(size);
  m_free[index] = new (array) FreeArray{m_free[index]};
}

}  // namespace XRF_RTL2LL
