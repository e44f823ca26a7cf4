#include <crossreference/Namesakes.h>
#include <crossreference/RegisterCopy.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>
#include <crossreference/StateLocation.h>

#include <algorithm>
#include <array>
#include <functional>
#include <span>
#include <utility>

namespace XRF_RTL2LL {

namespace {

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

bool hasUnknown(const Signal& signal) {
  bool any = false;
  eachRef(signal, [&](const BitRef& ref) {
    const Bit* bit = ref.getBit();
    any = any || (bit != nullptr && bit->getKind() == Bit::UNKNOWN);
  });
  return any;
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
         StateLocation::of(a) != StateLocation::of(b);
}

// Pairs in name order are all over memory, so those to come are looked at together.
void touchAhead(std::span<const RegisterPairs::Pair> pairs, std::size_t at) {
  if (at % mostTouched != 0) return;
  const auto touch = [ahead = pairs.subspan(at, std::min(mostTouched, pairs.size() - at))](
                         Signal* RegisterPairs::Pair::*member) {
    std::array<const Signal*, mostTouched> signals{};
    std::transform(ahead.begin(), ahead.end(), signals.begin(),
                   [&](const RegisterPairs::Pair& pair) { return pair.*member; });
    touchBits(signals);
  };
  touch(&RegisterPairs::Pair::rtl);
  touch(&RegisterPairs::Pair::synth);
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
  const std::vector<RegisterPairs::Pair>& pairs = m_pairs->registers();
  for (std::size_t at = 0; at < pairs.size(); ++at) {
    touchAhead(pairs, at);
    const RegisterPairs::Pair& pair = pairs[at];
    if (pair.synth == nullptr) continue;
    eachCommon(*pair.rtl, *pair.synth, [&](const BitRef& to, const BitRef& from) {
      if (RegisterTies::isTied(to) && RegisterTies::isTied(from)) takeOwn(to, from);
    });
  }
  for (const RegisterPairs::Unnamed& same : m_pairs->unnamed()) {
    if (same.synth != nullptr) eachCommon(*same.rtl, *same.synth, takeOwn);
  }
  // One bit of two registers that live in different places can show neither.
  for (Bit* bit : contradicted) forgetLocation(*bit);
}

// Whether a bit has mere names: synthesis hands them on, so what a register drives, or what may
// mean two registers, takes nothing from a net that happens to be called like it.
bool RegisterCopy::isMere(const Bit& bit) {
  constexpr std::size_t few = 8;
  const Range<BitRef> refs = bit.getBitRefs();
  const auto isName = [](const BitRef* ref) {
    return !ref->getSignal()->isSrcState() && !RegisterTies::isDisputed(*ref);
  };
  if (refs.size() <= few) return std::all_of(refs.begin(), refs.end(), isName);
  const auto [known, isNew] = m_mere.try_emplace(&bit);
  if (isNew) known->second = std::all_of(refs.begin(), refs.end(), isName);
  return known->second;
}

// Only registers are ever unread, so what is unread takes nothing.
bool RegisterCopy::takesName(const BitRef& to, const BitRef& from) {
  const Bit& bit = *to.getBit();
  return bit.getKind() == Bit::UNKNOWN && isKnown(*from.getBit()) && !bit.isSrc() &&
         !RegisterTies::isDisputed(to) && isMere(bit);
}

void RegisterCopy::copyNames() {
  // A file without register cells does not tell which names are registers.
  if (m_state.loaded && m_pairs->registers().empty() && m_pairs->unnamed().empty()) return;
  // Where the views share bits, what one name shows can be what another one takes.
  const bool mayShareBits = m_state.loaded;
  std::vector<Name> names;
  Namesakes(m_state).eachPair(hasUnknown, [&](const Signal& rtl, const Signal& synth) {
    bool any = false;
    eachCommon(rtl, synth,
               [&](const BitRef& to, const BitRef& from) { any = any || takesName(to, from); });
    if (!any) return;
    eachCommon(rtl, synth, [&](const BitRef& to, const BitRef& from) {
      if (mayShareBits || takesName(to, from)) names.push_back({to.getBit(), &to, &from});
    });
  });
  // One bit may have several names, and the first in byte order decides.
  if (mayShareBits) {
    sortBySignal(names);
  } else {
    keepFirst(names);
  }
  for (const Name& name : names) {
    if (takesName(*name.to, *name.from)) take(*name.to->getBit(), *name.from->getBit());
  }
}

bool RegisterCopy::comesFirst(const Name& a, const Name& b) {
  const Signal& signalA = *a.to->getSignal();
  const Signal& signalB = *b.to->getSignal();
  return &signalA != &signalB && NameKey::compare(NameKey(signalA), NameKey(signalB)) < 0;
}

// Names of one signal stand side by side, so that each signal is compared once, not each of its
// bits.
void RegisterCopy::sortBySignal(std::vector<Name>& names) {
  std::vector<std::span<const Name>> signals;
  for (auto name = names.begin(); name != names.end();) {
    const Signal* signal = name->to->getSignal();
    const auto last = std::find_if(
        name, names.end(), [signal](const Name& other) { return other.to->getSignal() != signal; });
    signals.emplace_back(name, last);
    name = last;
  }
  std::stable_sort(signals.begin(), signals.end(),
                   [](const auto& a, const auto& b) { return comesFirst(a.front(), b.front()); });
  std::vector<Name> sorted;
  sorted.reserve(names.size());
  for (const auto& signal : signals) sorted.insert(sorted.end(), signal.begin(), signal.end());
  names = std::move(sorted);
}

// Leaves one name of each bit. Almost all bits have just one, and comparing names takes long. Each
// bit takes from one of the other view, so they may come in any order, be it that of their
// addresses.
void RegisterCopy::keepFirst(std::vector<Name>& names) {
  std::stable_sort(names.begin(), names.end(),
                   [](const Name& a, const Name& b) { return std::less<>()(a.bit, b.bit); });
  auto kept = names.begin();
  for (auto name = names.begin(); name != names.end();) {
    const auto last =
        std::find_if(name, names.end(), [&](const Name& other) { return other.bit != name->bit; });
    *kept++ = *std::min_element(name, last, comesFirst);
    name = last;
  }
  names.erase(kept, names.end());
}

void RegisterCopy::markUnread() {
  for (const RegisterPairs::Pair& pair : m_pairs->registers()) {
    // A register that was not told from another may well be there.
    if (pair.disputed) continue;
    eachRef(*pair.rtl, [&](const BitRef& ref) {
      if (!RegisterTies::isTied(ref) || ref.getBit()->getKind() != Bit::UNKNOWN) return;
      const bool both =
          pair.synth != nullptr && RegisterTies::isTied(refAt(*pair.synth, ref.getIndex()));
      if (!both) markUnreadBit(*ref.getBit());
    });
  }
  for (const RegisterPairs::Unnamed& same : m_pairs->unnamed()) {
    if (same.synth != nullptr) continue;
    eachRef(*same.rtl, [](const BitRef& ref) {
      if (ref.getBit()->getKind() == Bit::UNKNOWN) markUnreadBit(*ref.getBit());
    });
  }
}

}  // namespace XRF_RTL2LL
