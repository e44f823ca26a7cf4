#include "Wiring.h"

#include "HazardPorts.h"
#include "OutputFile.h"
#include "RegisterNames.h"

#include <string>

namespace generate {

namespace {

constexpr uint32_t kItself = ModuleNetlist::kModuleItself;

std::string bitName(std::string_view base, uint64_t bit) {
  std::string name(base);
  name += '[';
  appendNumber(name, bit);
  return name + ']';
}

}  // namespace

Wiring::Wiring(const Design& design, const Module& module, View view, ModuleNetlist& netlist)
    : module_(module),
      netlist_(netlist),
      keepsInputBrackets_((module.seed & 1) != 0),
      constantCells_(view == View::Elaborated
                         ? std::array<Cell, 2>{Cell{CellKind::RtlGround}, Cell{CellKind::RtlPower}}
                         : std::array<Cell, 2>{Cell{CellKind::Ground}, Cell{CellKind::Power}}) {
  addPorts(view);
  addRegisterNets(view);
  addChildren(design);
}

void Wiring::addPorts(View view) {
  clock_ = netlist_.addNet("clk");
  addInputPin(clock_, Pin::Clk);
  if (module_.isTop && view == View::Synthesized) {
    const uint32_t pad = netlist_.addInstance("clk_IBUF_inst", {CellKind::InputBuffer});
    const uint32_t buffer = netlist_.addInstance("clk_IBUF_BUFG_inst", {CellKind::ClockBuffer});
    netlist_.connect(clock_, pad, Pin::I);
    const uint32_t buffered = netlist_.addNet("clk_IBUF");
    netlist_.connect(buffered, pad, Pin::O);
    netlist_.connect(buffered, buffer, Pin::I);
    clock_ = netlist_.addNet("clk_IBUF_BUFG");
    netlist_.connect(clock_, buffer, Pin::O);
  }
  reset_ = netlist_.addNet("rst");
  addInputPin(reset_, Pin::Rst);
  enable_ = netlist_.addNet("en");
  addInputPin(enable_, Pin::En);
  select_ = {netlist_.addNet("sel[0]"), netlist_.addNet("sel[1]")};
  addInputPin(select_[0], Pin::Sel0);
  addInputPin(select_[1], Pin::Sel1);
  for (uint32_t bit = 0; bit < module_.inputWidth; ++bit) {
    // A net whose identifier is din[3] is a bit of the bus that the port declares.
    inputs_.push_back(netlist_.addNet(portBitName(module_.ports.din, bit), keepsInputBrackets_));
    netlist_.connectBit(inputs_.back(), kItself, Pin::Din, bit, module_.inputWidth);
  }
}

void Wiring::addInputPin(uint32_t net, Pin pin) { netlist_.connect(net, kItself, pin); }

void Wiring::addRegisterNets(View view) {
  registers_.assign(module_.registers, ModuleNetlist::kNone);
  for (const Bank& bank : module_.banks) {
    const bool keepsBrackets = bank.naming == Naming::BracketNets;
    for (uint32_t bit = 0; bit < bank.size(); ++bit) {
      if (view == View::Synthesized && !module_.isImplemented(bank, bit)) continue;
      const uint32_t net = netlist_.addNet(registerNetName(view, bank, bit), keepsBrackets);
      registers_[bank.first + bit] = net;
      if (!bank.isPort) continue;
      if (bank.layout == Layout::Scalar) {
        netlist_.connect(net, kItself, Pin::Valid);
      } else {
        netlist_.connectBit(net, kItself, Pin::Dout, bit, module_.outputWidth);
      }
    }
  }
  if (view == View::Synthesized) joinMerged();
}

std::string Wiring::registerNetName(View view, const Bank& bank, uint32_t bit) const {
  const bool isElaborated = view == View::Elaborated;
  if (bank.isPort && bank.layout != Layout::Scalar && module_.has(Hazard::PortNets) &&
      (!isElaborated || bit % 2 == 0)) {
    return portBitName(module_.ports.dout, bit);
  }
  return isElaborated ? registerName(bank, bit) : outputNetName(module_, bank, bit);
}

/// What a merged register feeds hangs on its survivor.
void Wiring::joinMerged() {
  for (uint32_t reg = 0; reg < module_.outcomes.size(); ++reg) {
    const Outcome& outcome = module_.outcomes[reg];
    if (outcome.fate != Fate::Merged || outcome.isInTwin) continue;
    registers_[reg] = registers_[outcome.survivor];
  }
}

void Wiring::addChildren(const Design& design) {
  for (size_t index = 0; index < module_.children.size(); ++index) {
    const Child& child = module_.children[index];
    const uint32_t instance = netlist_.addSubmodule(child.name, child.definition);
    netlist_.connect(clock_, instance, Pin::Clk);
    netlist_.connect(reset_, instance, Pin::Rst);
    netlist_.connect(enable_, instance, Pin::En);
    netlist_.connect(select_[index & 1], instance, Pin::Sel0);
    netlist_.connect(select_[1], instance, Pin::Sel1);
    const uint32_t width = design.portWidth(child.definition);
    for (uint32_t bit = 0; bit < width; ++bit) {
      netlist_.connectBit(childInput(index, bit), instance, Pin::Din, bit, width);
    }
    std::string base = "link";
    appendNumber(base, index);
    std::vector<uint32_t>& link = links_.emplace_back();
    for (uint32_t bit = 0; bit < width; ++bit) {
      link.push_back(netlist_.addNet(bitName(base, bit)));
      netlist_.connectBit(link.back(), instance, Pin::Dout, bit, width);
    }
    if (design.hasValid(child.definition)) {
      netlist_.connect(netlist_.addNet(base + "_valid"), instance, Pin::Valid);
    }
  }
}

/// Submodules form a chain: each reads what the one before it drives.
uint32_t Wiring::childInput(size_t child, uint32_t bit) const {
  const std::vector<uint32_t>& source = child == 0 ? inputs_ : links_[child - 1];
  return source[bit % source.size()];
}

uint32_t Wiring::constant(bool value) {
  uint32_t& net = constants_[value ? 1 : 0];
  if (net == ModuleNetlist::kNone) {
    const uint32_t source = netlist_.addInstance(value ? "VCC" : "GND", constantCells_[value]);
    net = netlist_.addNet(value ? "<const1>" : "<const0>");
    netlist_.connect(net, source, value ? Pin::P : Pin::G);
  }
  return net;
}

uint32_t Wiring::operand(const Operand& operand, uint32_t bit) const {
  switch (operand.kind) {
    case Operand::Kind::Link: {
      const std::vector<uint32_t>& link = links_[operand.index];
      return link[bit % link.size()];
    }
    case Operand::Kind::Bank: {
      const Bank& bank = module_.banks[operand.index];
      return output(bank, bit % bank.size());
    }
    case Operand::Kind::Input:
      break;
  }
  return inputs_[bit % inputs_.size()];
}

uint32_t Wiring::liveOperand(const Operand& operand, uint32_t bit) const {
  if (operand.kind != Operand::Kind::Bank) return this->operand(operand, bit);
  const Bank& bank = module_.banks[operand.index];
  uint32_t source = bit % bank.size();
  for (uint32_t tried = 0; module_.fate(bank, source) != Fate::Live; ++tried) {
    if (tried == bank.size()) return this->operand(Operand{}, bit);
    source = (source + 1) % bank.size();
  }
  return output(bank, source);
}

}  // namespace generate
