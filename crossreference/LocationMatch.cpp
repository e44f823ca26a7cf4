#include <crossreference/LocationMatch.h>
#include <crossreference/Reading.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>

#include <tuple>
#include <utility>

namespace XRF_RTL2LL {

namespace {

// How many lines ahead memory is asked for.
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

// As the registry of modules has it.
std::uint32_t LocationMatch::hashOfPath(std::string_view net) const {
  const std::string_view prefix = m_prefix[SYNTH];
  const std::size_t slash = net.rfind('/');
  NameKey key(prefix.substr(0, prefix.rfind('/')));
  if (slash != std::string_view::npos) {
    key.pieces[1] = "/";
    key.pieces[2] = net.substr(0, slash);
  }
  return key.hash();
}

void LocationMatch::findBatch() {
  m_batch.sort([this](std::string_view net) { return hashOfPath(net); });
  for (std::size_t at = 0; at < m_batch.size();) {
    const std::size_t count = takeRow(at);
    lookAtRow(count);
    for (std::size_t number = 0; number < count; ++number, ++at) {
      const Match match = find(m_row[number]);
      LocationBatch::Line& line = m_batch.sorted(at);
      line.bit = match.bit;
      line.claim.faithful = match.faithful;
    }
  }
  m_levels = {};
  m_search.forget();
}

// Lines and modules are all over memory, so those to come are asked for step by step.
void LocationMatch::askAhead(std::size_t at) {
  if (at + 2 * ahead < m_batch.size()) m_batch.prefetchSorted(at + 2 * ahead);
  if (at + ahead < m_batch.size()) m_batch.prefetchNet(at + ahead);
  for (std::size_t step = 0; step < ModuleRegistry::steps; ++step) {
    const std::size_t line = at + (ModuleRegistry::steps - step) * ahead;
    if (line < m_batch.size() && m_batch.hashAt(line) != m_batch.hashAt(line - 1)) {
      m_state.modules[SYNTH].prefetch(m_batch.hashAt(line), step);
    }
  }
}

// Takes as many lines of one module as the row has room for.
std::size_t LocationMatch::takeRow(std::size_t at) {
  std::size_t count = 0;
  for (; count < m_row.size() && at + count < m_batch.size(); ++count) {
    Local& local = m_row[count];
    std::string_view net = m_batch.netOf(m_batch.sorted(at + count));
    if (!isClean(net)) net = local.clean = cleaned(net);
    const std::size_t last = net.rfind('/') + 1;
    const std::string_view levels = net.substr(0, last);
    if (m_levels.text != levels) {
      if (count > 0) break;
      m_levels = {};
      m_levels.text = levels;
      m_levels.isNormal = isNormal(levels);
    }
    askAhead(at + count);
    takeApart(net, last, local);
  }
  return count;
}

// Looks at the signals and bits that the lines most likely mean, so that the waits for their memory
// overlap.
void LocationMatch::lookAtRow(std::size_t count) {
  if (m_prefix[SYNTH].empty()) return;
  const SignalSearch::Path& path = pathOf(SYNTH);
  std::array<const BitRef*, std::tuple_size_v<decltype(m_row)>> refs{};
  for (std::size_t at = 0; at < count; ++at) {
    Local& local = m_row[at];
    local.normalised.reset();
    local.found = lookUp(SYNTH, path, local);
    const auto& [apart, whole, bus] = local.found;
    const Signal* signal = apart != nullptr ? apart : whole != nullptr ? whole : bus;
    const std::uint32_t index = signal != nullptr && signal == bus ? local.index : 0;
    if (signal == nullptr && m_levels.isNormal) {
      local.normalised = signal = findNormalised(SYNTH, local);
    }
    if (signal != nullptr) refs[at] = refAt(*signal, index);
    __builtin_prefetch(refs[at]);
  }
  for (std::size_t at = 0; at < count; ++at) {
    if (refs[at] != nullptr) static_cast<void>(refs[at]->getBit());
  }
}

LocationMatch::Outcome LocationMatch::recordAt(std::size_t at) {
  if (at + ahead < m_batch.size()) __builtin_prefetch(m_batch.line(at + ahead).bit, 1);
  const LocationBatch::Line& line = m_batch.line(at);
  if (line.bit == nullptr) {
    return line.claim.multiplexer ? Outcome::SkippedLatch : Outcome::Unmatched;
  }
  switch (m_claims.record(*line.bit, line.claim)) {
    case LocationClaims::Outcome::Used:
      return Outcome::Used;
    case LocationClaims::Outcome::Worse:
      return Outcome::SkippedLatch;
    case LocationClaims::Outcome::Disputed:
      break;
  }
  return Outcome::Unmatched;
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

const SignalSearch::Path& LocationMatch::pathOf(EdifView view) {
  std::optional<SignalSearch::Path>& path = m_levels.path.at(view);
  if (!path) path = pathBelow(view, m_levels.text);
  return *path;
}

SignalSearch::Path LocationMatch::pathBelow(EdifView view, std::string_view levels) {
  m_buffer = m_prefix.at(view);
  m_buffer += levels;
  m_buffer.pop_back();
  return m_search.path(view, m_buffer);
}

LocationMatch::Found LocationMatch::lookUp(EdifView view, const SignalSearch::Path& path,
                                           const Local& local) const {
  Found found;
  found.apart = m_search.find(view, path, local.apart);
  if (found.apart == nullptr) found.whole = m_search.find(view, path, local.whole);
  const bool wantsBus = local.isBit && found.apart == nullptr && found.whole == nullptr;
  if (wantsBus) found.bus = m_search.find(view, path, local.bus);
  return found;
}

// Tells whether a register drives a net of the name. All that the name may mean differs in the last
// level alone, so it is one module's.
bool LocationMatch::findExactly(EdifView view, const SignalSearch::Path& path, const Local& local,
                                const Found& found, Match& match) const {
  // A net that has the name of a register which is not on it is kept under a name of its own.
  match.isApart = found.apart != nullptr;
  if (match.isApart) return accept(*found.apart, 0, match);
  if (found.whole == nullptr) return found.bus != nullptr && accept(*found.bus, local.index, match);
  if (accept(*found.whole, 0, match)) return true;
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

LocationMatch::Match LocationMatch::find(EdifView view, const Local& local) {
  Match match;
  if (m_prefix.at(view).empty()) return match;
  const SignalSearch::Path& path = pathOf(view);
  match.faithful = findExactly(view, path, local,
                               view == SYNTH ? local.found : lookUp(view, path, local), match);
  if (match.faithful || match.isApart) return match;
  if (findChanged(view, local, match)) return match;
  // Netlists whose identifiers are the only names hold each bit as a signal of its own.
  const bool known = view == SYNTH && local.normalised;
  const Signal* signal = known ? *local.normalised : findNormalised(view, local);
  const BitRef* ref = signal == nullptr ? nullptr : refAt(*signal, 0);
  // Where names are printable, a register of the changed name is another one.
  const bool another = ref != nullptr && m_state.renamed.at(view) && RegisterTies::isTied(*ref);
  if (ref != nullptr && !another) accept(*signal, 0, match);
  return match;
}

// The changes that the levels may have gone through; nearly all modules are there under names that
// nothing has changed.
LevelChanges LocationMatch::changesOf(EdifView view) {
  const bool isThere =
      m_levels.isNormal && (m_levels.text.empty() || pathOf(view).module != nullptr);
  return LevelChanges(isThere ? std::string_view() : m_levels.text);
}

// The levels that are the next possible ones after so many others, or null.
const LocationMatch::Changed* LocationMatch::changedAt(EdifView view, std::size_t number) {
  std::optional<LevelChanges>& changes = m_levels.changes.at(view);
  std::vector<Changed>& known = m_levels.changed.at(view);
  if (!changes) changes = changesOf(view);
  while (number >= known.size() && changes->next()) {
    const auto& [name, joined] = changes->current();
    // What still is a module was not joined to the names below it.
    if (!joined.empty() && m_search.hasModule(view, m_prefix.at(view) + joined)) {
      changes = LevelChanges({});
      break;
    }
    const std::size_t last = name.rfind('/') + 1;
    Changed changed{pathBelow(view, name.substr(0, last)), name.substr(last), last == 0};
    if (m_search.leads(changed.path)) known.push_back(std::move(changed));
  }
  return number < known.size() ? &known[number] : nullptr;
}

// Looks for the register under the names that changes of its levels may have made.
bool LocationMatch::findChanged(EdifView view, const Local& local, Match& match) {
  for (std::size_t at = 0; const Changed* changed = changedAt(view, at); ++at) {
    const Local* meant = &local;
    if (!changed->beginning.empty()) {
      // A name is taken apart otherwise where nothing stands before it.
      m_buffer = changed->isTop ? "" : "/";
      const std::size_t last = m_buffer.size();
      m_buffer += changed->beginning;
      m_buffer += local.whole.text;
      takeApart(m_buffer, last, m_joined);
      meant = &m_joined;
    }
    const SignalSearch::Path& path = changed->path;
    if (findExactly(view, path, *meant, lookUp(view, path, *meant), match)) return true;
  }
  return false;
}

const Signal* LocationMatch::findNormalised(EdifView view, const Local& local) {
  if (m_levels.isNormal && isNormal(m_prefix.at(view))) {
    const SignalSearch::Path& path = pathOf(view);
    m_buffer = local.whole.text;
    normalise(m_buffer);
    return m_search.find(view, path, m_search.local(m_buffer));
  }
  m_buffer = m_prefix.at(view);
  m_buffer += m_levels.text;
  m_buffer += local.whole.text;
  normalise(m_buffer);
  return m_search.find(view, m_buffer);
}

LocationMatch::Match LocationMatch::find(const Local& local) {
  const Match match = find(SYNTH, local);
  if (match.bit != nullptr || match.foundOther) return match;
  return find(RTL, local);
}

}  // namespace XRF_RTL2LL
