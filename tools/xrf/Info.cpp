#include <crossreference/XRF_RTL2LL.h>
#include <tools/xrf/CoverageReport.h>
#include <tools/xrf/Csv.h>
#include <tools/xrf/LimitOptions.h>
#include <tools/xrf/LoadedDesign.h>
#include <tools/xrf/ModelCounts.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/Subcommands.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <memory>

namespace xrf {

namespace {

struct InfoReport {
  DesignCounts views;
  BitCounts all;
  std::size_t nets;
  XRF_RTL2LL::Coverage coverage;
};

void printJson(const std::string& file, const InfoReport& report) {
  const BitCounts& all = report.all;
  const Json document{{"command", "info"},
                      {"file", file},
                      {"views", viewsJson(report.views)},
                      {"bits",
                       {{"total", all.total()},
                        {"state", all.located},
                        {"constant", all.constant},
                        {"unread", all.unread},
                        {"unknown", all.unknown}}},
                      {"nets", report.nets},
                      {"coverage", coverageJson(report.coverage)}};
  printOut(jsonText(document) + "\n");
}

void printText(const InfoReport& report, bool colored) {
  const BitCounts& rtl = report.views.rtl.bits;
  const double share = rtl.total() == 0 ? 0.0
                                        : 100.0 * static_cast<double>(rtl.located) /
                                              static_cast<double>(rtl.total());
  printOut(viewsText(report.views, &report.all, colored));
  printOut(fmt::format("\n{} nets; {} of {} bits in the RTL located ({:.1f} %)\n\n", report.nets,
                       rtl.located, rtl.total(), share));
  printOut(coverageText(report.coverage, colored));
}

void printCsv(const InfoReport& report) {
  printOut(csvLine({"module", "registers", "located", "constant", "merged", "unread", "unknown"}));
  for (const auto& [path, counts] : report.coverage.modules) {
    std::vector<std::string> fields{path};
    for (const std::uint64_t count : {counts.total(), counts.located, counts.constant,
                                      counts.merged, counts.unread, counts.unknown}) {
      fields.push_back(std::to_string(count));
    }
    printOut(csvLine(fields));
  }
}

Status info(Session& session, const std::string& file) {
  const auto design = loaded(file, session);
  const InfoReport report{DesignCounts(*design->getNetlist()), countAllBits(),
                          XRF_RTL2LL::Net::getAllNets().size(), design->coverage()};
  if (session.options.json) {
    printJson(file, report);
  } else if (session.options.csv) {
    printCsv(report);
  } else {
    printText(report, session.colored());
  }
  return Status::Done;
}

const char* const infoFooter =
    "Bits are counted once per view, however many signals share them. A located bit has a frame\n"
    "address and an offset; an unread one is a register that was looked for in vain. What no\n"
    "register drives stays unknown, so a share of 100 % is not to be expected of bits; of the\n"
    "registers it is, where all files of the build were given.\n"
    "As comma-separated values: the registers of each module that holds any.\n"
    "Example:\n"
    "  xrf info top.xrf";

}  // namespace

void addInfo(CLI::App& app, Session& session) {
  CLI::App* subcommand = app.add_subcommand(
      "info", "Count what a cross-reference file holds, and how much is located");
  const auto file = std::make_shared<std::string>();
  subcommand->add_option("FILE", *file, "Cross-reference file (.xrf)")->required()->type_name("");
  addCommonOptions(*subcommand, session, infoFooter, Csv::Offered);
  addLimitOptions(*subcommand, session, Reads::CrossReference);
  subcommand->callback([&session, file] {
    session.action = [file](Session& current) { return info(current, *file); };
  });
}

}  // namespace xrf
