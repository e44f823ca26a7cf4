#include <crossreference/LocationMatch.h>
#include <crossreference/Reading.h>
#include <crossreference/RegisterTies.h>

namespace XRF_RTL2LL {

namespace {

Bit* bitAt(const Signal& signal, std::uint32_t index) {
  if (index < signal.getLsb() || index > signal.getMsb()) return nullptr;
  const BitRef* ref = signal.getBitRef(index, true);
  return ref == nullptr ? nullptr : ref->getBit();
}

}  // namespace

// Looks for the register that drives a net of a name below the top; true when there is one.
bool LocationMatch::findExactly(std::string_view name, EdifView view, Match& match) const {
  const std::string top = "/" + std::string(m_state.top.at(view)->getName()) + "/";
  // A net that has the name of a register which is not on it is kept under a name of its own.
  const Signal* apart = m_state.signals.at(view).find(netApart(top + std::string(name)));
  match.isApart = apart != nullptr;
  if (match.isApart) return accept(*apart, 0, match);
  for (const NamedBits& reading : netReadings(name)) {
    const Signal* signal = m_state.signals.at(view).find(top + reading.signal);
    if (signal != nullptr && accept(*signal, reading.lsb, match)) return true;
  }
  return false;
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

LocationMatch::Match LocationMatch::find(std::string_view net, EdifView view) const {
  Match match;
  const Module* top = m_state.top.at(view);
  if (top == nullptr || top->getName() == nullptr) return match;
  const std::string name = cleaned(net);
  match.faithful = findExactly(name, view, match);
  if (match.faithful || match.isApart) return match;
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
  const BitRef* ref =
      signal == nullptr || signal->getLsb() > 0 ? nullptr : signal->getBitRef(0, true);
  // Where names are printable, a register of the changed name is another one.
  const bool another = ref != nullptr && m_state.renamed.at(view) && RegisterTies::isTied(*ref);
  if (ref != nullptr && !another) accept(*signal, 0, match);
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
