#ifndef BENCH_GENERATE_HAZARDTRUTH_H
#define BENCH_GENERATE_HAZARDTRUTH_H

#include "Design.h"
#include "Placement.h"

#include <string>

namespace generate {

/// Writes what extended reading should find in a design with hazards: a line for each register bit
/// of the source.
void writeHazardTruth(const Design& design, const Placement& placement, const std::string& path);

}  // namespace generate

#endif
