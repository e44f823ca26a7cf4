#ifndef BENCH_GENERATE_STRICTREADING_H
#define BENCH_GENERATE_STRICTREADING_H

#include "Design.h"

#include <cstdint>
#include <string>

namespace generate {

/// A bit of the elaborated netlist's model as a reader that goes by the letter names it.
struct ModelBit {
  std::string signal;  ///< full name
  uint32_t index;
};

/// The signal that carries a register in the elaborated view.
///
/// Strict reading knows a register by its net and by its instance's identifier. A net name that
/// ends in one subscript is a bit of a bus; any other net is a one-bit signal of its printable
/// name. An identifier count_reg[3] is bit 3 of count, mem_reg[3][5] is bit 5 of mem<3>, and an
/// identifier that ends in _reg is a one-bit signal without that ending.
ModelBit strictBit(const Design& design, const std::string& path, const Bank& bank, uint32_t bit);

/// Whether strict reading finds what became of a register from its location or log line.
///
/// The line's name is looked up with brackets and dots turned into underscores, at index 0 of a
/// signal of exactly that name.
bool strictFinds(const Design& design, const Module& module, const std::string& path,
                 const Bank& bank, uint32_t bit);

}  // namespace generate

#endif
