#pragma once

#include <crossreference/LocationBatch.h>
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
/// it, and records what they say.
class LocationMatch {
 public:
  enum class Outcome { Used, SkippedLatch, Unmatched };

  explicit LocationMatch(const NetlistState& state);

  /// Takes a line. False once there are as many as it pays to look up together. `multiplexer` says
  /// that the latch taps what leaves the slice, which is a register only where a register drives
  /// the net.
  bool add(std::string_view net, const StateLocation& location, bool multiplexer) {
    return m_batch.add(net, location, multiplexer);
  }
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
  // Levels that tools may have made of others, and the beginning that they gave the last one.
  struct Changed {
    SignalSearch::Path path;
    std::string beginning;
    bool isTop;  // no levels are left
  };
  // The levels above the last one, which "/" ends, by view: what they may mean is worked out as far
  // as it is asked for.
  struct Levels {
    std::string text;
    bool isNormal = true;
    std::array<std::optional<SignalSearch::Path>, 2> path;
    std::array<std::optional<LevelChanges>, 2> changes;
    std::array<std::vector<Changed>, 2> changed;
  };

  void findBatch();
  void askAhead(std::size_t at);
  std::size_t takeRow(std::size_t at);
  void lookAtRow(std::size_t count);
  std::uint32_t hashOfPath(std::string_view net) const;
  Match find(const Local& local);
  Match find(EdifView view, const Local& local);
  void takeApart(std::string_view text, std::size_t last, Local& local) const;
  const SignalSearch::Path& pathOf(EdifView view);
  SignalSearch::Path pathBelow(EdifView view, std::string_view levels);
  LevelChanges changesOf(EdifView view);
  const Changed* changedAt(EdifView view, std::size_t number);
  bool findChanged(EdifView view, const Local& local, Match& match);
  const Signal* findNormalised(EdifView view, const Local& local);
  Found lookUp(EdifView view, const SignalSearch::Path& path, const Local& local) const;
  bool findExactly(EdifView view, const SignalSearch::Path& path, const Local& local,
                   const Found& found, Match& match) const;
  bool accept(const Signal& signal, std::uint32_t index, Match& match) const;
  Outcome recordAt(std::size_t at);

  const NetlistState& m_state;
  SignalSearch m_search;
  LocationClaims m_claims;
  std::array<std::string, 2> m_prefix;  // of what is below the top, where there is one
  LocationBatch m_batch;
  // Of the lines that are looked up: one module's, one after another.
  Levels m_levels;
  std::array<Local, 32> m_row;
  Local m_joined;  // the last level with what was joined to it
  std::string m_buffer;
};

template <class Visit>
void LocationMatch::record(Visit visit) {
  // None is recorded twice, not even where one of them ends in an exception.
  struct Clearing {
    LocationBatch& batch;
    ~Clearing() { batch.clear(); }
  } const clearing{m_batch};
  findBatch();
  for (std::size_t at = 0; at < m_batch.size(); ++at) {
    const Outcome outcome = recordAt(at);
    visit(m_batch.netOf(m_batch.line(at)), outcome);
  }
}

}  // namespace XRF_RTL2LL
