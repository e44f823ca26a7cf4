#ifndef BENCH_GENERATE_REPLICAS_H
#define BENCH_GENERATE_REPLICAS_H

#include "Design.h"
#include "ModuleNetlist.h"

namespace generate {

/// Adds copies of registers that take over some of their loads. Now and then the copy alone is
/// left.
void replicateRegisters(const Module& module, ModuleNetlist& netlist);

}  // namespace generate

#endif
