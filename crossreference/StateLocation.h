#pragma once

#include <crossreference/Bit.h>

#include <cstdint>

namespace XRF_RTL2LL {

/// Where a state element lives.
struct StateLocation {
  std::uint32_t frame = 0;
  std::uint32_t offset = 0;
  std::uint32_t slr = 0;

  static StateLocation of(const Bit& bit) {
    return {bit.getStateLoc1(), bit.getStateLoc2(), bit.getStateLoc3()};
  }
  bool operator==(const StateLocation&) const = default;
};

/// Leaves nothing known of a bit that a location was known of.
inline void forgetLocation(Bit& bit) {
  bit.setKind(Bit::UNKNOWN);
  bit.setStateLoc(0, 0, 0);
}

}  // namespace XRF_RTL2LL
