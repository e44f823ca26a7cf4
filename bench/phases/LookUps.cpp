#include "LookUps.h"

#include <algorithm>

namespace phases {

using XRF_RTL2LL::Design;
using XRF_RTL2LL::EdifView;
using XRF_RTL2LL::Module;
using XRF_RTL2LL::Netlist;
using XRF_RTL2LL::Signal;

namespace {

// Signals are made module by module, so the last module's view mostly answers for the next signal.
class ViewOfSignal {
 public:
  explicit ViewOfSignal(const Netlist& netlist) : m_rtlTop(netlist.getTop(XRF_RTL2LL::RTL)) {}

  EdifView operator()(const Signal& signal) {
    if (signal.getModule() != m_module) {
      m_module = signal.getModule();
      const Module* above = m_module;
      while (above != nullptr && above != m_rtlTop) above = above->getParent();
      m_view = above != nullptr ? XRF_RTL2LL::RTL : XRF_RTL2LL::SYNTH;
    }
    return m_view;
  }

 private:
  const Module* m_rtlTop;
  const Module* m_module = nullptr;
  EdifView m_view = XRF_RTL2LL::RTL;
};

}  // namespace

std::vector<SignalName> pickNames(const Design& design, std::size_t count) {
  ViewOfSignal viewOf(*design.getNetlist());
  std::size_t total[2] = {0, 0};
  for (const Signal* signal : Signal::getAllSignals()) ++total[viewOf(*signal)];
  const std::size_t share = std::max<std::size_t>(count / 2, 1);
  std::size_t seen[2] = {0, 0};
  std::size_t picked[2] = {0, 0};
  std::vector<SignalName> names;
  for (const Signal* signal : Signal::getAllSignals()) {
    const EdifView view = viewOf(*signal);
    if (picked[view] < share && seen[view] * share >= picked[view] * total[view]) {
      names.push_back({view, signal->getFullName()});
      ++picked[view];
    }
    ++seen[view];
  }
  return names;
}

std::size_t findAll(const Design& design, const std::vector<SignalName>& names) {
  std::size_t found = 0;
  for (const SignalName& wanted : names) {
    if (design.findSignal(wanted.view, wanted.name) != nullptr) ++found;
  }
  return found;
}

}  // namespace phases
