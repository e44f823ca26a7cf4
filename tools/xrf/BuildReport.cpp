#include <tools/xrf/BuildReport.h>
#include <tools/xrf/Style.h>

#include <algorithm>
#include <fmt/format.h>

namespace xrf {

using XRF_RTL2LL::Coverage;
using XRF_RTL2LL::LocationReport;
using XRF_RTL2LL::LogReport;

namespace {

constexpr std::size_t namesInText = 5;

Json coverageJson(const std::optional<Coverage::Counts>& counts) {
  if (!counts) return nullptr;
  return {{"registers", counts->total()},
          {"located", counts->located},
          {"constant", counts->constant},
          {"unread", counts->unread},
          {"unknown", counts->unknown}};
}

std::string lineCounts(std::uint64_t lines, std::uint64_t used, std::uint64_t skipped,
                       std::uint64_t unmatched) {
  return fmt::format("{} line{}: {} used, {} skipped, {} unmatched", lines, lines == 1 ? "" : "s",
                     used, skipped, unmatched);
}

std::string unmatchedText(const std::vector<std::string>& names, std::uint64_t unmatched) {
  std::string text;
  for (std::size_t i = 0; i < names.size() && i < namesInText; ++i) {
    text += fmt::format("             unmatched: {}\n", printable(names[i]));
  }
  const std::size_t named = std::min(names.size(), namesInText);
  if (unmatched > named && named != 0) {
    text += fmt::format("             and {} more\n", unmatched - named);
  }
  return text;
}

void appendSkipped(std::string& text, std::uint64_t count, const char* where) {
  if (count != 0) text += fmt::format("             skipped: {} {}\n", count, where);
}

std::string locationsText(const LocationReport& report) {
  std::string text =
      lineCounts(report.lines, report.used, report.skipped(), report.unmatched) + "\n";
  appendSkipped(text, report.skippedBlocks, "at blocks that hold no register");
  appendSkipped(text, report.skippedLatches, "at latches that hold no register of their own");
  appendSkipped(text, report.skippedIndices, "of signals without a bit 0");
  return text + unmatchedText(report.unmatchedNames, report.unmatched);
}

std::string logText(const LogReport& report) {
  std::string text = lineCounts(report.lines, report.used, report.skipped, report.unmatched) + "\n";
  appendSkipped(text, report.skipped, "of signals without a bit 0");
  return text + unmatchedText(report.unmatchedNames, report.unmatched);
}

std::string coverageText(const std::optional<Coverage::Counts>& counts) {
  if (!counts) return "not known for a design loaded from a cross-reference file\n";
  const std::uint64_t known = counts->located + counts->constant;
  const double share = counts->total() == 0 ? 0.0
                                            : 100.0 * static_cast<double>(known) /
                                                  static_cast<double>(counts->total());
  return fmt::format(
      "{} bits in the RTL: {} located, {} constant, {} unread, {} unknown ({:.1f} % known)\n",
      counts->total(), counts->located, counts->constant, counts->unread, counts->unknown, share);
}

}  // namespace

Json buildJson(const BuildReport& report) {
  return {{"command", "build"},
          {"output", report.output},
          {"locations",
           {{"lines", report.locations.lines},
            {"used", report.locations.used},
            {"skipped", report.locations.skipped()},
            {"unmatched", report.locations.unmatched},
            {"unmatchedNames", report.locations.unmatchedNames}}},
          {"log",
           {{"lines", report.log.lines},
            {"used", report.log.used},
            {"skipped", report.log.skipped},
            {"unmatched", report.log.unmatched},
            {"unmatchedNames", report.log.unmatchedNames}}},
          {"views", viewsJson(report.views)},
          {"coverage", coverageJson(report.coverage)}};
}

std::string buildText(const BuildReport& report, bool colored) {
  std::string text = viewsText(report.views, nullptr, colored) + "\n";
  text += "locations    ";
  text += report.readLocations ? locationsText(report.locations) : "none given (--ll)\n";
  text += "log          ";
  text += report.readLog ? logText(report.log) : "none given (--log)\n";
  text += "registers    " + coverageText(report.coverage);
  return text + "wrote        " + printable(report.output) + "\n";
}

}  // namespace xrf
