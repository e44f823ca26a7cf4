#ifndef BENCH_GENERATE_OUTPUTNETS_H
#define BENCH_GENERATE_OUTPUTNETS_H

#include "Design.h"
#include "ModuleNetlist.h"

namespace generate {

/// Gives the nets that registers drive the names that tools invent, or those of merged registers,
/// of far ends or of other logic.
void renameOutputNets(const Module& module, ModuleNetlist& netlist);

/// Whether a net is joined to a port of its own module.
bool isOnPort(const ModuleNetlist& netlist, uint32_t net);

}  // namespace generate

#endif
