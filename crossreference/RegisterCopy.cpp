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

bool areElsewhere(const Bit& a, const Bit& b) {
  return a.getKind() == Bit::STATE && b.getKind() == Bit::STATE &&
         (a.getStateLoc1() != b.getStateLoc1() || a.getStateLoc2() != b.getStateLoc2() ||
          a.getStateLoc3() != b.getStateLoc3());
}

void markUnreadBit(Bit& bit) {
  bit.setKind(Bit::UNREAD);
  bit.setValue(false);
  bit.setValueStr("z");
}

}  // namespace

void RegisterCopy::copy() {
  copyRegisters();
  copyNames();
}

bool RegisterCopy::isOpen(const Bit& bit) const {
  return bit.getKind() == Bit::UNKNOWN ||
         (bit.getKind() == Bit::UNREAD && m_state.reading.has(Rule::UnreadIsOpen));
}

void RegisterCopy::copyRegisters() {
  std::vector<Bit*> contradicted;
  const auto takeOwn = [&](const BitRef& to, const BitRef& from) {
    Bit& bit = *to.getBit();
    if (!isKnown(*from.getBit())) return;
    if (isOpen(bit)) {
      take(bit, *from.getBit());
    } else if (areElsewhere(bit, *from.getBit())) {
      contradicted.push_back(&bit);
    }
  };
  for (const Signal* rtl : m_pairs.registers()) {
    const Signal* synth = m_pairs.twin(*rtl);
    if (synth == nullptr) continue;
    eachCommon(*rtl, *synth, [&](const BitRef& to, const BitRef& from) {
      if (isTied(&to) && isTied(&from)) takeOwn(to, from);
    });
  }
  for (const RegisterPairs::Unnamed& same : m_pairs.unnamed()) {
    if (same.synth != nullptr) eachCommon(*same.rtl, *same.synth, takeOwn);
  }
  // One bit of two registers that live in different places can show neither.
  for (Bit* bit : contradicted) {
    bit->setKind(Bit::UNKNOWN);
    bit->setStateLoc(0, 0, 0);
  }
}

// Whether a name is only a name: synthesis hands them on, so what a register drives, or what may
// mean two registers, takes nothing from a net that happens to be called like it.
bool RegisterCopy::isMereName(const BitRef& ref) {
  if (ref.getBit()->isSrc() || RegisterTies::isDisputed(ref)) return false;
  const Range<BitRef> refs = ref.getBit()->getBitRefs();
  return std::none_of(refs.begin(), refs.end(), [](const BitRef* other) {
    return other->getSignal()->isSrcState() || RegisterTies::isDisputed(*other);
  });
}

void RegisterCopy::copyNames() {
  // A file without register cells does not tell which names are registers.
  if (m_state.loaded && m_pairs.registers().empty() && m_pairs.unnamed().empty()) return;
  const auto takes = [](const BitRef& to, const BitRef& from) {
    // Only registers are ever unread, so what is unread is none of these.
    return to.getBit()->getKind() == Bit::UNKNOWN && isKnown(*from.getBit()) && isMereName(to);
  };
  std::vector<Signal*> named;
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
    // A register that was not told from another may well be there.
    if (m_pairs.isDisputed(*rtl)) continue;
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
