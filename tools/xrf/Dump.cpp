#include <crossreference/XRF_RTL2LL.h>
#include <tools/xrf/Json.h>
#include <tools/xrf/LimitOptions.h>
#include <tools/xrf/LoadedDesign.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/Subcommands.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <sstream>

namespace xrf {

namespace {

// The model prints hidden objects only while told so.
class HiddenShown {
 public:
  HiddenShown() : m_before(XRF_RTL2LL::Module::getShowHidden()) {
    XRF_RTL2LL::Module::setShowHidden(true);
  }
  ~HiddenShown() { XRF_RTL2LL::Module::setShowHidden(m_before); }
  HiddenShown(const HiddenShown&) = delete;
  HiddenShown& operator=(const HiddenShown&) = delete;

 private:
  bool m_before;
};

void writeView(std::ostream& out, const char* title, XRF_RTL2LL::Module* top) {
  out << "\n(VIEW " << title << ")\n";
  if (top != nullptr) out << "\n" << top << "\n";
}

void writeModel(std::ostream& out, const XRF_RTL2LL::Netlist& netlist) {
  const HiddenShown shown;
  for (XRF_RTL2LL::Bit* bit : XRF_RTL2LL::Bit::getAllBits()) out << bit << "\n";
  writeView(out, "RTL", netlist.getTop(XRF_RTL2LL::RTL));
  writeView(out, "SYNTH", netlist.getTop(XRF_RTL2LL::SYNTH));
}

Status dump(Session& session, const std::string& file) {
  const auto design = loaded(file, session);
  if (session.options.json) {
    std::ostringstream text;
    writeModel(text, *design->getNetlist());
    const Json document{{"command", "dump"}, {"file", file}, {"text", text.str()}};
    printOut(jsonText(document) + "\n");
  } else {
    StandardOutputBuffer buffer;
    std::ostream out(&buffer);
    writeModel(out, *design->getNetlist());
  }
  return Status::Done;
}

const char* const dumpFooter =
    "Prints one record per bit, then the module tree of each view, hidden cells and signals\n"
    "included. Meant for reading; xrf build --xrf writes a file that reads back.\n"
    "With --json the records are one text: {\"command\":\"dump\",\"file\":...,\"text\":...}.\n"
    "Example:\n"
    "  xrf dump top.xrf | less";

}  // namespace

void addDump(CLI::App& app, Session& session) {
  CLI::App* subcommand = app.add_subcommand("dump", "Print the whole model as text");
  const auto file = std::make_shared<std::string>();
  subcommand->add_option("FILE", *file, "Cross-reference file (.xrf)")->required()->type_name("");
  addCommonOptions(*subcommand, session, dumpFooter);
  addLimitOptions(*subcommand, session, Reads::CrossReference);
  subcommand->callback([&session, file] {
    session.action = [file](Session& current) { return dump(current, *file); };
  });
}

}  // namespace xrf
