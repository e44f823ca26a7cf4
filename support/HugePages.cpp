#include <support/HugePages.h>

#include <cstdlib>
#include <new>
#include <sys/mman.h>

namespace XRF_RTL2LL {

void FreeHuge::operator()(void* memory) const { std::free(memory); }

HugeMemory allocateHuge(std::size_t size) {
  const std::size_t whole = (size + hugePage - 1) & ~(hugePage - 1);
  HugeMemory memory(std::aligned_alloc(hugePage, whole));
  if (memory == nullptr) throw std::bad_alloc();
#if defined(MADV_HUGEPAGE)
  // A wish: what the kernel answers changes nothing.
  static_cast<void>(::madvise(memory.get(), whole, MADV_HUGEPAGE));
#endif
  return memory;
}

}  // namespace XRF_RTL2LL
