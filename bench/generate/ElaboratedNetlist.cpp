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
      if (bank.grouping != Grouping::Bits) {
        addWideRegisters(bank);
        continue;
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
    if (bank.storage == Storage::Latch) {
      netlist_.connect(wiring_.enable(), cell, Pin::G);
      netlist_.connect(data(bank, bit), cell, Pin::D);
      return;
    }
    netlist_.connect(wiring_.clock(), cell, Pin::C);
    if (bank.enabled) netlist_.connect(wiring_.enable(), cell, Pin::CE);
    netlist_.connect(data(bank, bit), cell, Pin::D);
    if (bank.control != Control::None) {
      netlist_.connect(wiring_.reset(), cell, rtlControlPin(bank.control));
    }
  }

  void addWideRegisters(const Bank& bank) {
    const uint32_t slices = bank.grouping == Grouping::TwoSlices ? 2 : 1;
    const uint32_t width = bank.width / slices;
    for (uint32_t row = 0; row < bank.rows; ++row) {
      for (uint32_t slice = slices; slice-- > 0;) {
        const uint32_t low = slice * width;
        addWideRegister(bank, row, low, slice + 1 == slices ? bank.width - 1 : low + width - 1);
      }
    }
  }

  void addWideRegister(const Bank& bank, uint32_t row, uint32_t low, uint32_t high) {
    const uint32_t width = high - low + 1;
    const uint32_t cell =
        netlist_.addInstance(sliceInstanceName(bank, row, low, high), rtlWideRegisterCell(width));
    netlist_.connect(wiring_.clock(), cell, Pin::C);
    if (bank.enabled) netlist_.connect(wiring_.enable(), cell, Pin::CE);
    for (uint32_t column = low; column <= high; ++column) {
      const uint32_t bit = row * bank.width + column;
      netlist_.connectBit(wiring_.output(bank, bit), cell, Pin::Q, column - low, width);
      netlist_.connectBit(data(bank, bit), cell, Pin::D, column - low, width);
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
      case Fate::Merged:
      case Fate::Inverted:
        break;
    }
    if (bank.operation != Operation::Copy) return next_[bit];
    const uint32_t operand = wiring_.liveOperand(bank.a, bit);
    return bank.inverts ? inverse(bank, bit, operand) : operand;
  }

  uint32_t inverse(const Bank& bank, uint32_t bit, uint32_t operand) {
    const uint32_t cell =
        netlist_.addInstance(registerName(bank, bit) + "_i", {CellKind::RtlInverter});
    netlist_.connect(operand, cell, Pin::I0);
    const uint32_t next = netlist_.addNet(nextNetName(bank, bit));
    netlist_.connect(next, cell, Pin::O);
    return next;
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
