#include "OutputNets.h"

#include "ExtendedReading.h"
#include "Outcomes.h"
#include "OutputFile.h"
#include "Random.h"
#include "RegisterNames.h"

#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace generate {

namespace {

constexpr uint32_t kNone = ModuleNetlist::kNone;

class OutputNets {
 public:
  OutputNets(const Module& module, ModuleNetlist& netlist)
      : module_(module), netlist_(netlist), random_(scramble(module.seed, 26)) {}

  void run() {
    for (uint32_t net = 0; net < netlist_.nets().size(); ++net) {
      used_.insert(storable(netlist_.netText(net)));
    }
    findAbsorbed();
    const std::vector<uint32_t> outputs = netlist_.outputNets();
    for (uint32_t cell = 0; cell < netlist_.instances().size(); ++cell) {
      const uint32_t reg = netlist_.instances()[cell].reg;
      if (outputs[cell] == kNone || reg == kNone || isOnPort(netlist_, outputs[cell])) continue;
      rename(reg, outputs[cell]);
    }
  }

 private:
  void findAbsorbed() {
    absorbed_.assign(module_.registers, kNone);
    for (uint32_t reg = 0; reg < module_.outcomes.size(); ++reg) {
      const Outcome* outcome = &module_.outcomes[reg];
      if (outcome->fate != Fate::Merged || !random_.percent(25)) continue;
      uint32_t survivor = reg;
      while (outcome->fate == Fate::Merged && !outcome->isInTwin) {
        survivor = outcome->survivor;
        outcome = &module_.outcomes[survivor];
      }
      absorbed_[survivor] = reg;
    }
  }

  void rename(uint32_t reg, uint32_t net) {
    const Bank& bank = bankOf(module_, reg);
    const uint32_t bit = reg - bank.first;
    if (bank.isLive || module_.outcomes[reg].fate != Fate::Live) return;
    if (absorbed_[reg] != kNone) {
      const Bank& other = bankOf(module_, absorbed_[reg]);
      use(net, registerName(other, absorbed_[reg] - other.first));
    } else if (module_.has(Hazard::ToolNets) && random_.percent(40)) {
      use(net, toolName(bank, bit));
    } else if (module_.has(Hazard::FarNets) && random_.percent(30)) {
      if (!freed_.empty() && random_.percent(25)) {
        useFreed(net);
      } else {
        use(net, farNames(bank, bit));
      }
    }
  }

  void use(uint32_t net, const std::string& name) {
    if (name.empty() || !used_.insert(storable(name)).second) return;
    freed_.emplace_back(netlist_.netText(net));
    netlist_.renameNet(net, name);
  }

  /// Gives a net the name of a register whose own net has another one now.
  void useFreed(uint32_t net) {
    std::string name = std::move(freed_.back());
    freed_.pop_back();
    freed_.emplace_back(netlist_.netText(net));
    netlist_.renameNet(net, name);
  }

  std::string toolName(const Bank& bank, uint32_t bit) {
    const std::string instance = instanceName(bank, bit);
    if (random_.percent(40)) return "n_0_" + instance;
    const size_t subscripts = instance.rfind("_reg") + 4;
    const bool isScalar = subscripts == instance.size();
    return instance.substr(0, subscripts) + (isScalar ? "_n_0" : "_n_0_") +
           instance.substr(subscripts);
  }

  std::string farNames(const Bank& bank, uint32_t bit) {
    const uint32_t choice = random_.below(8);
    if (choice == 0) return "din[" + std::to_string(40 + random_.below(4)) + ']';
    return choice < 4 ? farName(bank, bit) : borrowedName();
  }

  static std::string farName(const Bank& bank, uint32_t bit) {
    std::string name = "p_";
    appendNumber(name, bank.index);
    name += "_in[";
    appendNumber(name, bit);
    return name + ']';
  }

  /// The name that another net has in the source and lost in synthesis.
  std::string borrowedName() {
    const Bank& bank = module_.banks[random_.below(static_cast<uint32_t>(module_.banks.size()))];
    if (bank.operation == Operation::Copy) return "";
    return nextNetName(bank, random_.below(bank.size()));
  }

  const Module& module_;
  ModuleNetlist& netlist_;
  Random random_;
  std::unordered_set<std::string> used_;
  std::vector<std::string> freed_;
  std::vector<uint32_t> absorbed_;  ///< for each register one that was merged into it
};

}  // namespace

void renameOutputNets(const Module& module, ModuleNetlist& netlist) {
  OutputNets(module, netlist).run();
}

bool isOnPort(const ModuleNetlist& netlist, uint32_t net) {
  for (uint32_t at = netlist.nets()[net].first; at != kNone; at = netlist.connection(at).next) {
    if (netlist.connection(at).instance == ModuleNetlist::kModuleItself) return true;
  }
  return false;
}

}  // namespace generate
