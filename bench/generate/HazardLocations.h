#ifndef BENCH_GENERATE_HAZARDLOCATIONS_H
#define BENCH_GENERATE_HAZARDLOCATIONS_H

#include "Design.h"
#include "Implementation.h"
#include "Placement.h"

#include <cstdint>
#include <string>

namespace generate {

/// Where and through what a cell is read back.
struct Readback {
  Location place;
  uint32_t region;
  std::string latch;
};

/// Of a register by its number in the design, and of other cells by numbers above those.
Readback readbackOf(const Design& design, const Placement& placement, uint64_t number,
                    bool isLut = false);

/// Writes the location file of a design with hazards.
void writeHazardLocations(const Design& design, const Implementation& implementation,
                          const Placement& placement, const std::string& path);

}  // namespace generate

#endif
