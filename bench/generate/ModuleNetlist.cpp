#include "ModuleNetlist.h"

#include <stdexcept>

namespace generate {

ModuleNetlist::Name ModuleNetlist::store(std::string_view name, bool keepsBrackets) {
  if (text_.size() > UINT32_MAX - name.size()) throw std::runtime_error("a module is too large");
  const auto offset = static_cast<uint32_t>(text_.size());
  text_.append(name);
  return {offset, static_cast<uint16_t>(name.size()), keepsBrackets};
}

uint32_t ModuleNetlist::addInstance(std::string_view name, Cell cell, bool keepsBrackets) {
  instances_.push_back({store(name, keepsBrackets), kNone, cell, kNone, false});
  return static_cast<uint32_t>(instances_.size()) - 1;
}

uint32_t ModuleNetlist::addSubmodule(std::string_view name, uint32_t definition) {
  const uint32_t instance = addInstance(name, {CellKind::Lut});
  instances_.back().module = definition;
  return instance;
}

uint32_t ModuleNetlist::addNet(std::string_view name, bool keepsBrackets) {
  nets_.push_back({store(name, keepsBrackets)});
  return static_cast<uint32_t>(nets_.size()) - 1;
}

void ModuleNetlist::setRegister(uint32_t instance, uint32_t reg, bool isReplica) {
  instances_[instance].reg = reg;
  instances_[instance].isReplica = isReplica;
}

void ModuleNetlist::renameInstance(uint32_t instance, std::string_view name) {
  instances_[instance].name = store(std::string(name), false);
}

void ModuleNetlist::renameNet(uint32_t net, std::string_view name) {
  nets_[net].name = store(std::string(name), false);
}

std::vector<uint32_t> ModuleNetlist::outputNets() const {
  std::vector<uint32_t> outputs(instances_.size(), kNone);
  for (uint32_t net = 0; net < nets_.size(); ++net) {
    for (uint32_t at = nets_[net].first; at != kNone; at = connections_[at].next) {
      const Connection& joined = connections_[at];
      if (joined.instance == kModuleItself || joined.member != kNoMember) continue;
      if (joined.pin == Pin::Q || joined.pin == Pin::O) outputs[joined.instance] = net;
    }
  }
  return outputs;
}

std::vector<ModuleNetlist::Connection> ModuleNetlist::connectionsOf(uint32_t net) const {
  std::vector<Connection> all;
  for (uint32_t at = nets_[net].first; at != kNone; at = connections_[at].next) {
    all.push_back(connections_[at]);
  }
  return all;
}

void ModuleNetlist::setConnections(uint32_t net, const std::vector<Connection>& connections) {
  nets_[net].first = kNone;
  nets_[net].last = kNone;
  for (const Connection& connection : connections) join(net, connection);
}

void ModuleNetlist::connect(uint32_t net, uint32_t instance, Pin pin) {
  join(net, {instance, kNone, kNoMember, pin});
}

void ModuleNetlist::connectBit(uint32_t net, uint32_t instance, Pin pin, uint32_t bit,
                               uint32_t width) {
  join(net, {instance, kNone, static_cast<uint16_t>(width - 1 - bit), pin});
}

void ModuleNetlist::join(uint32_t net, const Connection& connection) {
  if (net == kNone) return;
  const auto index = static_cast<uint32_t>(connections_.size());
  connections_.push_back(connection);
  connections_.back().next = kNone;
  Net& joined = nets_[net];
  if (joined.first == kNone) {
    joined.first = index;
  } else {
    connections_[joined.last].next = index;
  }
  joined.last = index;
}

}  // namespace generate
