#ifndef BENCH_GENERATE_BANKS_H
#define BENCH_GENERATE_BANKS_H

#include "Design.h"
#include "Random.h"

#include <string_view>

namespace generate {

/// Declares a module's registers, ports last, with names that begin with `prefix`.
void addPlainBanks(Module& module, std::string_view prefix, bool renames);

/// Adds a bank to a module and decides what it computes.
void appendBank(Module& module, Random& random, Bank bank);

}  // namespace generate

#endif
