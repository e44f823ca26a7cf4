#include <crossreference/LocationMatch.h>
#include <crossreference/Reading.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>

#include <algorithm>

namespace XRF_RTL2LL {

LocationMatch::LocationMatch(const NetlistState& state, std::size_t lines)
    : m_state(state), m_search(state), m_claims(&m_memory) {
  // Whatever the file holds, there are no more than one for each bit.
  m_claims.reserve(std::min(lines, state.model.bits.size()));
  for (const EdifView view : {RTL, SYNTH}) {
    const Module* top = state.top.at(view);
    const bool named = top != nullptr && top->getName() != nullptr;
    if (named) m_prefix.at(view) = "/" + std::string(top->getName()) + "/";
  }
}

// Looks for the register that drives a net of a name below the top; true when there is one. All
// that the name may mean differs in the last level alone, so it is one module's.
bool LocationMatch::findExactly(std::string_view name, EdifView view, Match& match) {
  const std::size_t last = name.rfind('/') + 1;
  m_path = m_prefix.at(view);
  m_path += name.substr(0, last);
  m_path.pop_back();
  const auto find = [&](std::string_view local) { return m_search.find(view, m_path, local); };
  // A net that has the name of a register which is not on it is kept under a name of its own.
  m_local = name.substr(last);
  m_local += apartEnding;
  const Signal* apart = find(m_local);
  match.isApart = apart != nullptr;
  if (match.isApart) return accept(*apart, 0, match);
  const Signal* whole = find(name.substr(last));
  if (whole != nullptr && accept(*whole, 0, match)) return true;
  std::string_view plainBus;
  std::uint32_t index = 0;
  if (splitBit(name, plainBus, index)) {
    const Signal* bus = find(plainBus.substr(last));
    return bus != nullptr && accept(*bus, index, match);
  }
  const NamedBits bit = decodeBit(name);
  const Signal* bus = bit.valid ? find(std::string_view(bit.signal).substr(last)) : nullptr;
  return bus != nullptr && accept(*bus, bit.lsb, match);
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

LocationMatch::Match LocationMatch::find(std::string_view name, EdifView view) {
  Match match;
  const std::string& prefix = m_prefix.at(view);
  if (prefix.empty()) return match;
  match.faithful = findExactly(name, view, match);
  if (match.faithful || match.isApart) return match;
  // Nearly all modules are there under names that nothing has changed.
  const std::string_view levels = name.substr(0, name.rfind('/') + 1);
  const bool unchanged = isNormal(levels) && (levels.empty() || m_search.hasModule(view, m_path));
  if (!unchanged) findChanged(name, view, match);
  if (match.bit != nullptr) return match;
  // Netlists whose identifiers are the only names hold each bit as a signal of its own.
  const Signal* signal = m_search.find(view, normalised(prefix + std::string(name)));
  const BitRef* ref = signal == nullptr ? nullptr : refAt(*signal, 0);
  // Where names are printable, a register of the changed name is another one.
  const bool another = ref != nullptr && m_state.renamed.at(view) && RegisterTies::isTied(*ref);
  if (ref != nullptr && !another) accept(*signal, 0, match);
  return match;
}

// Looks for the register under the names that changes of its levels may have made.
void LocationMatch::findChanged(std::string_view name, EdifView view, Match& match) {
  for (LevelChanges changes(name); changes.next();) {
    const ChangedLevels& changed = changes.current();
    // What still is a module was not joined to the names below it.
    if (!changed.joined.empty() && m_search.hasModule(view, m_prefix.at(view) + changed.joined)) {
      return;
    }
    if (findExactly(changed.name, view, match)) return;
  }
}

LocationMatch::Match LocationMatch::find(std::string_view net) {
  const bool clean = isClean(net);
  if (!clean) m_clean = cleaned(net);
  const std::string_view name = clean ? net : std::string_view(m_clean);
  Match match = find(name, SYNTH);
  if (match.bit != nullptr || match.foundOther) return match;
  return find(name, RTL);
}

LocationMatch::Outcome LocationMatch::record(std::string_view net, const StateLocation& location,
                                             bool multiplexer) {
  const Match match = find(net);
  if (match.bit == nullptr) {
    return multiplexer ? Outcome::SkippedLatch : Outcome::Unmatched;
  }
  return claim(*match.bit, {location, match.faithful, multiplexer, false, 1});
}

LocationMatch::Outcome LocationMatch::claim(Bit& bit, const Claim& claim) {
  const auto [place, isNew] = m_claims.try_emplace(&bit, claim);
  Claim& known = place->second;
  if (!isNew) {
    const bool better =
        claim.faithful != known.faithful ? claim.faithful : known.multiplexer && !claim.multiplexer;
    const bool worse =
        claim.faithful != known.faithful ? known.faithful : claim.multiplexer && !known.multiplexer;
    if (worse) return Outcome::SkippedLatch;
    if (!better && !known.disputed && claim.location == known.location) {
      ++known.lines;
      return Outcome::Used;
    }
    m_withdrawn += known.disputed ? 0 : known.lines;
    known = claim;
    if (!better) {
      known.disputed = true;
      bit.setKind(Bit::UNKNOWN);
      bit.setStateLoc(0, 0, 0);
      return Outcome::Unmatched;
    }
  }
  bit.setKind(Bit::STATE);
  bit.setStateLoc(claim.location.frame, claim.location.offset, claim.location.slr);
  return Outcome::Used;
}

}  // namespace XRF_RTL2LL
