#ifndef BENCH_GENERATE_PLACEMENT_H
#define BENCH_GENERATE_PLACEMENT_H

#include <cstdint>

namespace generate {

/// Where the value of a flip-flop sits.
struct Location {
  uint32_t frame;
  uint32_t offset;
  uint32_t x;      ///< of the slice
  uint32_t y;      ///< of the slice
  uint32_t latch;  ///< 0 to 7: the flip-flops A to D, then A5 to D5
};

/// Gives every register of a design a location of its own. Registers that are numbered near each
/// other are placed near each other, but in no order, as placers do.
class Placement {
 public:
  static constexpr uint64_t kWindow = 4096;

  explicit Placement(uint64_t seed);

  /// The place of a register in the order of the device; stays within the register's window.
  uint64_t slot(uint64_t reg) const;
  Location location(uint64_t reg) const;
  /// The multiplexer output of the same slice, which is another bit of the device.
  static Location multiplexed(Location location);
  /// One of a device's regions, and the same place counted within it. The regions of a device have
  /// the same addresses.
  static uint32_t enterRegion(Location& location);

 private:
  uint64_t factor_;
  uint64_t shift_;
};

}  // namespace generate

#endif
