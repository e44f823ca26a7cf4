#include <tools/xrf/Doubts.h>
#include <tools/xrf/ModuleWalk.h>
#include <tools/xrf/Style.h>

#include <fmt/format.h>
#include <string_view>

namespace xrf {

using XRF_RTL2LL::Design;
using XRF_RTL2LL::Module;

namespace {

// Cells that only elaboration writes begin like this.
bool isElaborated(const Module& module) {
  const char* const cell = module.getDefName();
  return cell != nullptr && std::string_view(cell).starts_with("RTL_");
}

bool holdsElaboratedCells(Module* top) {
  bool found = false;
  walkModules(
      top,
      [&](Module* module, std::size_t) {
        found = found || isElaborated(*module);
        return !found;
      },
      [](Module*, std::size_t) {});
  return found;
}

bool isSwapped(const Design& design) {
  const XRF_RTL2LL::Netlist& netlist = *design.getNetlist();
  return !holdsElaboratedCells(netlist.getTop(XRF_RTL2LL::RTL)) &&
         holdsElaboratedCells(netlist.getTop(XRF_RTL2LL::SYNTH));
}

}  // namespace

std::vector<std::string> doubtsOf(const Design& design, const DeviceFiles& files) {
  std::vector<std::string> doubts;
  if (isSwapped(design)) {
    doubts.emplace_back(
        "the synthesized netlist holds cells of elaboration, and the elaborated one none; were the "
        "two swapped?");
  }
  if (files.matching == XRF_RTL2LL::Matching::Strict) return doubts;
  const XRF_RTL2LL::LocationReport& locations = design.locationReport();
  if (locations.unmatched != 0 && locations.used == 0) {
    doubts.push_back(
        printable(files.locations) +
        ": no line names a register of the synthesized netlist; is it of this design?");
  }
  const XRF_RTL2LL::LogReport& log = design.logReport();
  if (log.unmatched != 0 && log.used == 0) {
    doubts.push_back(printable(files.log) +
                     ": no line names a register of the netlists; is it of this design?");
  }
  return doubts;
}

}  // namespace xrf
