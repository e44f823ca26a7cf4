#include "Replicas.h"

#include "Outcomes.h"
#include "OutputNets.h"
#include "Random.h"
#include "RegisterNames.h"

#include <string>
#include <utility>
#include <vector>

namespace generate {

namespace {

constexpr uint32_t kNone = ModuleNetlist::kNone;

class Replicas {
 public:
  Replicas(const Module& module, ModuleNetlist& netlist)
      : module_(module), netlist_(netlist), random_(scramble(module.seed, 27)) {}

  void run() {
    findInputs();
    const std::vector<uint32_t> outputs = netlist_.outputNets();
    for (uint32_t cell = 0; cell < outputs.size(); ++cell) {
      const uint32_t reg = netlist_.instances()[cell].reg;
      if (reg == kNone || outputs[cell] == kNone || bankOf(module_, reg).isLive) continue;
      if (module_.outcomes[reg].fate != Fate::Live || !random_.percent(12)) continue;
      if (random_.percent(15) && !isOnPort(netlist_, outputs[cell])) {
        replace(cell, outputs[cell]);
      } else {
        copy(cell, outputs[cell], "_rep");
        if (random_.percent(40)) copy(cell, outputs[cell], "_rep__0");
      }
    }
  }

 private:
  void findInputs() {
    inputs_.resize(netlist_.instances().size());
    for (uint32_t net = 0; net < netlist_.nets().size(); ++net) {
      for (const ModuleNetlist::Connection& joined : netlist_.connectionsOf(net)) {
        if (joined.instance == ModuleNetlist::kModuleItself || joined.pin == Pin::Q) continue;
        if (netlist_.instances()[joined.instance].reg == kNone) continue;
        inputs_[joined.instance].emplace_back(net, joined.pin);
      }
    }
  }

  void replace(uint32_t cell, uint32_t net) {
    const std::string name = std::string(netlist_.instanceText(cell)) + "_rep";
    netlist_.renameInstance(cell, name);
    netlist_.renameNet(net, name + "_n_0");
  }

  void copy(uint32_t cell, uint32_t net, const char* suffix) {
    const ModuleNetlist::Instance original = netlist_.instances()[cell];
    const std::string instance = std::string(netlist_.text(original.name)) + suffix;
    const uint32_t replica = netlist_.addInstance(instance, original.cell);
    netlist_.setRegister(replica, original.reg, true);
    for (const auto& [input, pin] : inputs_[cell]) netlist_.connect(input, replica, pin);
    const Bank& bank = bankOf(module_, original.reg);
    const uint32_t output =
        netlist_.addNet(random_.percent(50) ? registerName(bank, original.reg - bank.first) + suffix
                                            : instance + "_n_0");
    netlist_.connect(output, replica, Pin::Q);
    moveLoads(cell, net, output);
  }

  void moveLoads(uint32_t cell, uint32_t from, uint32_t to) {
    std::vector<ModuleNetlist::Connection> kept;
    for (const ModuleNetlist::Connection& joined : netlist_.connectionsOf(from)) {
      const bool isSource = joined.instance == cell && joined.pin == Pin::Q;
      const bool isPort = joined.instance == ModuleNetlist::kModuleItself;
      if (isSource || isPort || !isLogic(joined) || random_.percent(50)) {
        kept.push_back(joined);
      } else {
        netlist_.join(to, joined);
      }
    }
    netlist_.setConnections(from, kept);
  }

  /// What reads a register directly keeps reading it, as in the source.
  bool isLogic(const ModuleNetlist::Connection& joined) const {
    const ModuleNetlist::Instance& load = netlist_.instances()[joined.instance];
    return load.module == kNone && load.reg == kNone;
  }

  const Module& module_;
  ModuleNetlist& netlist_;
  Random random_;
  std::vector<std::vector<std::pair<uint32_t, Pin>>> inputs_;
};

}  // namespace

void replicateRegisters(const Module& module, ModuleNetlist& netlist) {
  Replicas(module, netlist).run();
}

}  // namespace generate
