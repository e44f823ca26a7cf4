#include <crossreference/XRF_RTL2LL.h>
#include <tools/xrf/LoadedDesign.h>
#include <tools/xrf/ModelCounts.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/Subcommands.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <memory>

namespace xrf {

namespace {

void printJson(const std::string& file, const DesignCounts& counts, const BitCounts& all,
               std::size_t nets) {
  const Json document{{"command", "info"},
                      {"file", file},
                      {"views", viewsJson(counts)},
                      {"bits",
                       {{"total", all.total()},
                        {"state", all.located},
                        {"constant", all.constant},
                        {"unread", all.unread},
                        {"unknown", all.unknown}}},
                      {"nets", nets}};
  printOut(jsonText(document) + "\n");
}

void printText(const DesignCounts& counts, const BitCounts& all, std::size_t nets, bool colored) {
  const BitCounts& rtl = counts.rtl.bits;
  const double share = rtl.total() == 0 ? 0.0
                                        : 100.0 * static_cast<double>(rtl.located) /
                                              static_cast<double>(rtl.total());
  printOut(viewsText(counts, &all, colored));
  printOut(fmt::format("\n{} nets; {} of {} bits in the RTL located ({:.1f} %)\n", nets,
                       rtl.located, rtl.total(), share));
}

Status info(Session& session, const std::string& file) {
  XRF_RTL2LL::Design design;
  load(design, file, session.console);
  const DesignCounts counts(*design.getNetlist());
  const BitCounts all = countAllBits();
  const std::size_t nets = XRF_RTL2LL::Net::getAllNets().size();
  if (session.options.json) {
    printJson(file, counts, all, nets);
  } else {
    printText(counts, all, nets, session.colored());
  }
  return Status::Done;
}

const char* const footer =
    "Bits are counted once per view, however many signals share them. A located bit has a frame\n"
    "address and an offset; an unread one is a register that was looked for in vain. What no\n"
    "register drives stays unknown, so a share of 100 % is not to be expected.\n"
    "Example:\n"
    "  xrf info top.xrf";

}  // namespace

void addInfo(CLI::App& app, Session& session) {
  CLI::App* subcommand = app.add_subcommand(
      "info", "Count what a cross-reference file holds, and how much is located");
  const auto file = std::make_shared<std::string>();
  subcommand->add_option("FILE", *file, "Cross-reference file (.xrf)")->required()->type_name("");
  addCommonOptions(*subcommand, session, footer);
  subcommand->callback([&session, file] {
    session.action = [file](Session& current) { return info(current, *file); };
  });
}

}  // namespace xrf
