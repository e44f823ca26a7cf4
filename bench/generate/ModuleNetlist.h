#ifndef BENCH_GENERATE_MODULENETLIST_H
#define BENCH_GENERATE_MODULENETLIST_H

#include "Cells.h"
#include "Design.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace generate {

/// The contents of one module in one netlist: instances, and nets that join their pins. Names are
/// kept in one text and connections in chains, since a flat design is all in one module.
class ModuleNetlist {
 public:
  static constexpr uint32_t kNone = UINT32_MAX;
  static constexpr uint32_t kModuleItself = UINT32_MAX - 1;
  static constexpr uint16_t kNoMember = UINT16_MAX;

  struct Name {
    uint32_t offset;
    uint16_t length;
    bool keepsBrackets;  ///< written with its brackets even where identifiers are the only names
  };
  struct Instance {
    Name name;
    uint32_t module = kNone;  ///< the definition of a submodule, else `cell` holds
    Cell cell{CellKind::Lut};
    /// Of a cell that holds a register, the register's number; of a submodule, the number of its
    /// first register. Both count from the module's own first register.
    uint32_t reg = kNone;
    bool isReplica = false;
  };
  struct Connection {
    uint32_t instance;
    uint32_t next;
    uint16_t member;  ///< counted from the left end of an array, as the file wants it
    Pin pin;
  };
  struct Net {
    Name name;
    uint32_t first = kNone;
    uint32_t last = kNone;
  };

  uint32_t addInstance(std::string_view name, Cell cell, bool keepsBrackets = false);
  uint32_t addSubmodule(std::string_view name, uint32_t definition);
  uint32_t addNet(std::string_view name, bool keepsBrackets = false);

  void setRegister(uint32_t instance, uint32_t reg, bool isReplica = false);
  void renameInstance(uint32_t instance, std::string_view name);
  void renameNet(uint32_t net, std::string_view name);

  /// Joins a single pin to a net; a net of kNone stays out.
  void connect(uint32_t net, uint32_t instance, Pin pin);
  /// Joins bit `bit` of an array that is `width` wide.
  void connectBit(uint32_t net, uint32_t instance, Pin pin, uint32_t bit, uint32_t width);

  std::string_view text(Name name) const { return {text_.data() + name.offset, name.length}; }
  const std::vector<Instance>& instances() const { return instances_; }
  const std::vector<Net>& nets() const { return nets_; }
  std::string_view instanceText(uint32_t instance) const { return text(instances_[instance].name); }
  std::string_view netText(uint32_t net) const { return text(nets_[net].name); }
  /// The net that each cell's output Q or O drives; kNone for others.
  std::vector<uint32_t> outputNets() const;
  /// The connections of a net, in order.
  std::vector<Connection> connectionsOf(uint32_t net) const;
  /// Puts others in their place.
  void setConnections(uint32_t net, const std::vector<Connection>& connections);
  void join(uint32_t net, const Connection& connection);
  const Connection& connection(uint32_t index) const { return connections_[index]; }

 private:
  Name store(std::string_view name, bool keepsBrackets);

  std::string text_;
  std::vector<Instance> instances_;
  std::vector<Net> nets_;
  std::vector<Connection> connections_;
};

}  // namespace generate

#endif
