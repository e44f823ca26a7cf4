#include <crossreference/LocationMatch.h>
#include <crossreference/Reading.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>
#include <support/WordBytes.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

// Lines of one module stand near one another among so many, even in a large design.
constexpr std::size_t mostTaken = std::size_t{1} << 18;
// How many lines ahead a bit is asked for.
constexpr std::size_t ahead = 16;

}  // namespace

LocationMatch::LocationMatch(const NetlistState& state)
    : m_state(state), m_search(state), m_claims(state.model) {
  for (const EdifView view : {RTL, SYNTH}) {
    const Module* top = state.top.at(view);
    const bool named = top != nullptr && top->getName() != nullptr;
    if (named) m_prefix.at(view) = "/" + std::string(top->getName()) + "/";
  }
}

bool LocationMatch::add(const Line& line) {
  m_lines.push_back(
      {m_text.size(), line.net.size(), line.location, line.multiplexer, false, nullptr});
  m_text += line.net;
  return m_lines.size() < mostTaken;
}

// Lines of one module are looked up one after another, and those of one name in their order.
void LocationMatch::findTaken() {
  m_order.clear();
  for (std::size_t at = 0; at < m_lines.size(); ++at) {
    const std::string_view net = netOf(m_lines[at]);
    const std::uint64_t path = hashText(net.substr(0, net.rfind('/') + 1));
    m_order.push_back(path << 32 | at);
  }
  std::sort(m_order.begin(), m_order.end());
  for (const std::uint64_t entry : m_order) {
    Taken& line = m_lines[static_cast<std::uint32_t>(entry)];
    const Match match = find(netOf(line));
    line.bit = match.bit;
    line.faithful = match.faithful;
  }
  forgetLevels();
}

// What was found out about modules would fill memory, were it kept for all lines of any file.
void LocationMatch::forgetLevels() {
  m_levels = {};
  m_search.forget();
}

LocationMatch::Outcome LocationMatch::recordAt(std::size_t at) {
  if (at + ahead < m_lines.size()) __builtin_prefetch(m_lines[at + ahead].bit, 1);
  const Taken& line = m_lines[at];
  if (line.bit == nullptr) {
    return line.multiplexer ? Outcome::SkippedLatch : Outcome::Unmatched;
  }
  switch (m_claims.record(*line.bit, {line.location, line.faithful, line.multiplexer})) {
    case LocationClaims::Outcome::Used:
      return Outcome::Used;
    case LocationClaims::Outcome::Worse:
      return Outcome::SkippedLatch;
    case LocationClaims::Outcome::Disputed:
      break;
  }
  return Outcome::Unmatched;
}

void LocationMatch::takeApart(std::string_view text) {
  const std::size_t last = text.rfind('/') + 1;
  const std::string_view levels = text.substr(0, last);
  if (m_levels.text != levels) {
    m_levels = {};
    m_levels.text = levels;
    m_levels.isNormal = isNormal(levels);
  }
  takeApart(text, last, m_local);
}

// What stands before the last level counts only in so far as something does.
void LocationMatch::takeApart(std::string_view text, std::size_t last, Local& local) const {
  const std::string_view whole = text.substr(last);
  local.apartText = whole;
  local.apartText += apartEnding;
  local.apart = m_search.local(local.apartText);
  local.whole = m_search.local(whole);
  std::string_view bus;
  local.isBit = splitBit(text, local.busText, bus, local.index);
  if (local.isBit) local.bus = m_search.local(bus.substr(last));
}

SignalSearch::Path& LocationMatch::pathOf(EdifView view) {
  SignalSearch::Path*& path = m_levels.path.at(view);
  if (path == nullptr) {
    m_buffer = m_prefix.at(view);
    m_buffer += m_levels.text;
    m_buffer.pop_back();
    path = &m_search.path(m_buffer);
  }
  return *path;
}

// Looks for the register that drives a net of the name; true when there is one. All that the name
// may mean differs in the last level alone, so it is one module's.
bool LocationMatch::findExactly(EdifView view, SignalSearch::Path& path, const Local& local,
                                Match& match) {
  // A net that has the name of a register which is not on it is kept under a name of its own.
  const Signal* apart = m_search.find(view, path, local.apart);
  match.isApart = apart != nullptr;
  if (match.isApart) return accept(*apart, 0, match);
  const Signal* whole = m_search.find(view, path, local.whole);
  if (whole != nullptr && accept(*whole, 0, match)) return true;
  const Signal* bus = local.isBit ? m_search.find(view, path, local.bus) : nullptr;
  return bus != nullptr && accept(*bus, local.index, match);
}

bool LocationMatch::accept(const Signal& signal, std::uint32_t index, Match& match) const {
  Bit* bit = bitAt(signal, index);
  if (bit == nullptr) return false;
  if (!bit->isSrc() || m_state.isAmbiguous(signal)) {
    match.foundOther = true;
    return false;
  }
  match.bit = bit;
  return true;
}

LocationMatch::Match LocationMatch::find(EdifView view) {
  Match match;
  if (m_prefix.at(view).empty()) return match;
  match.faithful = findExactly(view, pathOf(view), m_local, match);
  if (match.faithful || match.isApart) return match;
  if (findChanged(view, match)) return match;
  // Netlists whose identifiers are the only names hold each bit as a signal of its own.
  const Signal* signal = findNormalised(view);
  const BitRef* ref = signal == nullptr ? nullptr : refAt(*signal, 0);
  // Where names are printable, a register of the changed name is another one.
  const bool another = ref != nullptr && m_state.renamed.at(view) && RegisterTies::isTied(*ref);
  if (ref != nullptr && !another) accept(*signal, 0, match);
  return match;
}

// The levels that are the next possible ones after so many others, or null.
const LocationMatch::Changed* LocationMatch::changedAt(EdifView view, std::size_t number) {
  std::optional<LevelChanges>& changes = m_levels.changes.at(view);
  std::vector<Changed>& known = m_levels.changed.at(view);
  if (!changes) {
    changes.emplace(m_levels.text);
    // Nearly all modules are there under names that nothing has changed.
    const bool isThere =
        m_levels.isNormal && (m_levels.text.empty() || m_search.hasModule(view, pathOf(view)));
    if (isThere) changes->stop();
  }
  if (number < known.size()) return &known[number];
  if (!changes->next()) return nullptr;
  const auto& [name, joined] = changes->current();
  // What still is a module was not joined to the names below it.
  if (!joined.empty() && m_search.hasModule(view, m_prefix.at(view) + joined)) {
    changes->stop();
    return nullptr;
  }
  const std::size_t last = name.rfind('/') + 1;
  m_buffer = m_prefix.at(view);
  m_buffer += std::string_view(name).substr(0, last);
  m_buffer.pop_back();
  known.push_back({&m_search.path(m_buffer), name.substr(last)});
  return &known.back();
}

// Looks for the register under the names that changes of its levels may have made.
bool LocationMatch::findChanged(EdifView view, Match& match) {
  for (std::size_t at = 0; const Changed* changed = changedAt(view, at); ++at) {
    const Local* local = &m_local;
    if (!changed->joined.empty()) {
      m_buffer = '/';
      m_buffer += changed->joined;
      m_buffer += m_local.whole.text;
      takeApart(m_buffer, 1, m_joined);
      local = &m_joined;
    }
    if (findExactly(view, *changed->path, *local, match)) return true;
  }
  return false;
}

Signal* LocationMatch::findNormalised(EdifView view) {
  if (m_levels.isNormal && isNormal(m_prefix.at(view))) {
    SignalSearch::Path& path = pathOf(view);
    m_buffer = m_local.whole.text;
    normalise(m_buffer);
    return m_search.find(view, path, m_search.local(m_buffer));
  }
  m_buffer = m_prefix.at(view);
  m_buffer += m_levels.text;
  m_buffer += m_local.whole.text;
  normalise(m_buffer);
  return m_search.find(view, m_buffer);
}

LocationMatch::Match LocationMatch::find(std::string_view net) {
  const bool clean = isClean(net);
  if (!clean) m_clean = cleaned(net);
  takeApart(clean ? net : std::string_view(m_clean));
  Match match = find(SYNTH);
  if (match.bit != nullptr || match.foundOther) return match;
  return find(RTL);
}

}  // namespace XRF_RTL2LL
