#include <crossreference/XRF_RTL2LL.h>
#include <tools/xrf/ModuleWalk.h>
#include <tools/xrf/StrictTraps.h>

#include <string_view>

namespace xrf {

using XRF_RTL2LL::Module;
using XRF_RTL2LL::Signal;

namespace {

bool isBroken(const char* text) {
  const std::string_view name = text == nullptr ? "" : text;
  return name.empty() || name.find_first_of(" \t\n\v\f\r)") != std::string_view::npos;
}

std::string pathOf(const Module& module) { return module.getPath() + "/" + module.getName(); }

template <class Text>
void note(std::uint64_t& count, std::string& first, Text text) {
  if (count++ == 0) first = text();
}

}  // namespace

StrictTraps::StrictTraps(const XRF_RTL2LL::Netlist& netlist, bool showHidden) {
  const bool onlyVisible = !showHidden;
  const auto enter = [&](Module* module, std::size_t) {
    if (onlyVisible && module->isHidden()) return false;
    if (module->getSignals(onlyVisible).empty() && module->getChildren(onlyVisible).empty()) {
      note(closingModules, firstClosingModule, [&] { return pathOf(*module); });
    }
    if (isBroken(module->getName()) || isBroken(module->getDefName())) {
      note(brokenNames, firstBrokenName, [&] { return pathOf(*module); });
    }
    for (const Signal* signal : module->getSignals(onlyVisible)) {
      if (!isBroken(signal->getName())) continue;
      note(brokenNames, firstBrokenName, [&] { return signal->getFullName(); });
    }
    return true;
  };
  for (const auto view : {XRF_RTL2LL::RTL, XRF_RTL2LL::SYNTH}) {
    walkModules(netlist.getTop(view), enter, [](Module*, std::size_t) {});
  }
}

}  // namespace xrf
