#ifndef BENCH_GENERATE_WIDECELLS_H
#define BENCH_GENERATE_WIDECELLS_H

#include "Design.h"
#include "ModuleNetlist.h"
#include "Wiring.h"

#include <cstdint>
#include <vector>

namespace generate {

/// Memories and multipliers of a module: few cells that hold a large share of its pins. Each reads
/// what the one before it drives.
class WideCells {
 public:
  WideCells(const Module& module, Wiring& wiring, ModuleNetlist& netlist)
      : module_(module), wiring_(wiring), netlist_(netlist) {}

  /// Adds a cell beside some of the registers.
  void addBeside(const Bank& bank, uint32_t bit);
  /// A net that the last cell drives, for the logic of register `bit` of a bank, or kNone.
  uint32_t output(uint32_t bit) const;

 private:
  void connect(uint32_t cell, const Port& port, const Bank& bank, uint32_t bit);
  uint32_t source(Pin pin, uint32_t place, const Bank& bank, uint32_t bit);

  const Module& module_;
  Wiring& wiring_;
  ModuleNetlist& netlist_;
  std::vector<uint32_t> outputs_;
  std::vector<uint32_t> previous_;
};

}  // namespace generate

#endif
