#include <support/Arena.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace XRF_RTL2LL {

namespace {

std::size_t sizeClass(std::size_t size) {
  return static_cast<std::size_t>(std::bit_width(std::max(size, std::size_t{8}) - 1));
}

}  // namespace

void* Arena::allocateSlowly(std::size_t size) {
  if (size > largestShared) {
    Pages pages = allocatePages(size, size >= hugePage);
    void* start = pages.get();
    m_alone.emplace(start, std::move(pages));
    // What begins with something large goes on so.
    m_block = largestBlock;
    return start;
  }
  const std::size_t block = std::max(m_block, size);
  m_blocks.push_back(allocatePages(block, block >= hugePage));
  char* start = static_cast<char*>(m_blocks.back().get());
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

void* Arena::grow(void* array, std::size_t size, std::size_t larger) {
  const auto alone = size > largestShared ? m_alone.find(array) : m_alone.end();
  if (alone == m_alone.end()) {
    void* copy = reuse(larger);
    std::memcpy(copy, array, size);
    release(array, size);
    return copy;
  }
  resizePages(alone->second, size, std::bit_ceil(larger));
  void* grown = alone->second.get();
  auto entry = m_alone.extract(alone);
  entry.key() = grown;
  m_alone.insert(std::move(entry));
  return grown;
}

void Arena::release(void* array, std::size_t size) {
  if (size > largestShared && m_alone.erase(array) > 0) return;
  const std::size_t index = sizeClass(size);
  m_free[index] = new (array) FreeArray{m_free[index]};
}

}  // namespace XRF_RTL2LL
