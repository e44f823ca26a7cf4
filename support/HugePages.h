#pragma once

#include <cstddef>
#include <memory>

namespace XRF_RTL2LL {

/// Size and alignment of the pages that large memory is best made of.
inline constexpr std::size_t hugePage = std::size_t{1} << 21;

struct FreeHuge {
  void operator()(void* memory) const;
};
using HugeMemory = std::unique_ptr<void, FreeHuge>;

/// Memory, aligned and in whole huge pages, that the kernel is asked to make of huge pages, so that
/// it is mapped in few steps and found by few entries. Where it cannot, it is memory as any other.
HugeMemory allocateHuge(std::size_t size);

}  // namespace XRF_RTL2LL
