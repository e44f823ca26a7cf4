#ifndef BENCH_GENERATE_BUFFERS_H
#define BENCH_GENERATE_BUFFERS_H

#include "Design.h"
#include "ModuleNetlist.h"

namespace generate {

/// Puts look-up tables that pass their one input between registers and some of their loads.
void bufferRegisters(const Module& module, ModuleNetlist& netlist);

/// Puts a buffer at each port but the clock; for the module of highest level.
void bufferPorts(ModuleNetlist& netlist);

}  // namespace generate

#endif
