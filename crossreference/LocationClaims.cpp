#include <crossreference/LocationClaims.h>

#include <algorithm>

namespace XRF_RTL2LL {

std::uint8_t& LocationClaims::marksOf(const Bit& bit) {
  const std::size_t place = ModelState::placeOf(bit);
  if (place >= m_marks.size()) m_marks.resize(std::max(place + 1, m_model.bits.nextPlace()));
  return m_marks[place];
}

void LocationClaims::withdraw(const Bit& bit) {
  ++m_withdrawn;
  const auto repeated = m_repeated.find(&bit);
  if (repeated == m_repeated.end()) return;
  m_withdrawn += repeated->second;
  m_repeated.erase(repeated);
}

LocationClaims::Outcome LocationClaims::record(Bit& bit, const Claim& claim) {
  std::uint8_t& marks = marksOf(bit);
  const auto has = [&](Mark mark) { return (marks & mark) != 0; };
  if (has(Claimed)) {
    const bool differs = claim.faithful != has(Faithful);
    const bool better = differs ? claim.faithful : has(Multiplexer) && !claim.multiplexer;
    const bool worse = differs ? has(Faithful) : claim.multiplexer && !has(Multiplexer);
    if (worse) return Outcome::Worse;
    if (!better && !has(Disputed) && claim.location == StateLocation::of(bit)) {
      ++m_repeated[&bit];
      return Outcome::Used;
    }
    if (!has(Disputed)) withdraw(bit);
    if (!better) {
      marks |= Disputed;
      forgetLocation(bit);
      return Outcome::Disputed;
    }
  }
  marks = static_cast<std::uint8_t>(Claimed | (claim.faithful ? Faithful : 0) |
                                    (claim.multiplexer ? Multiplexer : 0));
  bit.setKind(Bit::STATE);
  bit.setStateLoc(claim.location.frame, claim.location.offset, claim.location.slr);
  return Outcome::Used;
}

}  // namespace XRF_RTL2LL
