#pragma once

#include <crossreference/LocationClaims.h>
#include <crossreference/NetlistState.h>
#include <crossreference/Reading.h>
#include <crossreference/SignalSearch.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace XRF_RTL2LL {

/// Finds the register bits that the lines of one location file speak of, as extended reading does
/// it, and records what they say. Lines are looked up many at a time: the next one mostly speaks of
/// another end of the design, but among many thousand there are several of each module.
class LocationMatch {
 public:
  enum class Outcome { Used, SkippedLatch, Unmatched };
  struct Line {
    std::string_view net;
    StateLocation location;
    bool multiplexer = false;  ///< the latch taps what leaves the slice, which is a register only
                               ///< where a register drives the net
  };

  explicit LocationMatch(const NetlistState& state);

  /// Takes a line. False once there are as many as it pays to look up together.
  bool add(const Line& line);
  /// Records the lines taken, and calls `visit` with each net and outcome, in their order.
  template <class Visit>
  void record(Visit visit);
  /// Lines counted as used before another line overruled or contradicted them.
  std::uint64_t withdrawn() const { return m_claims.withdrawn(); }

 private:
  struct Match {
    Bit* bit = nullptr;
    bool faithful = false;
    bool foundOther = false;  // a net of the name is there, but no register drives it
    bool isApart = false;     // the net has a register's name without being on it
  };
  // What a module has of the names that a line may mean.
  struct Found {
    const Signal* apart = nullptr;
    const Signal* whole = nullptr;
    const Signal* bus = nullptr;  // looked for where there is nothing of the whole name
  };
  // What the last level of a name may mean in a module.
  struct Local {
    SignalSearch::Local apart{};
    SignalSearch::Local whole{};
    SignalSearch::Local bus{};
    std::uint32_t index = 0;  // of the bus
    bool isBit = false;       // so that there is a bus
    std::string apartText;
    std::string busText;
    std::string clean;  // the name of a line that is not clean
    // What the synthesized view has of it, once it was looked at.
    Found found;
    std::optional<const Signal*> normalised;
  };
  // Levels that tools may have made of others, and what they put before the last one.
  struct Changed {
    SignalSearch::Path* path;
    std::string joined;
  };
  // The levels above the last one, which "/" ends, by view: what they may mean is worked out as far
  // as it is asked for.
  struct Levels {
    std::string text;
    bool isNormal = true;
    std::array<SignalSearch::Path*, 2> path{};
    std::array<std::optional<LevelChanges>, 2> changes;
    std::array<std::vector<Changed>, 2> changed;
  };
  // A line that waits to be looked up.
  struct Taken {
    std::size_t net;  // where its name begins in the text
    std::size_t size;
    StateLocation location;
    bool multiplexer;
    bool faithful;
    Bit* bit;
  };

  std::string_view netOf(const Taken& line) const {
    return std::string_view(m_text).substr(line.net, line.size);
  }
  void sortTaken();
  void findTaken();
  void askAhead(std::size_t at) const;
  std::size_t takeRow(std::size_t at);
  void lookAtRow(std::size_t count);
  void forgetLevels();
  std::uint32_t hashOfPath(std::string_view net) const;
  std::uint32_t numberOf(std::size_t at) const { return static_cast<std::uint32_t>(m_order[at]); }
  const Taken& orderedLine(std::size_t at) const { return m_lines[numberOf(at)]; }
  Match find(const Local& local);
  Match find(EdifView view, const Local& local);
  void takeApart(std::string_view text, std::size_t last, Local& local) const;
  SignalSearch::Path& pathOf(EdifView view);
  const Changed* changedAt(EdifView view, std::size_t number);
  bool findChanged(EdifView view, const Local& local, Match& match);
  const Signal* findNormalised(EdifView view, const Local& local);
  Found lookUp(EdifView view, SignalSearch::Path& path, const Local& local) const;
  bool findExactly(EdifView view, SignalSearch::Path& path, const Local& local, const Found& found,
                   Match& match) const;
  bool accept(const Signal& signal, std::uint32_t index, Match& match) const;
  Outcome recordAt(std::size_t at);

  const NetlistState& m_state;
  SignalSearch m_search;
  LocationClaims m_claims;
  std::array<std::string, 2> m_prefix;  // of what is below the top, where there is one
  std::string m_text;                   // the names of the lines taken
  std::vector<Taken> m_lines;
  std::vector<std::uint64_t> m_order;  // in which they are looked up; a hash above the number
  // Of the lines that are looked up: one module's, one after another.
  Levels m_levels;
  std::array<Local, 32> m_row;
  Local m_joined;  // the last level with what was joined to it
  std::string m_buffer;
};

template <class Visit>
void LocationMatch::record(Visit visit) {
  findTaken();
  for (std::size_t at = 0; at < m_lines.size(); ++at) visit(netOf(m_lines[at]), recordAt(at));
  m_lines.clear();
  m_text.clear();
}

}  // namespace XRF_RTL2LL
