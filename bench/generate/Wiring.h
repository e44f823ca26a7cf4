#ifndef BENCH_GENERATE_WIRING_H
#define BENCH_GENERATE_WIRING_H

#include "Design.h"
#include "ModuleNetlist.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace generate {

enum class View : uint8_t { Elaborated, Synthesized };

/// The part of a module that both netlists have in common: ports, submodules and what joins them,
/// and the nets of the registers.
class Wiring {
 public:
  Wiring(const Design& design, const Module& module, View view, ModuleNetlist& netlist);

  uint32_t clock() const { return clock_; }
  uint32_t reset() const { return reset_; }
  uint32_t enable() const { return enable_; }
  uint32_t select(uint32_t bit) const { return select_[bit & 1]; }
  /// The net of a constant, made with its source when first asked for.
  uint32_t constant(bool value);

  /// The net that a register drives; kNone for one that the netlist does not have.
  uint32_t output(const Bank& bank, uint32_t bit) const { return registers_[bank.first + bit]; }
  /// The net of an operand's bit, counted round when the operand is narrower; kNone where the
  /// netlist lacks it.
  uint32_t operand(const Operand& operand, uint32_t bit) const;
  /// The same, but always a net that synthesis keeps; the same choice in both netlists.
  uint32_t liveOperand(const Operand& operand, uint32_t bit) const;

 private:
  void addPorts(View view);
  void addInputPin(uint32_t net, Pin pin);
  void addRegisterNets(View view);
  std::string registerNetName(View view, const Bank& bank, uint32_t bit) const;
  void joinMerged();
  void addChildren(const Design& design);
  uint32_t childInput(size_t child, uint32_t bit) const;

  const Module& module_;
  ModuleNetlist& netlist_;
  bool keepsInputBrackets_;
  uint32_t clock_ = ModuleNetlist::kNone;
  uint32_t reset_ = ModuleNetlist::kNone;
  uint32_t enable_ = ModuleNetlist::kNone;
  std::array<uint32_t, 2> select_{};
  std::array<uint32_t, 2> constants_{ModuleNetlist::kNone, ModuleNetlist::kNone};
  std::array<Cell, 2> constantCells_;
  std::vector<uint32_t> inputs_;
  std::vector<uint32_t> registers_;
  std::vector<std::vector<uint32_t>> links_;
};

}  // namespace generate

#endif
