#include <support/HugePages.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
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

void copyPages(Pages& pages, std::size_t used, std::size_t size) {
  Pages copy = allocatePages(size, size >= hugePage);
  if (used > 0) std::memcpy(copy.get(), pages.get(), used);
  pages = std::move(copy);
}

// Lays the pages where new memory is, which they replace. False where that cannot be done.
bool movePages([[maybe_unused]] Pages& pages, [[maybe_unused]] std::size_t size) {
#if defined(MREMAP_FIXED)
  Pages target = allocatePages(size, true);
  const std::size_t mapped = target.get_deleter().mapped();
  if (::mremap(pages.get(), pages.get_deleter().mapped(), mapped, MREMAP_MAYMOVE | MREMAP_FIXED,
               target.get()) == MAP_FAILED) {
    // Whether the new memory is still there is not told, so it can't be given back.
    static_cast<void>(target.release());
    return false;
  }
  static_cast<void>(pages.release());
  pages = std::move(target);
  return true;
#else
  return false;
#endif
}

void cutPages(Pages& pages, std::size_t size) {
  const std::size_t mapped = pages.get_deleter().mapped();
  auto* start = static_cast<char*>(pages.release());
  if (mapped > size) ::munmap(start + size, mapped - size);
  pages = {start, FreePages(size)};
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

Pages allocateZeros(std::size_t size) {
  if (size >= hugePage) return allocatePages(size, true);
  void* memory = std::calloc(std::max<std::size_t>(size, 1), 1);
  if (memory == nullptr) throw std::bad_alloc();
  return {memory, FreePages()};
}

void resizePages(Pages& pages, std::size_t used, std::size_t size) {
  used = std::min(used, size);
  const std::size_t mapped = pages.get_deleter().mapped();
  const bool large = size >= hugePage;
  if (mapped > 0 && large) {
    if (mapped >= size) {
      cutPages(pages, wholePages(size));
    } else if (!movePages(pages, size)) {
      copyPages(pages, used, size);
    }
  } else if (mapped > 0 || large) {
    copyPages(pages, used, size);
  } else {
    void* memory = std::realloc(pages.get(), std::max<std::size_t>(size, 1));
    if (memory == nullptr) throw std::bad_alloc();
    static_cast<void>(pages.release());
    pages.reset(memory);
  }
}

}  // namespace XRF_RTL2LL
