#include "Buffers.h"

#include "Outcomes.h"
#include "Random.h"
#include "RegisterNames.h"

#include <string>
#include <vector>

namespace generate {

namespace {

constexpr uint32_t kNone = ModuleNetlist::kNone;

void bufferLoads(ModuleNetlist& netlist, const std::string& name, uint32_t cell, uint32_t net) {
  std::vector<ModuleNetlist::Connection> kept;
  std::vector<ModuleNetlist::Connection> moved;
  for (const ModuleNetlist::Connection& joined : netlist.connectionsOf(net)) {
    // A net of a port's name is the port's.
    const bool isPort = joined.instance == ModuleNetlist::kModuleItself;
    const bool isSource = joined.instance == cell && joined.pin == Pin::Q;
    if (isSource || isPort || (kept.size() > 1 && kept.size() < moved.size())) {
      kept.push_back(joined);
    } else {
      moved.push_back(joined);
    }
  }
  if (moved.empty()) return;
  netlist.setConnections(net, kept);
  const uint32_t lut = netlist.addInstance(name, {CellKind::BufferLut});
  netlist.connect(net, lut, Pin::I0);
  const uint32_t buffered = netlist.addNet(name + "_n_0");
  netlist.connect(buffered, lut, Pin::O);
  for (const ModuleNetlist::Connection& joined : moved) netlist.join(buffered, joined);
}

void bufferInput(ModuleNetlist& netlist, uint32_t net) {
  const std::string name(netlist.netText(net));
  const uint32_t pad =
      netlist.addInstance(inserted(name, "_IBUF") + "_inst", {CellKind::InputBuffer});
  const uint32_t inside = netlist.addNet(inserted(name, "_IBUF"));
  std::vector<ModuleNetlist::Connection> outer;
  for (const ModuleNetlist::Connection& joined : netlist.connectionsOf(net)) {
    if (joined.instance == ModuleNetlist::kModuleItself) {
      outer.push_back(joined);
    } else {
      netlist.join(inside, joined);
    }
  }
  netlist.setConnections(net, outer);
  netlist.connect(net, pad, Pin::I);
  netlist.connect(inside, pad, Pin::O);
}

void bufferOutput(ModuleNetlist& netlist, uint32_t net) {
  const std::string name(netlist.netText(net));
  const uint32_t pad =
      netlist.addInstance(inserted(name, "_OBUF") + "_inst", {CellKind::OutputBuffer});
  const uint32_t outside = netlist.addNet(name);
  std::vector<ModuleNetlist::Connection> inner;
  for (const ModuleNetlist::Connection& joined : netlist.connectionsOf(net)) {
    if (joined.instance == ModuleNetlist::kModuleItself) {
      netlist.join(outside, joined);
    } else {
      inner.push_back(joined);
    }
  }
  netlist.setConnections(net, inner);
  netlist.renameNet(net, inserted(name, "_OBUF"));
  netlist.connect(net, pad, Pin::I);
  netlist.connect(outside, pad, Pin::O);
}

/// The pin of the port that a net is joined to; the clock's where there is none to buffer.
Pin portOf(const ModuleNetlist& netlist, uint32_t net) {
  for (const ModuleNetlist::Connection& joined : netlist.connectionsOf(net)) {
    if (joined.instance == ModuleNetlist::kModuleItself) return joined.pin;
  }
  return Pin::Clk;
}

}  // namespace

void bufferRegisters(const Module& module, ModuleNetlist& netlist) {
  Random random(scramble(module.seed, 28));
  const std::vector<uint32_t> outputs = netlist.outputNets();
  for (uint32_t cell = 0; cell < outputs.size(); ++cell) {
    const ModuleNetlist::Instance instance = netlist.instances()[cell];
    if (instance.reg == kNone || outputs[cell] == kNone || !random.percent(15)) continue;
    bufferLoads(netlist, std::string(netlist.text(instance.name)) + "_i_2", cell, outputs[cell]);
  }
}

void bufferPorts(ModuleNetlist& netlist) {
  const auto nets = static_cast<uint32_t>(netlist.nets().size());
  for (uint32_t net = 0; net < nets; ++net) {
    switch (portOf(netlist, net)) {
      case Pin::Clk:
        break;
      case Pin::Dout:
      case Pin::Valid:
        bufferOutput(netlist, net);
        break;
      default:
        bufferInput(netlist, net);
        break;
    }
  }
}

}  // namespace generate
