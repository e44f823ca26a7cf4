#include <python/Reports.h>
#include <python/Text.h>

#include <fmt/format.h>

namespace xrf::python {

namespace py = pybind11;

using XRF_RTL2LL::Coverage;

namespace {

py::list listOf(const std::vector<std::string>& texts) {
  py::list made;
  for (const std::string& text : texts) made.append(toPython(text));
  return made;
}

void add(py::dict& made, const Coverage::Counts& counts) {
  made["registers"] = counts.total();
  made["located"] = counts.located;
  made["constant"] = counts.constant;
  made["merged"] = counts.merged;
  made["unread"] = counts.unread;
  made["unknown"] = counts.unknown;
}

}  // namespace

py::dict locationDict(const OpenDesign& design) {
  const XRF_RTL2LL::LocationReport& report = design.design().locationReport();
  py::dict made;
  made["lines"] = report.lines;
  made["used"] = report.used;
  made["skipped"] = report.skipped();
  made["skippedBlocks"] = report.skippedBlocks;
  made["skippedLatches"] = report.skippedLatches;
  made["skippedIndices"] = report.skippedIndices;
  made["unmatched"] = report.unmatched;
  made["unmatchedNames"] = listOf(report.unmatchedNames);
  return made;
}

py::dict logDict(const OpenDesign& design) {
  const XRF_RTL2LL::LogReport& report = design.design().logReport();
  py::dict made;
  made["lines"] = report.lines;
  made["used"] = report.used;
  made["skipped"] = report.skipped;
  made["unmatched"] = report.unmatched;
  made["unmatchedNames"] = listOf(report.unmatchedNames);
  made["suppressed"] = report.suppressed;
  return made;
}

py::dict coverageDict(const OpenDesign& design) {
  const Coverage coverage = design.design().coverage();
  py::list modules;
  for (const Coverage::ModuleCounts& module : coverage.modules) {
    py::dict row;
    row["path"] = toPython(module.path);
    add(row, module.counts);
    modules.append(std::move(row));
  }
  py::dict made;
  add(made, coverage.all);
  made["modules"] = std::move(modules);
  return made;
}

std::string coverageText(const OpenDesign& design) {
  const Coverage::Counts counts = design.design().coverage().all;
  return fmt::format("{} register bits, {} located, {} constant, {} merged, {} unread, {} unknown",
                     counts.total(), counts.located, counts.constant, counts.merged, counts.unread,
                     counts.unknown);
}

}  // namespace xrf::python
