#include "ElaboratedNetlist.h"

#include "OutputFile.h"
#include "RegisterNames.h"
#include "Wiring.h"

#include <string>
#include <utility>

namespace generate {

namespace {

class Elaboration {
 public:
  Elaboration(const Design& design, const Module& module)
      : module_(module), wiring_(design, module, View::Elaborated, netlist_) {}

  ModuleNetlist run() {
    for (const Bank& bank : module_.banks) {
      for (uint32_t row = 0; row < bank.rows; ++row) {
        if (bank.operation != Operation::Copy) addOperator(bank, row);
      }
      for (uint32_t bit = 0; bit < bank.size(); ++bit) addRegister(bank, bit);
    }
    return std::move(netlist_);
  }

 private:
  void addOperator(const Bank& bank, uint32_t row) {
    std::string name = bank.base + "_i";
    if (row > 0) {
      name += "__";
      appendNumber(name, row - 1);
    }
    const uint32_t cell = netlist_.addInstance(name, rtlOperatorCell(module_, bank));
    const bool isMultiplexer = bank.operation == Operation::Multiplex;
    if (isMultiplexer) netlist_.connect(wiring_.select(bank.index), cell, Pin::S);
    for (uint32_t column = 0; column < bank.width; ++column) {
      const uint32_t bit = row * bank.width + column;
      join(bank, wiring_.operand(bank.a, bit), cell, Pin::I0, column);
      join(bank, isMultiplexer ? wiring_.output(bank, bit) : wiring_.operand(bank.b, bit), cell,
           Pin::I1, column);
      const Fate fate = module_.fate(bank, bit);
      if (fate == Fate::Constant0 || fate == Fate::Constant1) continue;
      const uint32_t next = netlist_.addNet(nextNetName(bank, bit));
      join(bank, next, cell, Pin::O, column);
      setNext(bank, bit, next);
    }
  }

  void join(const Bank& bank, uint32_t net, uint32_t cell, Pin pin, uint32_t column) {
    if (bank.width == 1) {
      netlist_.connect(net, cell, pin);
    } else {
      netlist_.connectBit(net, cell, pin, column, bank.width);
    }
  }

  void addRegister(const Bank& bank, uint32_t bit) {
    const uint32_t cell = netlist_.addInstance(
        instanceName(bank, bit), rtlRegisterCell(module_, bank), bank.naming != Naming::Cleaned);
    netlist_.connect(wiring_.output(bank, bit), cell, Pin::Q);
    netlist_.connect(wiring_.clock(), cell, Pin::C);
    if (bank.enabled) netlist_.connect(wiring_.enable(), cell, Pin::CE);
    netlist_.connect(data(bank, bit), cell, Pin::D);
    if (bank.control != Control::None) {
      netlist_.connect(wiring_.reset(), cell, rtlControlPin(bank.control));
    }
  }

  uint32_t data(const Bank& bank, uint32_t bit) {
    switch (module_.fate(bank, bit)) {
      case Fate::Constant0:
        return wiring_.constant(false);
      case Fate::Constant1:
        return wiring_.constant(true);
      case Fate::Live:
      case Fate::Removed:
        break;
    }
    if (bank.operation == Operation::Copy) return wiring_.liveOperand(bank.a, bit);
    return next_[bit];
  }

  void setNext(const Bank& bank, uint32_t bit, uint32_t net) {
    if (next_.size() < bank.size()) next_.resize(bank.size());
    next_[bit] = net;
  }

  const Module& module_;
  ModuleNetlist netlist_;
  Wiring wiring_;
  std::vector<uint32_t> next_;  ///< nets at the data inputs of the bank in hand
};

}  // namespace

ModuleNetlist elaborate(const Design& design, const Module& module) {
  return Elaboration(design, module).run();
}

}  // namespace generate
