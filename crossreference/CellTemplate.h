#pragma once

#include <crossreference/NetlistState.h>

#include <optional>
#include <unordered_map>
#include <vector>

namespace XRF_RTL2LL {

/// The range of a port array as its cell declares it, whatever its signal is widened to.
struct DeclaredRange {
  std::uint32_t left = 0;
  std::uint32_t right = 0;
  bool foreign = false;  ///< the printed range is none that the model can have
};
using PortRanges = std::unordered_map<const Signal*, DeclaredRange>;

/// The ports of a cell that has nothing but ports, so that each further instance of it is a copy.
/// Most instances of a design are of such cells.
class CellTemplate {
 public:
  /// What reading the cell took, which copies must not escape.
  struct Cost {
    std::uint64_t words = 0;
    unsigned nesting = 0;
  };

  /// The template of a module that was read from a cell of nothing but ports, unless something
  /// about its ports is out of the ordinary.
  static std::optional<CellTemplate> of(const Module& module, Cost cost, const PortRanges& ranges);

  const Cost& cost() const { return m_cost; }
  /// How many signals and bits a copy makes.
  std::uint64_t objects() const { return m_objects; }
  /// Whether a module without signals can take a copy.
  bool fits(const NetlistState& state, EdifView view, const Module& module) const;
  void copyTo(NetlistState& state, EdifView view, Module& module, PortRanges& ranges) const;

 private:
  struct Port {
    const Word* name;
    std::uint32_t id;
    std::uint32_t lsb;
    std::uint32_t msb;
    signalKind kind;
    std::uint32_t slot;  // where the port stands in name order
    std::uintptr_t marks;
    std::optional<DeclaredRange> range;
  };

  std::vector<Port> m_ports;
  std::uint32_t* m_numbers = nullptr;  // of the ports in name order, in the model's memory
  Cost m_cost;
  std::uint64_t m_objects = 0;
  std::uint32_t m_listed = 0;
};

}  // namespace XRF_RTL2LL
