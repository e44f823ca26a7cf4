#include <tools/xrf/BitColumns.h>
#include <tools/xrf/Csv.h>
#include <tools/xrf/LimitOptions.h>
#include <tools/xrf/LoadedDesign.h>
#include <tools/xrf/NameList.h>
#include <tools/xrf/Search.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/Subcommands.h>
#include <tools/xrf/Suggestions.h>
#include <tools/xrf/ViewOption.h>
#include <tools/xrf/Words.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <map>
#include <memory>

namespace xrf {

using XRF_RTL2LL::Bit;
using XRF_RTL2LL::BitRef;
using XRF_RTL2LL::Signal;

namespace {

struct FindOptions {
  std::string file;
  std::vector<std::string> names;
  std::optional<XRF_RTL2LL::EdifView> view;
  bool hidden = false;
  bool regex = false;
  bool located = false;
  bool unlocated = false;

  bool filters() const { return located || unlocated; }
};

// The bit of an index, or null for an index that has none.
const Bit* bitAt(const Signal& signal, unsigned index) {
  const BitRef* ref = signal.getBitRef(index, true);
  return ref == nullptr ? nullptr : ref->getBit();
}

template <class Visit>
void eachIndex(const SignalHit& hit, Visit visit) {
  for (std::uint64_t i = std::uint64_t{hit.msb} + 1; i > hit.lsb; --i) {
    visit(static_cast<unsigned>(i - 1));
  }
}

Json bitJson(unsigned index, const Bit* bit) {
  Json json{{"index", index}};
  if (bit == nullptr) return json;
  json["id"] = bit->getId();
  addBit(json, *bit);
  return json;
}

Json signalJson(const SignalHit& hit) {
  const Signal& signal = *hit.signal;
  return {{"view", viewName(hit.view)},
          {"name", signal.getFullName()},
          {"direction", directionName(signal.getKind())},
          {"lsb", signal.getLsb()},
          {"msb", signal.getMsb()},
          {"bits", Json::array()}};
}

// Whether a bit is to be shown.
bool passes(const FindOptions& options, const Signal& signal, unsigned index) {
  const Bit* bit = bitAt(signal, index);
  const bool isLocated = bit != nullptr && bit->getKind() == Bit::STATE;
  return isLocated ? !options.unlocated : !options.located;
}

// The hits cut down to the bits that the options let pass; modules have no place.
void filter(SearchResult& result, const FindOptions& options) {
  result.modules.clear();
  std::vector<SignalHit> kept;
  for (const SignalHit& hit : result.signals) {
    bool continues = false;
    eachIndex(hit, [&](unsigned index) {
      const bool shown = passes(options, *hit.signal, index);
      if (shown && continues) {
        kept.back().lsb = index;
      } else if (shown) {
        kept.push_back({hit.view, hit.signal, index, index});
      }
      continues = shown;
    });
  }
  result.signals = std::move(kept);
}

// Written signal by signal: the document of a million matches must not be held in memory.
void printJson(const std::string& file, const SearchResult& result,
               const std::map<std::string, std::vector<std::string>>& suggestions) {
  printOut("{\"command\":\"find\",\"file\":" + jsonText(file) + ",\"signals\":[");
  for (std::size_t i = 0; i < result.signals.size();) {
    const SignalHit& first = result.signals[i];
    const bool leading = i == 0;
    Json json = signalJson(first);
    for (; i < result.signals.size() && result.signals[i].signal == first.signal; ++i) {
      eachIndex(result.signals[i], [&](unsigned index) {
        json["bits"].push_back(bitJson(index, bitAt(*first.signal, index)));
      });
    }
    printOut((leading ? "" : ",") + jsonText(json));
  }
  Json modules = Json::array();
  for (const ModuleHit& hit : result.modules) {
    modules.push_back({{"view", viewName(hit.view)},
                       {"name", fullName(*hit.module)},
                       {"definition", hit.module->getDefName()},
                       {"hidden", hit.module->isHidden()}});
  }
  printOut("],\"modules\":" + jsonText(modules) + ",\"notFound\":" + jsonText(result.notFound) +
           ",\"suggestions\":" + jsonText(suggestions) + "}\n");
}

void printCsv(const SearchResult& result) {
  printOut(csvLine(withBitFields({"view", "name", "index", "direction"})));
  for (const ModuleHit& hit : result.modules) {
    std::vector<std::string> fields{std::string(viewName(hit.view)), fullName(*hit.module), "", ""};
    fields.insert(fields.end(), {"MODULE", "", "", "", ""});
    printOut(csvLine(fields));
  }
  for (const SignalHit& hit : result.signals) {
    eachIndex(hit, [&](unsigned index) {
      std::vector<std::string> fields{std::string(viewName(hit.view)), hit.signal->getFullName(),
                                      std::to_string(index), directionName(hit.signal->getKind())};
      const Bit* bit = bitAt(*hit.signal, index);
      if (bit != nullptr) {
        addBit(fields, *bit);
      } else {
        fields.insert(fields.end(), {"NONE", "", "", "", ""});
      }
      printOut(csvLine(fields));
    });
  }
}

Table::Row bitRow(const SignalHit& hit, unsigned index) {
  const Signal& signal = *hit.signal;
  std::string name = printable(signal.getFullName());
  if (signal.getMsb() != 0) name += fmt::format("[{}]", index);
  Table::Row row{
      {std::string(viewName(hit.view))}, {std::move(name)}, {directionName(signal.getKind())}};
  const Bit* bit = bitAt(signal, index);
  if (bit == nullptr) {
    row.push_back({"none", Color::Dim});
    return row;
  }
  addBit(row, *bit);
  return row;
}

// Twice over the rows, for their widths and for their text, so that none is kept.
void printSignals(const std::vector<SignalHit>& hits, bool colored) {
  if (hits.empty()) return;
  using enum Table::Align;
  Table table(withBitColumns({{"VIEW", Left}, {"BIT", Left}, {"DIR", Left}}), colored);
  const auto eachRow = [&hits](auto visit) {
    for (const SignalHit& hit : hits) {
      eachIndex(hit, [&](unsigned index) { visit(bitRow(hit, index)); });
    }
  };
  eachRow([&](const Table::Row& row) { table.measure(row); });
  printOut(table.header());
  eachRow([&](const Table::Row& row) { printOut(table.line(row)); });
}

void printModules(const std::vector<ModuleHit>& hits, bool colored) {
  if (hits.empty()) return;
  using enum Table::Align;
  Table table({{"VIEW", Left}, {"MODULE", Left}, {"DEFINITION", Left}}, colored);
  const auto row = [](const ModuleHit& hit) {
    return Table::Row{{std::string(viewName(hit.view))},
                      {printable(fullName(*hit.module))},
                      {printable(hit.module->getDefName())}};
  };
  for (const ModuleHit& hit : hits) table.measure(row(hit));
  printOut(table.header());
  for (const ModuleHit& hit : hits) printOut(table.line(row(hit)));
}

void printText(const SearchResult& result, bool colored) {
  printModules(result.modules, colored);
  if (!result.modules.empty() && !result.signals.empty()) printOut("\n");
  printSignals(result.signals, colored);
}

// Without names every one is meant, if only some bits of them are.
std::vector<std::string> namesOf(const FindOptions& options) {
  if (options.located && options.unlocated) {
    throw UsageFailure("--located and --unlocated leave nothing to show");
  }
  if (!options.names.empty()) return withStandardInput(options.names, options.file);
  if (!options.filters()) throw UsageFailure("NAME is required (see xrf find --help)");
  return {options.regex ? "" : "*"};
}

Status find(Session& session, const FindOptions& options) {
  const std::vector<std::string> names = namesOf(options);
  const auto design = loaded(options.file, session);
  SearchOptions what{{XRF_RTL2LL::RTL, XRF_RTL2LL::SYNTH}, options.hidden, options.regex};
  if (options.view) what.views = {*options.view};
  SearchResult result = search(*design, names, what);
  if (options.filters()) filter(result, options);
  std::map<std::string, std::vector<std::string>> suggestions;
  if (!options.regex && !result.notFound.empty()) {
    suggestions = suggestionsFor(*design, result.notFound, {what.views, options.hidden});
  }
  if (session.options.json) {
    printJson(options.file, result, suggestions);
  } else if (session.options.csv) {
    printCsv(result);
  } else {
    printText(result, session.colored());
  }
  for (const std::string& name : result.notFound) {
    const char* const fault = options.regex ? "no name matches" : "nothing is named";
    session.console.error(
        Failure(fmt::format("{} '{}'{}", fault, printable(name), didYouMean(suggestions[name])),
                options.file));
  }
  return result.notFound.empty() ? Status::Done : Status::NotFound;
}

const char* const findFooter =
    "A name without a leading \"/\" is taken below the top. \"*\" matches any characters, \"/\"\n"
    "included, and \"?\" matches one; brackets are themselves. A bit is asked for as written in "
    "RTL:\n"
    "/top/u0/cnt[3], or /top/u0/mem[3][5], which the model names bit 5 of mem<3>.\n"
    "KIND is located (with frame address, bit offset in the frame and super logic region), "
    "constant\n"
    "(with its value), unread (looked for in vain) or unknown; in JSON STATE, CNST, UNREAD, "
    "UNKNOWN.\n"
    "With --regex the names are POSIX extended regular expressions, which match anywhere in a "
    "full\n"
    "name as it is printed, index included. The name \"-\" stands for the lines of standard "
    "input.\n"
    "--located and --unlocated show only bits with, or without, a place in the device; then NAME "
    "may\n"
    "be left out, which means every name.\n"
    "Exit status 3 when a name matches nothing.\n"
    "Examples:\n"
    "  xrf find top.xrf /top/u0/cnt 'u0/mem[3][5]'\n"
    "  xrf find top.xrf --view rtl --json '*state*'\n"
    "  xrf find top.xrf --view rtl --regex 'u[0-3]/cnt[[](0|1)[]]$'\n"
    "  xrf find top.xrf --view rtl --unlocated --format csv - <names.txt";

}  // namespace

void addFind(CLI::App& app, Session& session) {
  CLI::App* subcommand =
      app.add_subcommand("find", "Look up modules, signals and bits by name, one row per bit");
  const auto options = std::make_shared<FindOptions>();
  subcommand->add_option("FILE", options->file, "Cross-reference file (.xrf)")
      ->required()
      ->type_name("");
  subcommand
      ->add_option("NAME", options->names,
                   "Hierarchical names, possibly with * and ?; - reads them from standard input")
      ->type_name("");
  addViewOption(*subcommand, options->view, "Look in one view only: rtl or synth");
  subcommand->add_flag("--hidden", options->hidden,
                       "Let wildcards match the cells of registers and logic, too");
  subcommand->add_flag("--regex", options->regex, "Take the names as regular expressions");
  subcommand->add_flag("--located", options->located, "Show only bits that have a place");
  subcommand->add_flag("--unlocated", options->unlocated, "Show only bits that have none");
  addCommonOptions(*subcommand, session, findFooter, Csv::Offered);
  addLimitOptions(*subcommand, session, Reads::CrossReference);
  subcommand->callback([&session, options] {
    session.action = [options](Session& current) { return find(current, *options); };
  });
}

}  // namespace xrf
