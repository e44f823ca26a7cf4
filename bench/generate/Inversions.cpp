#include "Inversions.h"

#include <string>
#include <vector>

namespace generate {

namespace {

constexpr uint32_t kNone = ModuleNetlist::kNone;

void invert(ModuleNetlist& netlist, uint32_t cell, uint32_t net) {
  const std::string name = std::string(netlist.instanceText(cell)) + "_inv";
  netlist.renameInstance(cell, name);
  std::vector<ModuleNetlist::Connection> loads;
  for (const ModuleNetlist::Connection& joined : netlist.connectionsOf(net)) {
    if (joined.instance != cell || joined.pin != Pin::Q) loads.push_back(joined);
  }
  const uint32_t inverse = netlist.addNet(name + "_n_0");
  netlist.connect(inverse, cell, Pin::Q);
  netlist.setConnections(net, loads);
  if (loads.empty()) return;
  const uint32_t inverter = netlist.addInstance(name + "_i_1", {CellKind::InverterLut});
  netlist.connect(inverse, inverter, Pin::I0);
  netlist.connect(net, inverter, Pin::O);
}

}  // namespace

void invertRegisters(const Module& module, ModuleNetlist& netlist) {
  const std::vector<uint32_t> outputs = netlist.outputNets();
  for (uint32_t cell = 0; cell < outputs.size(); ++cell) {
    const uint32_t reg = netlist.instances()[cell].reg;
    if (reg == kNone || outputs[cell] == kNone) continue;
    if (module.outcomes[reg].fate == Fate::Inverted) invert(netlist, cell, outputs[cell]);
  }
}

}  // namespace generate
