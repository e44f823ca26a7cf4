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

 private:
  std::size_t m_mapped = 0;
};
using Pages = std::unique_ptr<void, FreePages>;

/// Memory that is not touched yet. The kernel is asked to make large memory of huge pages, so that
/// it is mapped in few steps and found by few entries; what it answers changes nothing else. Large
/// memory goes back to the kernel as soon as it is freed. Throws std::bad_alloc.
Pages allocatePages(std::size_t size, bool large);

}  // namespace XRF_RTL2LL
