#include <tools/xrf/InputCheck.h>
#include <tools/xrf/LoadedDesign.h>

namespace xrf {

void load(XRF_RTL2LL::Design& design, const std::string& path, Console& console) {
  requireReadable(path, FileKind::CrossReference);
  console.setCurrentInput(path);
  design.parse_xrf(path);
  console.setCurrentInput({});
  console.finish();
  const XRF_RTL2LL::Netlist& netlist = *design.getNetlist();
  if (netlist.getTop(XRF_RTL2LL::RTL) != nullptr) return;
  if (netlist.getTop(XRF_RTL2LL::SYNTH) != nullptr) return;
  throw Failure("holds no design; is it a cross-reference file?", path);
}

std::unique_ptr<XRF_RTL2LL::Design> loaded(const std::string& path, Session& session) {
  auto design = std::make_unique<XRF_RTL2LL::Design>(XRF_RTL2LL::Matching::Extended);
  design->setLimits(session.options.limits);
  load(*design, path, session.console);
  return design;
}

std::string_view viewName(XRF_RTL2LL::EdifView view) {
  return view == XRF_RTL2LL::RTL ? "rtl" : "synth";
}

}  // namespace xrf
