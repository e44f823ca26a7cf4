#include <tools/xrf/CoverageReport.h>
#include <tools/xrf/Table.h>

#include <algorithm>
#include <fmt/format.h>

namespace xrf {

using XRF_RTL2LL::Coverage;

namespace {

using Counts = Coverage::Counts;

constexpr std::size_t modulesInText = 10;

Json countsJson(const Counts& counts) {
  return {{"registers", counts.total()}, {"located", counts.located}, {"constant", counts.constant},
          {"merged", counts.merged},     {"unread", counts.unread},   {"unknown", counts.unknown}};
}

std::uint64_t missing(const Counts& counts) { return counts.unread + counts.unknown; }

// Cut off, not rounded, so that only all of them are 100 %.
std::string share(const Counts& counts) {
  if (counts.total() == 0) return {};
  const std::uint64_t tenths = counts.known() * 1000 / counts.total();
  return fmt::format("{}.{} %", tenths / 10, tenths % 10);
}

std::string allText(const Counts& counts) {
  if (counts.total() == 0) return "registers    none in the RTL\n";
  std::string text = fmt::format("registers    {} bit{} in the RTL: {} known\n", counts.total(),
                                 counts.total() == 1 ? "" : "s", share(counts));
  const auto append = [&](std::uint64_t count, const char* what, const char* why) {
    text += fmt::format("             {:>10} {}{}\n", count, what, count == 0 ? "" : why);
  };
  append(counts.located, "located", "");
  append(counts.constant, "constant", ": turned into one by synthesis");
  append(counts.merged, "merged", ": share the place of an equal register");
  append(counts.unread, "not in the implementation", ": synthesis left no such register (UNREAD)");
  append(counts.unknown, "unknown", ": no location and no log line tells of them");
  return text;
}

std::vector<const Coverage::ModuleCounts*> worstFirst(const Coverage& coverage) {
  std::vector<const Coverage::ModuleCounts*> modules;
  for (const Coverage::ModuleCounts& module : coverage.modules) modules.push_back(&module);
  std::stable_sort(modules.begin(), modules.end(), [](const auto* a, const auto* b) {
    return missing(a->counts) > missing(b->counts);
  });
  return modules;
}

Table::Row moduleRow(const Coverage::ModuleCounts& module) {
  const Counts& counts = module.counts;
  Table::Row row{{printable(module.path)}};
  for (const std::uint64_t count : {counts.total(), counts.located, counts.constant, counts.merged,
                                    counts.unread, counts.unknown}) {
    row.push_back({std::to_string(count)});
  }
  row.push_back({share(counts), missing(counts) == 0 ? Color::Green : Color::Yellow});
  return row;
}

std::string restText(const std::vector<const Coverage::ModuleCounts*>& modules) {
  if (modules.size() <= modulesInText) return {};
  const std::size_t rest = modules.size() - modulesInText;
  std::uint64_t left = 0;
  for (std::size_t i = modulesInText; i < modules.size(); ++i) left += missing(modules[i]->counts);
  return fmt::format("and {} more module{}, {}\n", rest, rest == 1 ? "" : "s",
                     left == 0 ? "all known"
                               : fmt::format("{} bit{} of them not known (see --json)", left,
                                             left == 1 ? "" : "s"));
}

std::string modulesText(const Coverage& coverage, bool colored) {
  using enum Table::Align;
  Table table({{"MODULE", Left},
               {"REGISTERS", Right},
               {"LOCATED", Right},
               {"CONSTANT", Right},
               {"MERGED", Right},
               {"UNREAD", Right},
               {"UNKNOWN", Right},
               {"KNOWN", Right}},
              colored);
  const std::vector<const Coverage::ModuleCounts*> modules = worstFirst(coverage);
  std::vector<Table::Row> rows;
  for (std::size_t i = 0; i < modules.size() && i < modulesInText; ++i) {
    rows.push_back(moduleRow(*modules[i]));
  }
  return table.text(rows) + restText(modules);
}

}  // namespace

Json coverageJson(const Coverage& coverage) {
  Json json = countsJson(coverage.all);
  json["modules"] = Json::array();
  for (const Coverage::ModuleCounts& module : coverage.modules) {
    Json one{{"path", module.path}};
    one.update(countsJson(module.counts));
    json["modules"].push_back(std::move(one));
  }
  return json;
}

std::string coverageText(const Coverage& coverage, bool colored) {
  std::string text = allText(coverage.all);
  if (!coverage.modules.empty()) text += "\n" + modulesText(coverage, colored);
  return text;
}

}  // namespace xrf
