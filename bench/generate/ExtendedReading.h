#ifndef BENCH_GENERATE_EXTENDEDREADING_H
#define BENCH_GENERATE_EXTENDEDREADING_H

#include "Design.h"
#include "StrictReading.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace generate {

/// The signal that carries a register in the elaborated view when printable names are read: the
/// last subscript is the index if it is a number, the others are part of the signal's name.
/// `path` is the module's, below the top, with a "/" after each level.
ModelBit extendedBit(const std::string& path, const Bank& bank, uint32_t bit);

/// A name with all that a cross-reference file cannot carry turned into underscores.
std::string storable(std::string_view name);

}  // namespace generate

#endif
