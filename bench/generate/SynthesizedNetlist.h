#ifndef BENCH_GENERATE_SYNTHESIZEDNETLIST_H
#define BENCH_GENERATE_SYNTHESIZEDNETLIST_H

#include "Design.h"
#include "ModuleNetlist.h"

namespace generate {

/// A module as synthesis leaves it: flip-flops, look-up tables and carry chains. What elaboration
/// joins directly to a register's pins is joined to the same pins here.
ModuleNetlist synthesize(const Design& design, const Module& module);

}  // namespace generate

#endif
