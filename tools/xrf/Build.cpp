#include <crossreference/XRF_RTL2LL.h>
#include <tools/xrf/AtomicOutput.h>
#include <tools/xrf/BuildReport.h>
#include <tools/xrf/Doubts.h>
#include <tools/xrf/InputCheck.h>
#include <tools/xrf/LimitOptions.h>
#include <tools/xrf/LoadedDesign.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/StrictTraps.h>
#include <tools/xrf/Style.h>
#include <tools/xrf/Subcommands.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fmt/format.h>
#include <memory>

namespace xrf {

using XRF_RTL2LL::Bit;
using XRF_RTL2LL::Design;
using XRF_RTL2LL::Matching;

namespace {

struct BuildOptions {
  std::string rtl;
  std::string synth;
  std::string xrf;
  std::string locations;
  std::string log;
  std::string output;
  bool hideHidden = false;
  Matching matching = Matching::Extended;

  bool fromNetlists() const { return xrf.empty(); }
};

void checkOptions(const BuildOptions& options) {
  const bool netlists = !options.rtl.empty() && !options.synth.empty();
  const bool anyNetlist = !options.rtl.empty() || !options.synth.empty();
  if (options.fromNetlists() ? !netlists : anyNetlist) {
    throw UsageFailure("give --rtl and --synth, or --xrf instead of both (see xrf build --help)");
  }
  for (const std::string* input :
       {&options.rtl, &options.synth, &options.locations, &options.log}) {
    if (!input->empty() && isSameFile(*input, options.output)) {
      throw UsageFailure("the output would overwrite this input", *input);
    }
  }
}

void checkInputs(const BuildOptions& options) {
  const auto check = [](const std::string& input, FileKind kind) {
    if (!input.empty()) requireReadable(input, kind);
  };
  check(options.rtl, FileKind::Netlist);
  check(options.synth, FileKind::Netlist);
  check(options.xrf, FileKind::CrossReference);
  check(options.locations, FileKind::Locations);
  check(options.log, FileKind::Log);
}

// Strict reading leaves the highest bit id of a loaded file undeclared, and what is written without
// it does not read back.
void declareBits() {
  unsigned highest = 0;
  for (const Bit* bit : Bit::getAllBits()) highest = std::max(highest, bit->getId());
  Bit::setMaxBitId(highest);
}

void readDesign(Design& design, const BuildOptions& options, Console& console) {
  if (options.fromNetlists()) {
    console.setCurrentInput(options.rtl);
    design.parse_rtl(options.rtl);
    console.setCurrentInput(options.synth);
    design.parse_synth(options.synth);
  } else {
    load(design, options.xrf, console);
    declareBits();
  }
  if (design.getFamily() != XRF_RTL2LL::TORVAL7) {
    throw Failure(options.fromNetlists()
                      ? "the device family is not known: the netlist's header does not name the "
                        "program \"Tarvona\""
                      : "the device family is not known: the file has no (FAMILY TORVAL7) line",
                  options.fromNetlists() ? options.rtl : options.xrf);
  }
}

void readDeviceFiles(Design& design, const BuildOptions& options, Console& console) {
  if (!options.locations.empty()) {
    console.setCurrentInput(options.locations);
    design.parse_ll(options.locations);
    if (design.locationReport().lines == 0) {
      console.warn(printable(options.locations) + ": no line tells a location");
    }
  }
  if (!options.log.empty()) {
    console.setCurrentInput(options.log);
    design.parse_log(options.log);
  } else {
    console.setCurrentInput({});
    design.getNetlist()->finalPostProcess();
    design.initializeBits();
  }
  console.setCurrentInput({});
}

void warnOfHiddenCells(const DesignCounts& counts, const BuildOptions& options, Console& console) {
  const bool leavesOut = options.hideHidden && counts.synth.hiddenModules != 0;
  if (!leavesOut || !options.locations.empty()) return;
  console.warn(
      "--hide-hidden leaves out register cells that a later --ll needs; give --ll now, or drop "
      "--hide-hidden");
}

void warnOfStrictTraps(const Design& design, const BuildOptions& options, Console& console) {
  const StrictTraps traps(*design.getNetlist(), !options.hideHidden);
  if (traps.closingModules != 0) {
    console.warn(fmt::format(
        "{}: strict reading will not read the tree back as it is: modules without "
        "anything to list: {}, the first is {}",
        printable(options.output), traps.closingModules, printable(traps.firstClosingModule)));
  }
  if (traps.brokenNames != 0) {
    console.warn(fmt::format(
        "{}: the file will not read back: names that are empty, or hold a blank or a "
        "parenthesis: {}, the first is {}",
        printable(options.output), traps.brokenNames, printable(traps.firstBrokenName)));
  }
}

BuildReport reportOf(const Design& design, const BuildOptions& options) {
  BuildReport report{
      options.output,     DesignCounts(*design.getNetlist()), design.locationReport(),
      design.logReport(), !options.locations.empty(),         !options.log.empty(),
      std::nullopt};
  const bool knowsRegisters = options.fromNetlists() || options.matching == Matching::Extended;
  if (knowsRegisters) report.coverage = design.coverage();
  return report;
}

// Where the cross-reference goes to standard output, the report must not.
void printReport(const BuildReport& report, const Session& session, bool outputTaken) {
  if (session.options.json) {
    printOut(jsonText(buildJson(report)) + "\n");
  } else if (!session.options.quiet) {
    const std::string text = buildText(report, !outputTaken && session.colored());
    std::fwrite(text.data(), 1, text.size(), outputTaken ? stderr : stdout);
  }
}

// What the library cannot write it tells of the file that it was given, of which nobody knows.
void write(const Design& design, AtomicOutput& output, const BuildOptions& options) {
  try {
    design.exportDesign(output.path(), !options.hideHidden);
  } catch (const Failure& failure) {
    const std::string text = failure.what();
    const std::size_t reason = text.find(": ", text.rfind(output.path()));
    if (output.path() == options.output || text.find(output.path()) == std::string::npos) throw;
    throw Failure("cannot write: " + (reason == std::string::npos ? text : text.substr(reason + 2)),
                  options.output);
  }
  output.commit();
}

Status build(Session& session, const BuildOptions& options) {
  checkOptions(options);
  checkInputs(options);
  AtomicOutput output(options.output);
  if (output.isStandardOutput() && session.options.json) {
    throw UsageFailure("--json needs standard output for its document; write to a file");
  }
  Design design(options.matching);
  design.setLimits(session.options.limits);
  readDesign(design, options, session.console);
  readDeviceFiles(design, options, session.console);
  const BuildReport report = reportOf(design, options);
  if (options.fromNetlists() && options.rtl == options.synth) {
    session.console.warn("--rtl and --synth name one file");
  }
  for (const std::string& doubt :
       doubtsOf(design, {options.locations, options.log, options.matching})) {
    session.console.warn(doubt);
  }
  warnOfHiddenCells(report.views, options, session.console);
  warnOfStrictTraps(design, options, session.console);
  write(design, output, options);
  session.console.finish();
  printReport(report, session, output.isStandardOutput());
  return Status::Done;
}

const char* const buildFooter =
    "Reads the elaborated and the synthesized netlist (EDIF), or a cross-reference file instead "
    "of\n"
    "both; then the locations of the implemented design and the constants of the synthesis log.\n"
    "OUT appears only when it is complete: a build that fails leaves an older file as it was.\n"
    "Extended matching finds the registers of buses, arrays, records and generate scopes under\n"
    "their printable names; strict matching goes by the netlists' identifiers alone.\n"
    "Of the RTL's registers, located ones have a place in the device; constant ones were turned\n"
    "into one; merged ones share the place of an equal register; those not in the implementation\n"
    "were removed by synthesis; of unknown ones no file tells anything.\n"
    "Examples:\n"
    "  xrf build --rtl top_rtl.edf --synth top_synth.edf --ll top.ll --log synth.log -o top.xrf\n"
    "  xrf build --xrf top.xrf --ll next_run.ll -o next_run.xrf";

void addOptions(CLI::App& subcommand, BuildOptions& options) {
  const auto add = [&](const char* name, std::string& value, const char* text) {
    return subcommand.add_option(name, value, text)->type_name("FILE");
  };
  add("--rtl", options.rtl, "Elaborated netlist (EDIF)");
  add("--synth", options.synth, "Synthesized netlist (EDIF)");
  add("--xrf", options.xrf, "Cross-reference file to start from, instead of the netlists");
  add("--ll", options.locations, "Logic-location file of the implemented design");
  add("--log", options.log, "Synthesis log");
  add("-o,--output", options.output, "Cross-reference file to write")->required();
  subcommand.add_flag("--hide-hidden", options.hideHidden,
                      "Leave out cells of registers and logic, and other hidden objects");
  const auto takeMatching = [&options](const std::string& name) {
    options.matching = name == "strict" ? Matching::Strict : Matching::Extended;
  };
  subcommand
      .add_option_function<std::string>("--matching", takeMatching,
                                        "How names are matched: extended (default) or strict")
      ->check(CLI::IsMember(valuesOf("HOW")).description(""))
      ->type_name("HOW");
}

}  // namespace

void addBuild(CLI::App& app, Session& session) {
  CLI::App* subcommand =
      app.add_subcommand("build", "Tie a design's files together into a cross-reference file");
  const auto options = std::make_shared<BuildOptions>();
  addOptions(*subcommand, *options);
  addCommonOptions(*subcommand, session, buildFooter);
  addLimitOptions(*subcommand, session, Reads::Netlists);
  subcommand->callback([&session, options] {
    session.action = [options](Session& current) { return build(current, *options); };
  });
}

}  // namespace xrf
