#pragma once

#include <cstddef>
#include <memory>

namespace XRF_RTL2LL {

/// Size and alignment of the pages that large memory is best made of.
inline constexpr std::size_t hugePage = std::size_t{1} << 21;

class FreePages {
 public:
  FreePages() = default;
  /// Of mapped memory its size, else 0.
  explicit FreePages(std::size_t mapped) : m_mapped(mapped) {}
  void operator()(void* memory) const;
  std::size_t mapped() const { return m_mapped; }

 private:
  std::size_t m_mapped = 0;
};
using Pages = std::unique_ptr<void, FreePages>;

/// Memory that is not touched yet. The kernel is asked to make large memory of huge pages, so that
/// it is mapped in few steps and found by few entries; what it answers changes nothing else. Large
/// memory goes back to the kernel as soon as it is freed. Throws std::bad_alloc.
Pages allocatePages(std::size_t size, bool large);

/// Memory of zeros, large from the size of a huge page on; large memory is not touched yet. Throws
/// std::bad_alloc.
Pages allocateZeros(std::size_t size);

/// Makes `pages` as large as is wanted, and large from the size of a huge page on; their first
/// `used` bytes are kept as far as they fit. Large memory that stays large moves page by page
/// instead of being copied, where the system can do that. Where it throws std::bad_alloc, nothing
/// has changed.
void resizePages(Pages& pages, std::size_t used, std::size_t size);

}  // namespace XRF_RTL2LL
