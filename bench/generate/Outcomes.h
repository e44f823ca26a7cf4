#ifndef BENCH_GENERATE_OUTCOMES_H
#define BENCH_GENERATE_OUTCOMES_H

#include "Design.h"

namespace generate {

/// Decides what synthesis makes of each register of a module with hazards. Ports are live, so
/// that they mean the same in both netlists.
void decideOutcomes(Module& module);

/// The bank that a register of a module belongs to.
const Bank& bankOf(const Module& module, uint32_t reg);

}  // namespace generate

#endif
