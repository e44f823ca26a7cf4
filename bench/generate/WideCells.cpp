#include "WideCells.h"

#include "OutputFile.h"
#include "Random.h"
#include "RegisterNames.h"

#include <string>

namespace generate {

namespace {

/// With that, a netlist has about the nets and port references for each instance that long
/// netlists of real projects have.
constexpr uint32_t kRegistersPerCell = 14;

}  // namespace

void WideCells::addBeside(const Bank& bank, uint32_t bit) {
  const uint32_t number = bank.first + bit;
  if (number % kRegistersPerCell != 0) return;
  const bool isMemory = (scramble(module_.seed, 40, number) & 1) != 0;
  const Cell kind{isMemory ? CellKind::BlockMemory : CellKind::Multiplier};
  const std::string name = registerName(bank, bit) + (isMemory ? "_ram" : "_product");
  const uint32_t cell = netlist_.addInstance(name, kind);
  previous_.swap(outputs_);
  outputs_.clear();
  for (const Port& port : cellPorts(kind)) {
    if (!port.isOutput) {
      connect(cell, port, bank, bit);
      continue;
    }
    for (uint32_t place = 0; place < port.width; ++place) {
      std::string net = name + "_" + std::string(pinName(port.pin)) + "[";
      appendNumber(net, place);
      outputs_.push_back(netlist_.addNet(net + "]"));
      netlist_.connectBit(outputs_.back(), cell, port.pin, place, port.width);
    }
  }
}

void WideCells::connect(uint32_t cell, const Port& port, const Bank& bank, uint32_t bit) {
  if (port.width == 0) {
    netlist_.connect(source(port.pin, 0, bank, bit), cell, port.pin);
    return;
  }
  for (uint32_t place = 0; place < port.width; ++place) {
    netlist_.connectBit(source(port.pin, place, bank, bit), cell, port.pin, place, port.width);
  }
}

uint32_t WideCells::source(Pin pin, uint32_t place, const Bank& bank, uint32_t bit) {
  switch (pin) {
    case Pin::C:
      return wiring_.clock();
    case Pin::CE:
      return wiring_.enable();
    case Pin::R:
      return wiring_.reset();
    case Pin::DIA:
    case Pin::DI:
      return place < previous_.size() ? previous_[place] : wiring_.operand(bank.a, bit + place);
    case Pin::DIB:
      return place < 16 && !previous_.empty() ? previous_[32 + place] : wiring_.constant(false);
    case Pin::ADDRA:
    case Pin::A:
      return wiring_.operand(bank.a, bit + place);
    case Pin::ADDRB:
    case Pin::B:
      return wiring_.operand(bank.b, bit + place);
    default:
      return wiring_.constant(pin == Pin::MODE && place == 0);
  }
}

uint32_t WideCells::output(uint32_t bit) const {
  return outputs_.empty() ? ModuleNetlist::kNone : outputs_[bit % outputs_.size()];
}

}  // namespace generate
