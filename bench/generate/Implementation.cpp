#include "Implementation.h"

#include "Buffers.h"
#include "FlatNetlist.h"
#include "Inversions.h"
#include "OutputNets.h"
#include "Replicas.h"
#include "StateMachines.h"
#include "SynthesizedNetlist.h"

namespace generate {

namespace {

constexpr uint32_t kNone = ModuleNetlist::kNone;

bool isLut(CellKind kind) { return kind == CellKind::Lut || kind == CellKind::InverterLut; }

}  // namespace

Implementation::Implementation(const Design& design)
    : top_(design.top()), used_(design.definitions()) {
  for (uint32_t definition = 0; definition < design.definitions(); ++definition) {
    build(design, definition);
  }
  used_[top_] = true;
  for (uint32_t definition = design.definitions(); definition-- > 0;) {
    if (!used_[definition]) {
      netlists_[definition] = {};
      continue;
    }
    for (const ModuleNetlist::Instance& instance : netlists_[definition].instances()) {
      if (instance.module != kNone) used_[instance.module] = true;
    }
  }
}

void Implementation::build(const Design& design, uint32_t definition) {
  const Module module = design.module(definition);
  ModuleNetlist netlist = synthesize(design, module);
  addRecodedStates(module, netlist);
  renameOutputNets(module, netlist);
  invertRegisters(module, netlist);
  if (module.has(Hazard::Replicas)) replicateRegisters(module, netlist);
  if (module.has(Hazard::OneInputLuts)) bufferRegisters(module, netlist);
  if (module.has(Hazard::IoBuffers) && module.isTop) bufferPorts(netlist);
  uint32_t total = module.registers;
  for (uint32_t instance = 0; instance < netlist.instances().size(); ++instance) {
    const uint32_t child = netlist.instances()[instance].module;
    if (child == kNone) continue;
    netlist.setRegister(instance, total);
    total += totals_[child];
  }
  totals_.push_back(total);
  netlists_.push_back(flatten(module, netlist, netlists_));
}

void Implementation::visitCells(const std::function<void(const Cell&)>& visitor) const {
  uint64_t next = totals_[top_];
  visitBelow(top_, "", 0, next, visitor);
}

void Implementation::visitBelow(uint32_t definition, const std::string& path,
                                uint64_t firstRegister, uint64_t& next,
                                const std::function<void(const Cell&)>& visitor) const {
  const ModuleNetlist& netlist = netlists_[definition];
  const std::vector<uint32_t> outputs = netlist.outputNets();
  for (uint32_t index = 0; index < outputs.size(); ++index) {
    const ModuleNetlist::Instance& instance = netlist.instances()[index];
    if (instance.module != kNone) {
      visitBelow(instance.module, path + std::string(netlist.instanceText(index)) + '/',
                 firstRegister + instance.reg, next, visitor);
      continue;
    }
    const bool lut = isLut(instance.cell.kind);
    if (outputs[index] == kNone || (instance.reg == kNone && !lut)) continue;
    const bool hasOwnNumber = lut || instance.isReplica;
    visitor({path + std::string(netlist.netText(outputs[index])),
             hasOwnNumber ? next : firstRegister + instance.reg, lut});
    if (hasOwnNumber) ++next;
  }
}

}  // namespace generate
