#include <crossreference/RegisterCopy.h>
#include <crossreference/RegisterTies.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

bool isTied(const BitRef* ref) { return ref != nullptr && RegisterTies::isTied(*ref); }

bool holdsRegisters(const Signal& signal) {
  for (std::uint64_t index = signal.getLsb(); index <= signal.getMsb(); ++index) {
    if (isTied(signal.getBitRef(static_cast<std::uint32_t>(index), true))) return true;
  }
  return false;
}

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

std::string flattened(std::string name) {
  std::replace(name.begin(), name.end(), '/', '_');
  return normalised(std::move(name));
}

void sortByName(std::vector<Signal*>& signals) {
  std::sort(signals.begin(), signals.end(), [](const Signal* a, const Signal* b) {
    return NameKey::compare(NameKey(*a), NameKey(*b)) < 0;
  });
}

}  // namespace

RegisterCopy::RegisterCopy(NetlistState& state) : m_state(state) {
  m_state.signals[RTL].each([&](Signal* signal) {
    if (holdsRegisters(*signal)) m_registers.push_back(signal);
  });
  sortByName(m_registers);
  matchFlattened();
  matchUnnamed();
}

std::string RegisterCopy::belowTop(const std::string& name, EdifView view) const {
  const Module* top = m_state.top.at(view);
  const std::string prefix = top == nullptr ? "/" : NameKey(*top).compose() + "/";
  return name.compare(0, prefix.size(), prefix) == 0 ? name.substr(prefix.size()) : name;
}

// The full name that an object of the RTL view has in the synthesized view.
std::string RegisterCopy::twinName(const std::string& rtl) const {
  std::string name = NameKey(*m_state.top[SYNTH]).compose();
  name += '/';
  return name += belowTop(rtl, RTL);
}

Signal* RegisterCopy::namesake(const Signal& rtl) const {
  const Module* rtlTop = m_state.top[RTL];
  const Module* synthTop = m_state.top[SYNTH];
  if (rtlTop == nullptr || synthTop == nullptr) return nullptr;
  if (NameKey::compare(NameKey(*rtlTop), NameKey(*synthTop)) == 0) {
    return m_state.signals[SYNTH].find(NameKey(rtl));
  }
  return m_state.signals[SYNTH].find(twinName(rtl.getFullName()));
}

// An instance name such as count_reg_3_ tells no bit, but the same instance in both views is the
// same register.
void RegisterCopy::matchUnnamed() {
  if (m_state.top[RTL] == nullptr || m_state.top[SYNTH] == nullptr) return;
  m_state.modules[RTL].each([&](const Module* module) {
    if (module->getName() == nullptr || !RegisterTies::isRegister(m_state, *module)) return;
    const Signal* output = RegisterTies::outputOf(*module);
    if (output == nullptr || decodeRegister(module->getName()).valid) return;
    const Module* synth = m_state.modules[SYNTH].find(twinName(NameKey(*module).compose()));
    const bool both = synth != nullptr && RegisterTies::isRegister(m_state, *synth);
    m_unnamed.push_back({output, both ? RegisterTies::outputOf(*synth) : nullptr});
  });
}

// Where the hierarchy was flattened with "_", a register is found by its name with all levels
// joined, if that can mean only one register on either side.
void RegisterCopy::matchFlattened() {
  std::unordered_map<std::string, std::vector<Signal*>> missing;
  std::unordered_map<const Signal*, bool> taken;
  for (Signal* rtl : m_registers) {
    Signal* same = namesake(*rtl);
    if (same != nullptr && holdsRegisters(*same)) {
      taken[same] = true;
    } else {
      missing[flattened(belowTop(rtl->getFullName(), RTL))].push_back(rtl);
    }
  }
  if (missing.empty()) return;
  // A register that has its twin may be what a flattened one is called now.
  for (const Signal* rtl : m_registers) {
    const std::string name = flattened(belowTop(rtl->getFullName(), RTL));
    const auto found = missing.find(name);
    if (found == missing.end()) continue;
    const bool other = found->second.size() > 1 || found->second.front() != rtl;
    if (other) m_disputed.insert(rtl);
  }
  std::unordered_map<std::string, std::vector<Signal*>> left;
  m_state.signals[SYNTH].each([&](Signal* synth) {
    if (taken.count(synth) != 0 || !holdsRegisters(*synth)) return;
    left[flattened(belowTop(synth->getFullName(), SYNTH))].push_back(synth);
  });
  for (const auto& [name, signals] : missing) {
    const auto found = left.find(name);
    if (found == left.end() || signals.size() != 1 || found->second.size() != 1) continue;
    m_flattened[signals.front()] = found->second.front();
  }
}

Signal* RegisterCopy::twin(const Signal& rtl) const {
  if (m_disputed.count(&rtl) != 0) return nullptr;
  const auto found = m_flattened.find(&rtl);
  return found != m_flattened.end() ? found->second : namesake(rtl);
}

void RegisterCopy::copy() {
  const auto isOpen = [&](const Bit& bit) {
    return bit.getKind() == Bit::UNKNOWN ||
           (bit.getKind() == Bit::UNREAD && m_state.reading.has(Rule::UnreadIsOpen));
  };
  for (const Signal* rtl : m_registers) {
    const Signal* synth = twin(*rtl);
    if (synth == nullptr) continue;
    eachCommon(*rtl, *synth, [&](const BitRef& to, const BitRef& from) {
      if (!isTied(&to) || !isTied(&from)) return;
      if (isOpen(*to.getBit()) && isKnown(*from.getBit())) take(*to.getBit(), *from.getBit());
    });
  }
  for (const Unnamed& same : m_unnamed) {
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
    const Signal* synth = namesake(*rtl);
    if (synth == nullptr) return;
    bool any = false;
    eachCommon(*rtl, *synth,
               [&](const BitRef& to, const BitRef& from) { any = any || takes(to, from); });
    if (any) named.push_back(rtl);
  });
  // One bit may have several names, and the first in byte order decides.
  sortByName(named);
  for (const Signal* rtl : named) {
    eachCommon(*rtl, *namesake(*rtl), [&](const BitRef& to, const BitRef& from) {
      if (takes(to, from)) take(*to.getBit(), *from.getBit());
    });
  }
}

void RegisterCopy::markUnread() {
  for (const Signal* rtl : m_registers) {
    const Signal* synth = twin(*rtl);
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
  for (const Unnamed& same : m_unnamed) {
    if (same.synth != nullptr) continue;
    for (std::uint64_t index = same.rtl->getLsb(); index <= same.rtl->getMsb(); ++index) {
      const BitRef* ref = same.rtl->getBitRef(static_cast<std::uint32_t>(index), true);
      if (ref != nullptr && ref->getBit()->getKind() == Bit::UNKNOWN) markUnreadBit(*ref->getBit());
    }
  }
}

}  // namespace XRF_RTL2LL
