#include "Placement.h"

#include "Random.h"

namespace generate {

namespace {

constexpr uint32_t kLatches = 8;
constexpr uint32_t kSlicesPerColumn = 50;
constexpr uint32_t kColumnsPerRow = 200;
constexpr uint32_t kFramesPerColumn = 128;
constexpr uint32_t kFirstFrame = 0x00400000;
constexpr uint32_t kFirstMinor = 0x1a;

constexpr uint32_t kRegions = 3;

}  // namespace

Placement::Placement(uint64_t seed) : factor_(scramble(seed, 10) | 1), shift_(scramble(seed, 11)) {}

uint64_t Placement::slot(uint64_t reg) const {
  // An odd factor permutes the numbers below a power of two.
  const uint64_t place = (reg % kWindow * factor_ + shift_) % kWindow;
  return reg - reg % kWindow + place;
}

Location Placement::location(uint64_t reg) const {
  const uint64_t place = slot(reg);
  const auto latch = static_cast<uint32_t>(place % kLatches);
  const auto slice = static_cast<uint32_t>(place / kLatches);
  const uint32_t column = slice / kSlicesPerColumn;
  const uint32_t row = slice % kSlicesPerColumn;
  Location location{};
  location.frame = kFirstFrame + column * kFramesPerColumn + kFirstMinor + latch / 4;
  location.offset = row * 64 + latch % 4 * 14 + 1;
  location.x = column % kColumnsPerRow;
  location.y = column / kColumnsPerRow * kSlicesPerColumn + row;
  location.latch = latch;
  return location;
}

Location Placement::multiplexed(Location location) {
  location.frame += 2;
  return location;
}

uint32_t Placement::enterRegion(Location& location) {
  const uint32_t column = (location.frame - kFirstFrame) / kFramesPerColumn;
  location.frame -= (column - column / kRegions) * kFramesPerColumn;
  return column % kRegions;
}

}  // namespace generate
