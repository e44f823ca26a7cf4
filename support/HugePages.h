#pragma once

#include <cstddef>
#include <memory>

namespace XRF_RTL2LL {

/// Size and alignment of the pages that large memory is best made of.
inline constexpr std::size_t hugePage = std::size_t{1} << 21;

struct FreePages {
  void operator()(void* memory) const;
};
using Pages = std::unique_ptr<void, FreePages>;

/// Memory that is not touched yet. The kernel is asked to make large memory of huge pages, so that
/// it is mapped in few steps and found by few entries; what it answers changes nothing else. Throws
/// std::bad_alloc.
Pages allocatePages(std::size_t size, bool large);

}  // namespace XRF_RTL2LL
