#include <tools/xrf/BuildReport.h>
#include <tools/xrf/CoverageReport.h>
#include <tools/xrf/Style.h>

#include <algorithm>
#include <fmt/format.h>

namespace xrf {

using XRF_RTL2LL::LocationReport;
using XRF_RTL2LL::LogReport;

namespace {

constexpr std::size_t namesInText = 5;

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
  if (report.suppressed) {
    text +=
        "             cut short by the tool's message limit: constants and merges may be missing\n";
  }
  return text + unmatchedText(report.unmatchedNames, report.unmatched);
}

std::string registersText(const std::optional<XRF_RTL2LL::Coverage>& coverage, bool colored) {
  if (coverage) return coverageText(*coverage, colored);
  return "registers    not known for a design loaded in strict reading\n";
}

}  // namespace

Json buildJson(const BuildReport& report) {
  return {{"command", "build"},
          {"output", report.output},
          {"locations",
           {{"lines", report.locations.lines},
            {"used", report.locations.used},
            {"skipped", report.locations.skipped()},
            {"skippedBlocks", report.locations.skippedBlocks},
            {"skippedLatches", report.locations.skippedLatches},
            {"skippedIndices", report.locations.skippedIndices},
            {"unmatched", report.locations.unmatched},
            {"unmatchedNames", report.locations.unmatchedNames}}},
          {"log",
           {{"lines", report.log.lines},
            {"used", report.log.used},
            {"skipped", report.log.skipped},
            {"unmatched", report.log.unmatched},
            {"unmatchedNames", report.log.unmatchedNames},
            {"suppressed", report.log.suppressed}}},
          {"views", viewsJson(report.views)},
          {"coverage", report.coverage ? coverageJson(*report.coverage) : Json()}};
}

std::string buildText(const BuildReport& report, bool colored) {
  std::string text = viewsText(report.views, nullptr, colored) + "\n";
  text += "locations    ";
  text += report.readLocations ? locationsText(report.locations) : "none given (--ll)\n";
  text += "log          ";
  text += report.readLog ? logText(report.log) : "none given (--log)\n";
  text += registersText(report.coverage, colored);
  return text + "\nwrote        " + printable(report.output) + "\n";
}

}  // namespace xrf
