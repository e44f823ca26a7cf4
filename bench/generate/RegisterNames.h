#ifndef BENCH_GENERATE_REGISTERNAMES_H
#define BENCH_GENERATE_REGISTERNAMES_H

#include "Design.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace generate {

// Printable names of what belongs to register `bit` of a bank, as the tools form them from the
// name in the source.

/// The register itself and its net in the elaborated netlist: count[3].
std::string registerName(const Bank& bank, uint32_t bit);
/// The register's instance: count_reg[3].
std::string instanceName(const Bank& bank, uint32_t bit);
/// The net that the register drives in the synthesized netlist: count[3] or count_reg_n_0_[3].
std::string outputNetName(const Module& module, const Bank& bank, uint32_t bit);
/// The net at its data input in the elaborated netlist: count_next[3].
std::string nextNetName(const Bank& bank, uint32_t bit);
/// The n-th look-up table of its input logic, counted from 1 at the register: count[3]_i_1.
std::string lutName(const Bank& bank, uint32_t bit, uint32_t number);
/// The net at its data input in the synthesized netlist.
std::string dataNetName(const Module& module, const Bank& bank, uint32_t bit);

/// The identifier that goes with a printable name.
std::string cleaned(std::string_view name);

}  // namespace generate

#endif
