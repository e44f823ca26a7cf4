#include <crossreference/LocationMatch.h>
#include <crossreference/Reading.h>

namespace XRF_RTL2LL {

namespace {

Bit* bitAt(const Signal& signal, std::uint32_t index) {
  if (index < signal.getLsb() || index > signal.getMsb()) return nullptr;
  const BitRef* ref = signal.getBitRef(index, true);
  return ref == nullptr ? nullptr : ref->getBit();
}

}  // namespace

// Looks for the register that drives a net of a name below the top; true when the search is over.
bool LocationMatch::findExactly(std::string_view name, EdifView view, Match& match) const {
  const std::string top = "/" + std::string(m_state.top.at(view)->getName()) + "/";
  for (const NamedBits& reading : netReadings(name)) {
    const Signal* signal = m_state.signals.at(view).find(top + reading.signal);
    Bit* bit = signal == nullptr ? nullptr : bitAt(*signal, reading.lsb);
    if (bit == nullptr) continue;
    if (bit->isSrc()) {
      match.bit = bit;
      return true;
    }
    match.foundOther = true;
  }
  return false;
}

LocationMatch::Match LocationMatch::find(std::string_view net, EdifView view) const {
  Match match;
  const Module* top = m_state.top.at(view);
  if (top == nullptr || top->getName() == nullptr) return match;
  const std::string name = cleaned(net);
  match.faithful = findExactly(name, view, match);
  if (match.faithful) return match;
  const std::string prefix = "/" + std::string(top->getName()) + "/";
  for (const ChangedLevels& changed : changedLevels(name)) {
    // What still is a module was not joined to the names below it.
    const bool kept = !changed.joined.empty() &&
                      m_state.modules.at(view).find(prefix + changed.joined) != nullptr;
    if (kept) break;
    if (findExactly(changed.name, view, match)) return match;
  }
  // Netlists whose identifiers are the only names hold each bit as a signal of its own.
  const Signal* signal = m_state.signals.at(view).find(normalised(prefix + name));
  Bit* bit = signal == nullptr ? nullptr : bitAt(*signal, 0);
  if (bit != nullptr && bit->isSrc()) match.bit = bit;
  return match;
}

LocationMatch::Match LocationMatch::find(std::string_view net) const {
  Match match = find(net, SYNTH);
  if (match.bit != nullptr || match.foundOther) return match;
  return find(net, RTL);
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
