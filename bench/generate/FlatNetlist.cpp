#include "FlatNetlist.h"

#include "Random.h"
#include "RegisterNames.h"

#include <map>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>

namespace generate {

namespace {

constexpr uint32_t kNone = ModuleNetlist::kNone;
using Connection = ModuleNetlist::Connection;
using PinBit = std::pair<Pin, uint16_t>;

class FlatNetlist {
 public:
  FlatNetlist(const Module& module, const ModuleNetlist& netlist,
              const std::vector<ModuleNetlist>& children)
      : module_(module), source_(netlist), children_(children) {}

  ModuleNetlist run() {
    copyOwn();
    for (uint32_t instance = 0; instance < source_.instances().size(); ++instance) {
      if (const Child* child = flattened(instance)) dissolve(instance, *child);
    }
    return std::move(result_);
  }

 private:
  const Child* flattened(uint32_t instance) const {
    const ModuleNetlist::Instance& is = source_.instances()[instance];
    if (is.module == kNone) return nullptr;
    for (const Child& child : module_.children) {
      if (child.name != source_.instanceText(instance)) continue;
      return child.flattening == Flattening::Kept ? nullptr : &child;
    }
    return nullptr;
  }

  void copyOwn() {
    std::vector<uint32_t> places(source_.instances().size(), kNone);
    for (uint32_t instance = 0; instance < places.size(); ++instance) {
      if (flattened(instance) != nullptr) continue;
      places[instance] = addInstance(source_, instance, source_.instanceText(instance), 0);
    }
    pins_.resize(places.size());
    for (uint32_t net = 0; net < source_.nets().size(); ++net) {
      addNet(std::string(source_.netText(net)));
      for (Connection joined : source_.connectionsOf(net)) {
        if (joined.instance != ModuleNetlist::kModuleItself) {
          if (places[joined.instance] == kNone) {
            pins_[joined.instance][{joined.pin, joined.member}] = net;
            continue;
          }
          joined.instance = places[joined.instance];
        }
        result_.join(net, joined);
      }
    }
  }

  uint32_t addInstance(const ModuleNetlist& from, uint32_t instance, std::string_view name,
                       uint32_t firstRegister) {
    const ModuleNetlist::Instance& is = from.instances()[instance];
    std::string unique(name);
    const auto [known, isNew] = instances_.try_emplace(unique, 0U);
    const bool movesOther = !isNew && scramble(module_.seed, 29, instance) % 2 == 0;
    if (!isNew && !movesOther) unique += "__0";
    const uint32_t place = is.module == kNone ? result_.addInstance(unique, is.cell)
                                              : result_.addSubmodule(unique, is.module);
    if (movesOther) result_.renameInstance(known->second, unique + "__0");
    if (isNew || movesOther) known->second = place;
    if (is.reg != kNone) result_.setRegister(place, firstRegister + is.reg, is.isReplica);
    return place;
  }

  uint32_t addNet(std::string name) {
    while (!nets_.insert({name, static_cast<uint32_t>(nets_.size())}).second) {
      name = inserted(name, "__0");
    }
    return result_.addNet(name);
  }

  void dissolve(uint32_t instance, const Child& child) {
    const ModuleNetlist& inner = children_[child.definition];
    const std::string prefix = child.name + (child.flattening == Flattening::Slash ? '/' : '_');
    const uint32_t firstRegister = source_.instances()[instance].reg;
    std::vector<uint32_t> places(inner.instances().size());
    for (uint32_t cell = 0; cell < places.size(); ++cell) {
      places[cell] =
          addInstance(inner, cell, prefix + std::string(inner.instanceText(cell)), firstRegister);
    }
    for (uint32_t net = 0; net < inner.nets().size(); ++net) {
      const std::string name = prefix + std::string(inner.netText(net));
      const std::vector<Connection> connections = inner.connectionsOf(net);
      const uint32_t target = targetOf(connections, name, instance);
      for (Connection joined : connections) {
        if (joined.instance == ModuleNetlist::kModuleItself) continue;
        joined.instance = places[joined.instance];
        result_.join(target, joined);
      }
    }
  }

  /// The net that goes on where a child's net met its ports, or a new one.
  uint32_t targetOf(const std::vector<Connection>& connections, const std::string& name,
                    uint32_t instance) {
    uint32_t target = kNone;
    bool isOutput = false;
    for (const Connection& joined : connections) {
      if (joined.instance != ModuleNetlist::kModuleItself) continue;
      const auto outer = pins_[instance].find({joined.pin, joined.member});
      if (outer == pins_[instance].end() || outer->second == target) continue;
      if (target != kNone) throw std::logic_error("a net passes through a module");
      target = outer->second;
      isOutput = joined.pin == Pin::Dout || joined.pin == Pin::Valid;
    }
    if (target == kNone) return addNet(name);
    if (isOutput && scramble(module_.seed, 30, target) % 2 == 0 &&
        nets_.insert({name, target}).second) {
      result_.renameNet(target, name);
    }
    return target;
  }

  const Module& module_;
  const ModuleNetlist& source_;
  const std::vector<ModuleNetlist>& children_;
  ModuleNetlist result_;
  std::vector<std::map<PinBit, uint32_t>> pins_;  ///< nets at the pins of flattened children
  std::unordered_map<std::string, uint32_t> instances_;
  std::unordered_map<std::string, uint32_t> nets_;
};

}  // namespace

ModuleNetlist flatten(const Module& module, const ModuleNetlist& netlist,
                      const std::vector<ModuleNetlist>& children) {
  return FlatNetlist(module, netlist, children).run();
}

}  // namespace generate
