#ifndef BENCH_GENERATE_HAZARDBANKS_H
#define BENCH_GENERATE_HAZARDBANKS_H

#include "Design.h"

#include <string_view>

namespace generate {

/// Declares a module's registers with the names, ranges and kinds that its hazards allow, each of
/// them in turn and plain registers in between; ports last.
void addHazardBanks(Module& module, std::string_view prefix);

}  // namespace generate

#endif
