#include <support/HugePages.h>

#include <cstdint>
#include <cstdlib>
#include <new>
#include <sys/mman.h>

namespace XRF_RTL2LL {

namespace {

std::size_t wholePages(std::size_t size) { return (size + hugePage - 1) & ~(hugePage - 1); }

// Maps more than is wanted and gives back what lies before and behind the aligned part.
void* mapAligned(std::size_t size) {
  void* mapped = ::mmap(nullptr, size + hugePage, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (mapped == MAP_FAILED) return nullptr;
  auto* start = static_cast<char*>(mapped);
  const std::size_t before =
      (hugePage - reinterpret_cast<std::uintptr_t>(mapped) % hugePage) % hugePage;
  if (before > 0) ::munmap(start, before);
  ::munmap(start + before + size, hugePage - before);
  return start + before;
}

}  // namespace

void FreePages::operator()(void* memory) const {
  if (m_mapped > 0) {
    ::munmap(memory, m_mapped);
  } else {
    std::free(memory);
  }
}

Pages allocatePages(std::size_t size, bool large) {
  if (large) size = wholePages(size);
  void* memory = large ? mapAligned(size) : std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
#if defined(MADV_HUGEPAGE)
  if (large) static_cast<void>(::madvise(memory, size, MADV_HUGEPAGE));
#endif
  return {memory, FreePages(large ? size : 0)};
}

}  // namespace XRF_RTL2LL
