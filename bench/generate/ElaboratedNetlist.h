#ifndef BENCH_GENERATE_ELABORATEDNETLIST_H
#define BENCH_GENERATE_ELABORATEDNETLIST_H

#include "Design.h"
#include "ModuleNetlist.h"

namespace generate {

/// A module as elaboration leaves it: one register cell for each bit, operators on whole buses.
ModuleNetlist elaborate(const Design& design, const Module& module);

}  // namespace generate

#endif
