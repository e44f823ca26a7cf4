#include "SynthesizedNetlist.h"

#include "OutputFile.h"
#include "Random.h"
#include "RegisterNames.h"
#include "WideCells.h"
#include "Wiring.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace generate {

namespace {

constexpr uint32_t kLutInputs = 6;
constexpr uint32_t kCarryBits = 4;

class Synthesis {
 public:
  Synthesis(const Design& design, const Module& module)
      : module_(module),
        wiring_(design, module, View::Synthesized, netlist_),
        wideCells_(module, wiring_, netlist_),
        hasWideCells_(design.options().shape == Shape::Field) {}

  ModuleNetlist run() {
    for (const Bank& bank : module_.banks) {
      carry_ = ModuleNetlist::kNone;
      for (uint32_t bit = 0; bit < bank.size(); ++bit) {
        if (hasWideCells_) wideCells_.addBeside(bank, bit);
        if (usesCarry(bank) && bit % bank.width % kCarryBits == 0) addCarry(bank, bit);
        if (module_.isImplemented(bank, bit)) addRegister(bank, bit, addLogic(bank, bit));
      }
    }
    return std::move(netlist_);
  }

 private:
  static bool usesCarry(const Bank& bank) {
    return bank.width >= kCarryBits &&
           (bank.operation == Operation::Add || bank.operation == Operation::Subtract);
  }

  void addCarry(const Bank& bank, uint32_t bit) {
    std::string name = registerName(bank, bit) + "_i_carry";
    const uint32_t previous = carry_;
    carry_ = netlist_.addInstance(name, {CellKind::Carry});
    netlist_.connect(wiring_.constant(false), carry_, Pin::CYINIT);
    if (bit % bank.width == 0) {
      netlist_.connect(wiring_.constant(false), carry_, Pin::CI);
      return;
    }
    const uint32_t net = netlist_.addNet(name + "_ci");
    netlist_.connectBit(net, previous, Pin::CO, kCarryBits - 1, kCarryBits);
    netlist_.connect(net, carry_, Pin::CI);
  }

  /// Adds what computes a register's next value and returns the net that holds it.
  uint32_t addLogic(const Bank& bank, uint32_t bit) {
    if (bank.operation == Operation::Copy) {
      const uint32_t operand = wiring_.liveOperand(bank.a, bit);
      return bank.inverts ? inverse(bank, bit, operand) : operand;
    }
    gatherSources(bank, bit);
    const uint32_t result = netlist_.addNet(dataNetName(module_, bank, bit));
    if (!usesCarry(bank)) {
      addLuts(bank, bit, result);
      return result;
    }
    const uint32_t place = bit % bank.width % kCarryBits;
    const uint32_t sum = netlist_.addNet(lutName(bank, bit, 1) + "_s");
    netlist_.connectBit(sum, carry_, Pin::S, place, kCarryBits);
    netlist_.connectBit(sources_[0], carry_, Pin::DI, place, kCarryBits);
    netlist_.connectBit(result, carry_, Pin::O, place, kCarryBits);
    addLuts(bank, bit, sum);
    return result;
  }

  uint32_t inverse(const Bank& bank, uint32_t bit, uint32_t operand) {
    const uint32_t cell = netlist_.addInstance(lutName(bank, bit, 1), {CellKind::InverterLut});
    netlist_.connect(operand, cell, Pin::I0);
    const uint32_t result = netlist_.addNet(dataNetName(module_, bank, bit));
    netlist_.connect(result, cell, Pin::O);
    return result;
  }

  /// Lists the nets that may feed the logic of a register; its own output is one of them.
  void gatherSources(const Bank& bank, uint32_t bit) {
    sourceCount_ = 0;
    addSource(wiring_.operand(bank.a, bit));
    addSource(wiring_.operand(bank.b, bit));
    addSource(wiring_.output(bank, bit));
    addSource(wiring_.select(bank.index));
    for (uint32_t distance = 1; distance <= 4; ++distance) {
      addSource(wiring_.operand(bank.a, bit + distance));
      addSource(wiring_.operand(bank.b, bit + distance));
    }
    addSource(wideCells_.output(bit));
  }

  void addSource(uint32_t net) {
    const auto end = sources_.begin() + sourceCount_;
    if (net == ModuleNetlist::kNone || std::find(sources_.begin(), end, net) != end) return;
    sources_[sourceCount_++] = net;
  }

  /// One to four look-up tables: the last drives `result`, the others feed it.
  void addLuts(const Bank& bank, uint32_t bit, uint32_t result) {
    static constexpr std::array<uint32_t, 8> kHelpers = {1, 1, 2, 2, 2, 3, 3, 3};
    const uint64_t lot = scramble(module_.seed, 8, bank.index, bit);
    const uint32_t helpers = kHelpers[lot & 7];
    std::array<uint32_t, kLutInputs> inputs{};
    uint32_t count = 0;
    for (uint32_t helper = 0; helper < helpers; ++helper) {
      const std::string name = lutName(bank, bit, helper + 2);
      const uint32_t net = netlist_.addNet(name + "_n_0");
      addLutOnSources(name, net, 2 + static_cast<uint32_t>(lot >> (8 + 3 * helper)) % 4, helper);
      inputs[count++] = net;
    }
    const uint32_t direct = static_cast<uint32_t>(lot >> 32) % (kLutInputs - helpers + 1);
    for (uint32_t source = 0; source < std::min(direct, sourceCount_); ++source) {
      inputs[count++] = sources_[source];
    }
    addLut(lutName(bank, bit, 1), result, inputs, count);
  }

  void addLutOnSources(const std::string& name, uint32_t net, uint32_t wanted, uint32_t start) {
    std::array<uint32_t, kLutInputs> inputs{};
    const uint32_t count = std::min(wanted, sourceCount_);
    for (uint32_t input = 0; input < count; ++input) {
      inputs[input] = sources_[(start + input) % sourceCount_];
    }
    addLut(name, net, inputs, count);
  }

  void addLut(const std::string& name, uint32_t net, const std::array<uint32_t, kLutInputs>& inputs,
              uint32_t count) {
    const uint32_t lut = netlist_.addInstance(name, lutCell(count));
    netlist_.connect(net, lut, Pin::O);
    for (uint32_t input = 0; input < count; ++input) {
      netlist_.connect(inputs[input], lut,
                       static_cast<Pin>(static_cast<uint32_t>(Pin::I0) + input));
    }
  }

  void addRegister(const Bank& bank, uint32_t bit, uint32_t data) {
    const uint32_t cell = netlist_.addInstance(instanceName(bank, bit), storageCell(bank),
                                               bank.naming != Naming::Cleaned);
    netlist_.setRegister(cell, bank.first + bit);
    netlist_.connect(wiring_.output(bank, bit), cell, Pin::Q);
    if (bank.storage == Storage::Latch) {
      connectLatch(cell, data);
      return;
    }
    netlist_.connect(wiring_.clock(), cell, Pin::C);
    netlist_.connect(bank.enabled ? wiring_.enable() : wiring_.constant(true), cell, Pin::CE);
    netlist_.connect(data, cell, Pin::D);
    netlist_.connect(bank.control == Control::None ? wiring_.constant(false) : wiring_.reset(),
                     cell, flipFlopControlPin(bank.control));
  }

  void connectLatch(uint32_t latch, uint32_t data) {
    for (const Port& port : cellPorts(netlist_.instances()[latch].cell)) {
      if (port.pin == Pin::D) netlist_.connect(data, latch, port.pin);
      if (port.pin == Pin::G) netlist_.connect(wiring_.enable(), latch, port.pin);
      if (port.pin == Pin::GE) netlist_.connect(wiring_.constant(true), latch, port.pin);
      if (port.pin == Pin::CLR || port.pin == Pin::PRE) {
        netlist_.connect(wiring_.reset(), latch, port.pin);
      }
    }
  }

  const Module& module_;
  ModuleNetlist netlist_;
  Wiring wiring_;
  uint32_t carry_ = ModuleNetlist::kNone;
  WideCells wideCells_;
  bool hasWideCells_;
  std::array<uint32_t, 13> sources_{};
  uint32_t sourceCount_ = 0;
};

}  // namespace

ModuleNetlist synthesize(const Design& design, const Module& module) {
  return Synthesis(design, module).run();
}

}  // namespace generate
