#ifndef BENCH_GENERATE_REGISTERNAMES_H
#define BENCH_GENERATE_REGISTERNAMES_H

#include "Design.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace generate {

// Printable names of what belongs to register `bit` of a bank, as the tools form them from the
// name in the source.

/// The register itself and its net in the elaborated netlist: count[3].
std::string registerName(const Bank& bank, uint32_t bit);
/// The register's instance: count_reg[3].
std::string instanceName(const Bank& bank, uint32_t bit);
/// The instance of the elaborated register cell that holds bits `low` to `high` of a row, counted
/// from the right end: count_reg[7:4].
std::string sliceInstanceName(const Bank& bank, uint32_t row, uint32_t low, uint32_t high);
/// The net that the register drives in the synthesized netlist: count[3] or count_reg_n_0_[3].
std::string outputNetName(const Module& module, const Bank& bank, uint32_t bit);
/// The net at its data input in the elaborated netlist: count_next[3].
std::string nextNetName(const Bank& bank, uint32_t bit);
/// The n-th look-up table of its input logic, counted from 1 at the register: count[3]_i_1.
std::string lutName(const Bank& bank, uint32_t bit, uint32_t number);
/// The net at its data input in the synthesized netlist.
std::string dataNetName(const Module& module, const Bank& bank, uint32_t bit);

/// Appends the subscripts of an element, counted with the last subscript running fastest.
void appendSubscripts(std::string& text, const std::vector<Subscript>& subscripts,
                      uint32_t element);

/// A name with something before its first bracket, or else at its end.
std::string inserted(std::string_view name, std::string_view infix);

/// A name with brackets and dots turned into underscores.
std::string cleaned(std::string_view name);

}  // namespace generate

#endif
