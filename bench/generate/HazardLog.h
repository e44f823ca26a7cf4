#ifndef BENCH_GENERATE_HAZARDLOG_H
#define BENCH_GENERATE_HAZARDLOG_H

#include "Design.h"

#include <cstdint>
#include <string>
#include <vector>

namespace generate {

/// Writes the synthesis log of a design with hazards.
void writeHazardLog(const Design& design, const std::string& path);

/// For each register of the design whether the log keeps silent about what became of it, since
/// messages of its kind are suppressed.
std::vector<bool> suppressedRegisters(const Design& design);

}  // namespace generate

#endif
