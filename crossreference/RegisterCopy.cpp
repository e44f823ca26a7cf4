#include <crossreference/RegisterCopy.h>
#include <crossreference/RegisterTies.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

bool isTied(const BitRef* ref) { return ref != nullptr && RegisterTies::isTied(*ref); }

// Calls `visit` with the references of both signals at each index that both have.
template <class Visit>
void eachCommon(const Signal& a, const Signal& b, Visit visit) {
  const std::uint64_t last = std::min(a.getMsb(), b.getMsb());
  for (std::uint64_t index = std::max(a.getLsb(), b.getLsb()); index <= last; ++index) {
    const BitRef* refA = a.getBitRef(static_cast<std::uint32_t>(index), true);
    const BitRef* refB = b.getBitRef(static_cast<std::uint32_t>(index), true);
    if (refA != nullptr && refB != nullptr) visit(*refA, *refB);
  }
}

bool isKnown(const Bit& bit) { return bit.getKind() == Bit::STATE || bit.getKind() == Bit::CNST; }

void take(Bit& to, const Bit& from) {
  to.setStateLoc(from.getStateLoc1(), from.getStateLoc2(), from.getStateLoc3());
  to.setKind(from.getKind());
  to.setValue(from.getValue());
  to.setValueStr("z");
}

void markUnreadBit(Bit& bit) {
  bit.setKind(Bit::UNREAD);
  bit.setValue(false);
  bit.setValueStr("z");
}

void sortByName(std::vector<Signal*>& signals) {
  std::sort(signals.begin(), signals.end(), [](const Signal* a, const Signal* b) {
    return NameKey::compare(NameKey(*a), NameKey(*b)) < 0;
  });
}

}  // namespace

void RegisterCopy::copy() {
  const auto isOpen = [&](const Bit& bit) {
    return bit.getKind() == Bit::UNKNOWN ||
           (bit.getKind() == Bit::UNREAD && m_state.reading.has(Rule::UnreadIsOpen));
  };
  for (const Signal* rtl : m_pairs.registers()) {
    const Signal* synth = m_pairs.twin(*rtl);
    if (synth == nullptr) continue;
    eachCommon(*rtl, *synth, [&](const BitRef& to, const BitRef& from) {
      if (!isTied(&to) || !isTied(&from)) return;
      if (isOpen(*to.getBit()) && isKnown(*from.getBit())) take(*to.getBit(), *from.getBit());
    });
  }
  for (const RegisterPairs::Unnamed& same : m_pairs.unnamed()) {
    if (same.synth == nullptr) continue;
    eachCommon(*same.rtl, *same.synth, [&](const BitRef& to, const BitRef& from) {
      if (isOpen(*to.getBit()) && isKnown(*from.getBit())) take(*to.getBit(), *from.getBit());
    });
  }
  std::vector<Signal*> named;
  const auto takes = [&](const BitRef& to, const BitRef& from) {
    return !to.getBit()->isSrc() && isOpen(*to.getBit()) && isKnown(*from.getBit());
  };
  m_state.signals[RTL].each([&](Signal* rtl) {
    const Signal* synth = m_pairs.namesake(*rtl);
    if (synth == nullptr) return;
    bool any = false;
    eachCommon(*rtl, *synth,
               [&](const BitRef& to, const BitRef& from) { any = any || takes(to, from); });
    if (any) named.push_back(rtl);
  });
  // One bit may have several names, and the first in byte order decides.
  sortByName(named);
  for (const Signal* rtl : named) {
    eachCommon(*rtl, *m_pairs.namesake(*rtl), [&](const BitRef& to, const BitRef& from) {
      if (takes(to, from)) take(*to.getBit(), *from.getBit());
    });
  }
}

void RegisterCopy::markUnread() {
  for (const Signal* rtl : m_pairs.registers()) {
    const Signal* synth = m_pairs.twin(*rtl);
    for (std::uint64_t at = rtl->getLsb(); at <= rtl->getMsb(); ++at) {
      const auto index = static_cast<std::uint32_t>(at);
      const BitRef* ref = rtl->getBitRef(index, true);
      if (!isTied(ref) || ref->getBit()->getKind() != Bit::UNKNOWN) continue;
      const bool both = synth != nullptr && index >= synth->getLsb() && index <= synth->getMsb() &&
                        isTied(synth->getBitRef(index, true));
      if (both) continue;
      markUnreadBit(*ref->getBit());
    }
  }
  for (const RegisterPairs::Unnamed& same : m_pairs.unnamed()) {
    if (same.synth != nullptr) continue;
    for (std::uint64_t index = same.rtl->getLsb(); index <= same.rtl->getMsb(); ++index) {
      const BitRef* ref = same.rtl->getBitRef(static_cast<std::uint32_t>(index), true);
      if (ref != nullptr && ref->getBit()->getKind() == Bit::UNKNOWN) markUnreadBit(*ref->getBit());
    }
  }
}

}  // namespace XRF_RTL2LL
