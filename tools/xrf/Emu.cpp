#include <crossreference/XRFDataBaseInterface.h>
#include <hpi/HPICommonUtils.h>
#include <tools/xrf/Csv.h>
#include <tools/xrf/EmulationCheck.h>
#include <tools/xrf/Json.h>
#include <tools/xrf/LimitOptions.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/Subcommands.h>
#include <tools/xrf/Table.h>

#include <CLI/CLI.hpp>
#include <memory>

namespace xrf {

using XRF::HardwareEmulationMap;
using XRF::KernelArgument;

namespace {

struct EmuOptions {
  std::string file;
  std::string design;
};

Json kernelJson(HardwareEmulationMap& map, const std::string& kernel) {
  Json computeUnits = Json::array();
  for (int unit = 0; unit < map.numComputeUnits(kernel); ++unit) {
    computeUnits.push_back({{"name", map.computeUnitName(kernel, unit)},
                            {"start", map.breakFunctionStart(kernel, unit)},
                            {"end", map.breakFunctionEnd(kernel, unit)}});
  }
  Json arguments = Json::array();
  for (const KernelArgument& argument : map.arguments(kernel)) {
    arguments.push_back(
        {{"name", argument.name}, {"signal", argument.signal}, {"emulation", argument.emulation}});
  }
  return {{"name", kernel}, {"computeUnits", computeUnits}, {"arguments", arguments}};
}

void printJson(const std::string& file, HardwareEmulationMap& map) {
  Json kernels = Json::array();
  for (int index = 0; index < map.numKernels(); ++index) {
    kernels.push_back(kernelJson(map, map.getKernelName(index)));
  }
  printOut(jsonText(Json{{"command", "emu"}, {"file", file}, {"kernels", kernels}}) + "\n");
}

void printCsv(HardwareEmulationMap& map) {
  printOut(csvLine({"kernel", "argument", "signal", "emulation"}));
  for (int index = 0; index < map.numKernels(); ++index) {
    const std::string kernel = map.getKernelName(index);
    for (const KernelArgument& argument : map.arguments(kernel)) {
      printOut(csvLine({kernel, argument.name, argument.signal, argument.emulation}));
    }
  }
}

void printTable(Table table, const std::vector<Table::Row>& rows) {
  if (!rows.empty()) printOut("\n" + table.text(rows));
}

void printKernel(HardwareEmulationMap& map, const std::string& kernel, bool colored) {
  using enum Table::Align;
  printOut("kernel " + printable(kernel) + "\n");
  std::vector<Table::Row> units;
  for (int unit = 0; unit < map.numComputeUnits(kernel); ++unit) {
    units.push_back({{printable(map.computeUnitName(kernel, unit))},
                     {printable(map.breakFunctionStart(kernel, unit))},
                     {printable(map.breakFunctionEnd(kernel, unit))}});
  }
  printTable(Table({{"COMPUTE UNIT", Left}, {"STARTS WHEN", Left}, {"ENDS WHEN", Left}}, colored),
             units);
  std::vector<Table::Row> arguments;
  for (const KernelArgument& argument : map.arguments(kernel)) {
    arguments.push_back({{printable(argument.name)},
                         {printable(argument.signal)},
                         {printable(argument.emulation)}});
  }
  printTable(Table({{"ARGUMENT", Left}, {"SIGNAL", Left}, {"IN EMULATION", Left}}, colored),
             arguments);
}

Status emu(Session& session, const EmuOptions& options) {
  // Read just once, since a pipe cannot be read again, and a file may be another by then.
  const MetadataDocument document = readMetadata(options.file, session.options.limits);
  requireMappable(document, options.file);
  if (options.design.empty()) {
    session.console.warn("the paths lack the name of the block design; give it with --bd");
  }
  HPICommonUtils::setBDDesignName(options.design);
  HardwareEmulationMap map(document.project);
  if (session.options.json) {
    printJson(options.file, map);
    return Status::Done;
  }
  if (session.options.csv) {
    printCsv(map);
    return Status::Done;
  }
  for (int index = 0; index < map.numKernels(); ++index) {
    if (index > 0) printOut("\n");
    printKernel(map, map.getKernelName(index), session.colored());
  }
  return Status::Done;
}

const char* const emuFooter =
    "Reads the metadata document of a compiled container: its kernels, their compute units, the\n"
    "conditions on which a simulator stops when one starts or ends, and the signals that carry "
    "the\n"
    "arguments. Only the first core of the first device of the first platform counts, and all\n"
    "kernels share the instance that the core's first connection names.\n"
    "As comma-separated values: the arguments of all kernels.\n"
    "Examples:\n"
    "  xrf emu movrel.xml --bd design_1\n"
    "  xrf emu movrel.xml --bd design_1 --json";

}  // namespace

void addEmu(CLI::App& app, Session& session) {
  CLI::App* subcommand = app.add_subcommand(
      "emu", "Show kernels, compute units, break conditions and argument signals of a container");
  const auto options = std::make_shared<EmuOptions>();
  subcommand->add_option("META", options->file, "Metadata document (XML)")
      ->required()
      ->type_name("");
  subcommand->add_option("--bd", options->design, "Block design that holds the kernels")
      ->type_name("NAME");
  addCommonOptions(*subcommand, session, emuFooter, Csv::Offered);
  addLimitOptions(*subcommand, session, Reads::Metadata);
  subcommand->callback([&session, options] {
    session.action = [options](Session& current) { return emu(current, *options); };
  });
}

}  // namespace xrf
