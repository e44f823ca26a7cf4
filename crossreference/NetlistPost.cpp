#include <crossreference/NetGrouping.h>
#include <crossreference/NetlistState.h>
#include <crossreference/RegisterCopy.h>
#include <support/Report.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

// A buffer's output is its input by another name.
void mergeBuffer(Module& buffer) {
  Signal* output = nullptr;
  Signal* input = nullptr;
  for (Signal* signal : buffer.getSignals(false)) {
    if (signal->getKind() == OUT) output = signal;
    if (signal->getKind() == IN) input = signal;
  }
  if (output == nullptr || input == nullptr || !input->merge(output, 0)) return;
  message(StandardError, "BUF: %s -> %s\n", input->getFullName().c_str(),
          output->getFullName().c_str());
}

bool sameRange(const Signal& a, const Signal& b) {
  return a.getLsb() == b.getLsb() && a.getMsb() == b.getMsb() && a.getLsb() <= a.getMsb();
}

// Calls `visit` with the RTL and the synthesized bit of each index that has both.
template <class Visit>
void eachPair(const Signal& rtl, const Signal& synth, Visit visit) {
  for (std::uint64_t index = rtl.getLsb(); index <= rtl.getMsb(); ++index) {
    const BitRef* to = rtl.getBitRef(static_cast<std::uint32_t>(index), true);
    const BitRef* from = synth.getBitRef(static_cast<std::uint32_t>(index), true);
    Bit* target = to == nullptr ? nullptr : to->getBit();
    const Bit* source = from == nullptr ? nullptr : from->getBit();
    if (target != nullptr && source != nullptr) visit(*target, *source);
  }
}

bool copies(const Bit& rtl, const Bit& synth) {
  return rtl.getKind() == Bit::UNKNOWN && synth.getKind() != Bit::UNKNOWN;
}

void copyKnown(const Signal& rtl, const Signal& synth) {
  eachPair(rtl, synth, [](Bit& to, const Bit& from) {
    if (!copies(to, from)) return;
    to.setStateLoc(from.getStateLoc1(), from.getStateLoc2(), from.getStateLoc3());
    to.setKind(from.getKind());
    to.setValue(from.getValue());
    to.setValueStr("z");
  });
}

template <class Visit>
void eachUnknownBit(const Signal& signal, Visit visit) {
  for (std::uint64_t index = signal.getLsb(); index <= signal.getMsb(); ++index) {
    const BitRef* ref = signal.getBitRef(static_cast<std::uint32_t>(index), true);
    Bit* bit = ref == nullptr ? nullptr : ref->getBit();
    if (bit != nullptr && bit->getKind() == Bit::UNKNOWN) visit(*bit);
  }
}

void markUnread(const Signal& signal) {
  eachUnknownBit(signal, [](Bit& bit) {
    bit.setKind(Bit::UNREAD);
    bit.setValue(false);
    bit.setValueStr("z");
  });
}

// Whether the final copy can change anything for a signal, judged before it starts: what it does to
// one signal only ever leaves less to do for the others, unless the views share bits.
bool isAffected(const Signal& rtl, const Signal* synth, bool sharesBits) {
  bool affected = false;
  if (synth == nullptr) {
    if (rtl.isSrcState()) eachUnknownBit(rtl, [&](const Bit&) { affected = true; });
  } else if (sameRange(rtl, *synth)) {
    eachPair(rtl, *synth, [&](const Bit& to, const Bit& from) {
      affected = affected || copies(to, from) || (sharesBits && to.getKind() == Bit::UNKNOWN);
    });
  }
  return affected;
}

}  // namespace

void Netlist::postProcess(EdifView view) {
  const StateScope scope(m_state->model);
  std::vector<Module*> buffers;
  m_state->modules.at(view).each([&](Module* module) {
    module->updateVisibleChildren(false);
    module->updateVisibleSignals(false);
    if (module->getKind() == BUF) buffers.push_back(module);
  });
  if (const Module* top = getTop(view); top != nullptr) ModelState::settleTree(*top);
  sortByName(buffers);
  for (Module* buffer : buffers) mergeBuffer(*buffer);
  m_state->model.bits.compact();
  NetGrouping(m_state->model).run();
  m_state->model.renumberBits();
}

void Netlist::finalPostProcess() {
  const StateScope scope(m_state->model);
  if (m_state->reading.has(Rule::RegisterCopy)) {
    RegisterCopy registers(*m_state);
    registers.copy();
    registers.markUnread();
    return;
  }
  const SignalRegistry& synthesized = m_state->signals[SYNTH];
  // One RTL bit may have several names, and the first name in byte order decides what it becomes.
  std::vector<Signal*> affected;
  m_state->signals[RTL].each([&](Signal* rtl) {
    if (isAffected(*rtl, synthesized.find(NameKey(*rtl)), m_state->loaded)) affected.push_back(rtl);
  });
  sortByName(affected);
  for (const Signal* rtl : affected) {
    const Signal* synth = synthesized.find(NameKey(*rtl));
    if (synth == nullptr) {
      markUnread(*rtl);
    } else {
      copyKnown(*rtl, *synth);
    }
  }
}

}  // namespace XRF_RTL2LL
