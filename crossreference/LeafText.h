#pragma once

#include <crossreference/Module.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace XRF_RTL2LL {

/// What the text of a module without children has in common with that of other instances of its
/// cell: everything but the numbers of the nets and bits of its signals. Most modules of a
/// cross-reference file are such instances, and their lines need not be taken apart.
class LeafText {
 public:
  struct Port {
    const Word* name;
    std::uint32_t id;
    signalKind kind;
    bool hidden;
    std::string head;  ///< what stands before the number of the net
  };
  /// What differs from instance to instance.
  struct Place {
    std::uint32_t net;
    std::uint32_t bit;
  };
  struct Passed {
    std::size_t bytes = 0;  ///< 0 where the text is another
    std::uint64_t lines = 0;
    std::ptrdiff_t closing = 0;  ///< modules that end with the last line
  };

  /// The text of a module that was just read whole, unless something about its signals is out of
  /// the ordinary.
  static std::optional<LeafText> of(const Module& module);

  const std::vector<Port>& ports() const { return m_ports; }
  /// The numbers of the ports in their order, which is that of their names. They live as long as
  /// the model.
  std::uint32_t* ids() const { return m_ids; }
  /// Compares the lines that follow that of a module, and takes the places of its ports from them.
  Passed scan(std::string_view text, std::vector<Place>& places) const;

 private:
  std::vector<Port> m_ports;
  std::uint32_t* m_ids = nullptr;
};

}  // namespace XRF_RTL2LL
