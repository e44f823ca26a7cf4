#ifndef BENCH_GENERATE_INVERSIONS_H
#define BENCH_GENERATE_INVERSIONS_H

#include "Design.h"
#include "ModuleNetlist.h"

namespace generate {

/// Turns registers into ones that hold the inverse, with an inverter at their output that drives
/// the net of the old name.
void invertRegisters(const Module& module, ModuleNetlist& netlist);

}  // namespace generate

#endif
