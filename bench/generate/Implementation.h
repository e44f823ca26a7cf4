#ifndef BENCH_GENERATE_IMPLEMENTATION_H
#define BENCH_GENERATE_IMPLEMENTATION_H

#include "Design.h"
#include "ModuleNetlist.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace generate {

/// The synthesized netlists of a design with hazards: each module after replication, buffering and
/// flattening.
class Implementation {
 public:
  explicit Implementation(const Design& design);

  /// Whether any instance of a definition is left.
  bool isUsed(uint32_t definition) const { return used_[definition]; }
  const ModuleNetlist& netlist(uint32_t definition) const { return netlists_[definition]; }

  /// A cell that is read back, or a look-up table, which is not but may be listed all the same.
  struct Cell {
    std::string net;  ///< at its output, with the path below the top
    uint64_t number;  ///< the register's within the design; above all those for other cells
    bool isLut = false;
  };
  /// Visits registers, replicas and look-up tables, always in the same order. What drives no net
  /// is passed over.
  void visitCells(const std::function<void(const Cell&)>& visitor) const;

 private:
  void build(const Design& design, uint32_t definition);
  void visitBelow(uint32_t definition, const std::string& path, uint64_t firstRegister,
                  uint64_t& next, const std::function<void(const Cell&)>& visitor) const;

  uint32_t top_;
  std::vector<ModuleNetlist> netlists_;
  std::vector<uint32_t> totals_;  ///< registers of each definition, its children's included
  std::vector<bool> used_;
};

}  // namespace generate

#endif
