#include <crossreference/DesignState.h>
#include <crossreference/NetlistState.h>

#include <map>
#include <unordered_set>

namespace XRF_RTL2LL {

namespace {

void count(Coverage::Counts& counts, const Bit& bit) {
  switch (bit.getKind()) {
    case Bit::STATE:
      ++counts.located;
      break;
    case Bit::CNST:
      ++counts.constant;
      break;
    case Bit::UNREAD:
      ++counts.unread;
      break;
    case Bit::UNKNOWN:
      ++counts.unknown;
      break;
  }
}

}  // namespace

Coverage Design::coverage() const {
  const DesignUse use(m_state->model);
  const Netlist& netlist = *m_state->netlist;
  Coverage coverage;
  std::map<std::string, Coverage::Counts> modules;
  std::unordered_set<const Bit*> counted;
  for (const Signal* output : Signal::getAllSignals()) {
    if (!output->isSrcState() || netlist.findSignal(RTL, output->getFullName()) != output) continue;
    // A register's output lies in the register's cell, whose path is the module that holds it.
    Coverage::Counts& counts = modules[output->getModule()->getPath()];
    for (std::uint64_t index = output->getLsb(); index <= output->getMsb(); ++index) {
      const BitRef* ref = output->getBitRef(static_cast<std::uint32_t>(index), true);
      const Bit* bit = ref == nullptr ? nullptr : ref->getBit();
      if (bit == nullptr || !counted.insert(bit).second) continue;
      count(counts, *bit);
      count(coverage.all, *bit);
    }
  }
  for (const auto& [path, counts] : modules) coverage.modules.push_back({path, counts});
  return coverage;
}

}  // namespace XRF_RTL2LL
