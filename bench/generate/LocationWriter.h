#ifndef BENCH_GENERATE_LOCATIONWRITER_H
#define BENCH_GENERATE_LOCATIONWRITER_H

#include "Design.h"
#include "Placement.h"

#include <string>

namespace generate {

/// Whether a register is read back through its slice's multiplexer output.
bool isMultiplexed(const Module& module, const Bank& bank, uint32_t bit, const Location& place);

/// Where a live register's value sits.
Location registerLocation(const Placement& placement, const Module& module, const Bank& bank,
                          uint32_t bit, uint64_t reg);

/// Writes the location file: a line for each live register in the order of the device, lines for
/// look-up tables whose outputs leave a slice, and lines of memories, which name no net.
void writeLocations(const Design& design, const Placement& placement, const std::string& path);

}  // namespace generate

#endif
