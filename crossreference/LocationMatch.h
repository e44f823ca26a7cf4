#pragma once

#include <crossreference/NetlistState.h>
#include <crossreference/SignalSearch.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>

namespace XRF_RTL2LL {

/// Where a state element lives.
struct StateLocation {
  std::uint32_t frame = 0;
  std::uint32_t offset = 0;
  std::uint32_t slr = 0;

  bool operator==(const StateLocation& other) const {
    return frame == other.frame && offset == other.offset && slr == other.slr;
  }
};

/// Finds the register bits that the lines of one location file speak of, as extended reading does
/// it. A wrong location is worse than none, so where two lines disagree about a bit neither counts.
class LocationMatch {
 public:
  enum class Outcome { Used, SkippedLatch, Unmatched };

  /// Makes room for about so many lines.
  LocationMatch(const NetlistState& state, std::size_t lines);

  /// Records a line. `multiplexer` says that the latch taps what leaves the slice, which is a
  /// register only where a register drives the net.
  Outcome record(std::string_view net, const StateLocation& location, bool multiplexer);
  /// Lines counted as used before another line overruled or contradicted them.
  std::uint64_t withdrawn() const { return m_withdrawn; }

 private:
  // How sure a bit's location is.
  struct Claim {
    StateLocation location;
    bool faithful;  // found under the name as it stands
    bool multiplexer;
    bool disputed;
    std::uint64_t lines;
  };
  struct Match {
    Bit* bit = nullptr;
    bool faithful = false;
    bool foundOther = false;  // a net of the name is there, but no register drives it
    bool isApart = false;     // the net has a register's name without being on it
  };

  Match find(std::string_view net);
  Match find(std::string_view name, EdifView view);
  void findChanged(std::string_view name, EdifView view, Match& match);
  bool findExactly(std::string_view name, EdifView view, Match& match);
  bool accept(const Signal& signal, std::uint32_t index, Match& match) const;
  Outcome claim(Bit& bit, const Claim& claim);

  const NetlistState& m_state;
  SignalSearch m_search;
  std::array<std::string, 2> m_prefix;  // of what is below the top, where there is one
  std::string m_path;                   // of the module whose signals are looked for
  std::string m_local;
  std::string m_clean;  // the name of a line that is not clean
  std::pmr::monotonic_buffer_resource m_memory;
  std::pmr::unordered_map<const Bit*, Claim> m_claims;
  std::uint64_t m_withdrawn = 0;
};

}  // namespace XRF_RTL2LL
