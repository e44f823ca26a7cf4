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
  instances_.push_back({store(name, keepsBrackets), kNone, cell});
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
  Net& joined = nets_[net];
  if (joined.first == kNone) {
    joined.first = index;
  } else {
    connections_[joined.last].next = index;
  }
  joined.last = index;
}

}  // namespace generate
