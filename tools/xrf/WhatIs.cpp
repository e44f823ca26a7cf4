#include <crossreference/XRF_RTL2LL.h>
#include <tools/xrf/BitColumns.h>
#include <tools/xrf/Csv.h>
#include <tools/xrf/LimitOptions.h>
#include <tools/xrf/LoadedDesign.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/Subcommands.h>
#include <tools/xrf/Suggestions.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <fmt/format.h>
#include <memory>
#include <optional>

namespace xrf {

using XRF_RTL2LL::Design;
using XRF_RTL2LL::RegisterBit;

namespace {

struct WhatIsOptions {
  std::string file;
  std::string frameOrName;
  std::string offset;  // empty where a name is asked for
  std::string slr;
};

// A bit of the configuration memory.
struct Place {
  unsigned frame = 0;
  unsigned offset = 0;
  unsigned slr = 0;
};

// What was asked, and the answer.
struct Answer {
  Json query;
  std::vector<RegisterBit> registers;
  std::string whyNone;
};

unsigned toNumber(const std::string& text, const char* what, bool mayBeHex) {
  const bool isHex = mayBeHex && (text.starts_with("0x") || text.starts_with("0X"));
  const char* const begin = text.data() + (isHex ? 2 : 0);
  const char* const end = text.data() + text.size();
  unsigned number = 0;
  const auto [rest, error] = std::from_chars(begin, end, number, isHex ? 16 : 10);
  if (error != std::errc() || rest != end) {
    throw UsageFailure(fmt::format("'{}' is no {} (see xrf whatis --help)", printable(text), what));
  }
  return number;
}

std::optional<Place> placeOf(const WhatIsOptions& options) {
  if (options.offset.empty()) {
    if (!options.frameOrName.starts_with("0x")) return std::nullopt;
    throw UsageFailure("the frame address " + printable(options.frameOrName) +
                       " needs the offset of a bit (see xrf whatis --help)");
  }
  return Place{toNumber(options.frameOrName, "frame address", true),
               toNumber(options.offset, "offset", false),
               options.slr.empty() ? 0 : toNumber(options.slr, "super logic region", false)};
}

// Where else to look, for who did not know that the device has regions.
std::string otherRegion(const Design& design, const Place& place) {
  constexpr unsigned regions = 16;
  for (unsigned slr = 1; slr < regions; ++slr) {
    if (design.registersAt(place.frame, place.offset, slr).empty()) continue;
    return fmt::format("; one lives there in region {}", slr);
  }
  return {};
}

Answer answerAt(const Design& design, const Place& place, bool anyRegion) {
  Answer answer{{{"frame", place.frame}, {"offset", place.offset}, {"slr", place.slr}},
                design.registersAt(place.frame, place.offset, place.slr),
                {}};
  if (!answer.registers.empty()) return answer;
  answer.whyNone =
      fmt::format("no register of the RTL lives at frame 0x{:08x}, offset {}, region {}",
                  place.frame, place.offset, place.slr);
  if (anyRegion) answer.whyNone += otherRegion(design, place);
  return answer;
}

std::vector<std::string> nearest(const Design& design, const std::string& name) {
  const auto suggestions = suggestionsFor(design, {name}, {{XRF_RTL2LL::SYNTH}, true});
  return suggestions.empty() ? std::vector<std::string>() : suggestions.begin()->second;
}

Answer answerOf(const Design& design, const std::string& name) {
  std::optional<std::vector<RegisterBit>> registers = design.registersOf(name);
  const std::string whyNone =
      registers ? fmt::format("'{}' of the synthesized netlist is no register of the RTL",
                              printable(name))
                : fmt::format("nothing is named '{}' in the synthesized netlist{}", printable(name),
                              didYouMean(nearest(design, name)));
  return {{{"name", name}}, std::move(registers).value_or(std::vector<RegisterBit>()), whyNone};
}

void printJson(const std::string& file, const Design& design, const Answer& answer) {
  Json registers = Json::array();
  for (const RegisterBit& bit : answer.registers) {
    Json json{{"name", design.writtenName(bit)},
              {"signal", bit.signal->getFullName()},
              {"index", bit.index}};
    addBit(json, *bit.signal->getBitRef(bit.index)->getBit());
    registers.push_back(std::move(json));
  }
  const Json document{
      {"command", "whatis"}, {"file", file}, {"query", answer.query}, {"registers", registers}};
  printOut(jsonText(document) + "\n");
}

void printCsv(const Design& design, const Answer& answer) {
  printOut(csvLine(withBitFields({"name", "signal", "index"})));
  for (const RegisterBit& bit : answer.registers) {
    std::vector<std::string> fields{design.writtenName(bit), bit.signal->getFullName(),
                                    std::to_string(bit.index)};
    addBit(fields, *bit.signal->getBitRef(bit.index)->getBit());
    printOut(csvLine(fields));
  }
}

void printText(const Design& design, const Answer& answer, bool colored) {
  if (answer.registers.empty()) return;
  Table table(withBitColumns({{"REGISTER", Table::Align::Left}}), colored);
  std::vector<Table::Row> rows;
  for (const RegisterBit& bit : answer.registers) {
    Table::Row row{{printable(design.writtenName(bit))}};
    addBit(row, *bit.signal->getBitRef(bit.index)->getBit());
    rows.push_back(std::move(row));
  }
  printOut(table.text(rows));
}

Status whatIs(Session& session, const WhatIsOptions& options) {
  const std::optional<Place> place = placeOf(options);
  const auto design = loaded(options.file, session);
  Answer answer = place ? answerAt(*design, *place, options.slr.empty())
                        : answerOf(*design, options.frameOrName);
  if (session.options.json) {
    printJson(options.file, *design, answer);
  } else if (session.options.csv) {
    printCsv(*design, answer);
  } else {
    printText(*design, answer, session.colored());
  }
  if (!answer.registers.empty()) return Status::Done;
  if (design->coverage().all.total() == 0) {
    answer.whyNone += "; the file lists no registers (was it built with --hide-hidden?)";
  }
  session.console.error(Failure(answer.whyNone, options.file));
  return Status::NotFound;
}

const char* const whatIsFooter =
    "The reverse of find. The place is a frame address (0x and hexadecimal, or decimal), the "
    "offset\n"
    "of the bit in the frame and the super logic region (0 if left out). The name is one of the\n"
    "synthesized netlist, from the top or below it: a register's instance, with or without /Q, a\n"
    "net, a bus or a bit of one. There is a row for every register bit of the RTL that lives "
    "there,\n"
    "several where registers were merged, each under its name as written in RTL and with its own\n"
    "place, which is another where a copy was asked for that synthesis made of a register.\n"
    "Exit status 3 when there is none.\n"
    "Examples:\n"
    "  xrf whatis top.xrf 0x0040061f 2595\n"
    "  xrf whatis top.xrf 0x0040061f 2595 1\n"
    "  xrf whatis top.xrf 'u0/cnt_reg[3]'\n"
    "  xrf whatis top.xrf --json '/top/u0/n_0_cnt_reg[3]'";

}  // namespace

void addWhatIs(CLI::App& app, Session& session) {
  CLI::App* subcommand = app.add_subcommand(
      "whatis", "Tell which register of the RTL a place or a name of the implementation is");
  const auto options = std::make_shared<WhatIsOptions>();
  const auto add = [&](const char* name, std::string& value, const char* text) {
    return subcommand->add_option(name, value, text)->type_name("");
  };
  add("FILE", options->file, "Cross-reference file (.xrf)")->required();
  add("FRAME|NAME", options->frameOrName,
      "Frame address, if an offset follows, or a name of the synthesized netlist")
      ->required();
  add("OFFSET", options->offset, "Offset of the bit in the frame");
  add("SLR", options->slr, "Super logic region (default 0)");
  addCommonOptions(*subcommand, session, whatIsFooter, Csv::Offered);
  addLimitOptions(*subcommand, session, Reads::CrossReference);
  subcommand->callback([&session, options] {
    session.action = [options](Session& current) { return whatIs(current, *options); };
  });
}

}  // namespace xrf
