#ifndef BENCH_GENERATE_STATEMACHINES_H
#define BENCH_GENERATE_STATEMACHINES_H

#include "Design.h"
#include "ModuleNetlist.h"

namespace generate {

/// Adds the registers that hold the states of a module's state machines in another code.
void addRecodedStates(const Module& module, ModuleNetlist& netlist);

}  // namespace generate

#endif
