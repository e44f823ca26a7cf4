#include <support/HugePages.h>

#include <cstdlib>
#include <new>
#include <sys/mman.h>

namespace XRF_RTL2LL {

void FreePages::operator()(void* memory) const { std::free(memory); }

Pages allocatePages(std::size_t size, bool large) {
  if (large) size = (size + hugePage - 1) & ~(hugePage - 1);
  Pages memory(large ? std::aligned_alloc(hugePage, size) : std::malloc(size));
  if (memory == nullptr) throw std::bad_alloc();
#if defined(MADV_HUGEPAGE)
  if (large) static_cast<void>(::madvise(memory.get(), size, MADV_HUGEPAGE));
#endif
  return memory;
}

}  // namespace XRF_RTL2LL
