#ifndef BENCH_GENERATE_FLATNETLIST_H
#define BENCH_GENERATE_FLATNETLIST_H

#include "Design.h"
#include "ModuleNetlist.h"

#include <vector>

namespace generate {

/// A module's netlist with the contents of those of its children that synthesis did not keep.
/// `children` has the netlist of each definition. Where two names meet, one of them gets a number.
ModuleNetlist flatten(const Module& module, const ModuleNetlist& netlist,
                      const std::vector<ModuleNetlist>& children);

}  // namespace generate

#endif
