#ifndef BENCH_GENERATE_TRUTHWRITER_H
#define BENCH_GENERATE_TRUTHWRITER_H

#include "Design.h"
#include "Placement.h"

#include <string>

namespace generate {

/// Writes what a reader of the other files should find: a line for each register bit of the source.
void writeTruth(const Design& design, const Placement& placement, const std::string& path);

}  // namespace generate

#endif
