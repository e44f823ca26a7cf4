#include "StateMachines.h"

#include "Random.h"
#include "RegisterNames.h"

#include <string>

namespace generate {

namespace {

constexpr uint32_t kOneHotStates = 5;
constexpr uint32_t kNone = ModuleNetlist::kNone;

uint32_t clockOf(const ModuleNetlist& netlist) {
  for (uint32_t net = 0; net < netlist.nets().size(); ++net) {
    for (const ModuleNetlist::Connection& joined : netlist.connectionsOf(net)) {
      if (joined.pin == Pin::C) return net;
    }
  }
  return kNone;
}

/// The states follow one another, with nothing but the clock around them.
void addStates(const Bank& bank, bool isOneHot, bool keepsNets, uint32_t clock,
               ModuleNetlist& netlist) {
  const std::string base = (isOneHot ? "FSM_onehot_" : "FSM_sequential_") + bank.base;
  const uint32_t states = isOneHot ? kOneHotStates : bank.size();
  uint32_t previous = kNone;
  for (uint32_t state = 0; state < states; ++state) {
    const std::string index = '[' + std::to_string(state) + ']';
    const uint32_t cell = netlist.addInstance(base + "_reg" + index, {CellKind::Fdre});
    netlist.setRegister(cell, bank.first, true);
    const bool keepsNet = keepsNets && state < bank.size();
    const uint32_t net = netlist.addNet(keepsNet ? registerName(bank, state) : base + index);
    netlist.connect(net, cell, Pin::Q);
    if (clock != kNone) netlist.connect(clock, cell, Pin::C);
    netlist.connect(previous, cell, Pin::D);
    previous = net;
  }
}

}  // namespace

void addRecodedStates(const Module& module, ModuleNetlist& netlist) {
  const uint32_t clock = clockOf(netlist);
  for (const Bank& bank : module.banks) {
    if (!bank.isStateMachine) continue;
    const uint64_t lot = scramble(module.seed, 35, bank.index);
    addStates(bank, lot % 2 == 0, (lot >> 8) % 3 == 0, clock, netlist);
  }
}

}  // namespace generate
