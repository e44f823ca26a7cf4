#include "Design.h"
#include "EdifWriter.h"
#include "HazardLocations.h"
#include "HazardLog.h"
#include "HazardTruth.h"
#include "Hazards.h"
#include "Implementation.h"
#include "LocationWriter.h"
#include "LogWriter.h"
#include "Placement.h"
#include "TruthWriter.h"

#include <charconv>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

constexpr uint64_t kMaxRegisters = 100'000'000;

constexpr const char* kUsage =
    "usage: generate --registers N --out DIR [--seed S] [--shape SHAPE]\n"
    "                [--renames] [--hazards LIST|all|none]\n"
    "       generate --list-hazards\n"
    "\n"
    "Invents a design of N registers and writes what the tools of a build would leave behind:\n"
    "  rtl.edf     the elaborated netlist\n"
    "  synth.edf   the synthesized netlist\n"
    "  design.ll   the location file\n"
    "  synth.log   the synthesis log\n"
    "  truth.txt   what became of each register, for comparison\n"
    "The same arguments give the same bytes.\n"
    "\n"
    "  --registers N   how many registers, 1 to 100000000\n"
    "  --out DIR       where to write; the directory is made if need be\n"
    "  --seed S        which of the designs of that size (default 1)\n"
    "  --shape SHAPE   tree: four levels (default); narrow: many small modules;\n"
    "                  deep: fifty levels; wide: one flat module; field: a few large modules,\n"
    "                  printable names, wide cells and properties, as netlists of real projects\n"
    "  --renames       printable names beside the identifiers, as today's tools write them\n"
    "  --hazards LIST  a design of plain names with these habits of real ones, names with commas\n"
    "                  between them; printable names too, and a list of what extended reading "
    "finds\n"
    "  --list-hazards  print the names, with what each is\n";

class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Arguments {
  generate::Options options;
  std::string directory;
  bool wantsHelp = false;
  bool wantsHazards = false;
};

uint64_t parseNumber(std::string_view name, std::string_view text) {
  uint64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
    throw UsageError(std::string(name) + ": not a number: " + std::string(text));
  }
  return number;
}

generate::Shape parseShape(std::string_view text) {
  if (text == "tree") return generate::Shape::Tree;
  if (text == "narrow") return generate::Shape::Narrow;
  if (text == "deep") return generate::Shape::Deep;
  if (text == "wide") return generate::Shape::Wide;
  if (text == "field") return generate::Shape::Field;
  throw UsageError("--shape: unknown shape: " + std::string(text));
}

generate::Hazards parseHazardList(std::string_view text) {
  try {
    return generate::parseHazards(text);
  } catch (const std::invalid_argument& error) {
    throw UsageError(std::string("--hazards: ") + error.what());
  }
}

Arguments parseArguments(int count, char** words) {
  Arguments arguments;
  bool hasRegisters = false;
  for (int index = 1; index < count; ++index) {
    const std::string_view name = words[index];
    const auto value = [&]() -> std::string_view {
      if (++index == count) throw UsageError(std::string(name) + ": a value is missing");
      return words[index];
    };
    if (name == "--help") {
      arguments.wantsHelp = true;
      return arguments;
    }
    if (name == "--list-hazards") {
      arguments.wantsHazards = true;
      return arguments;
    }
    if (name == "--hazards") {
      arguments.options.hazards = parseHazardList(value());
      arguments.options.renames = true;
    } else if (name == "--renames") {
      arguments.options.renames = true;
    } else if (name == "--registers") {
      arguments.options.registers = parseNumber(name, value());
      hasRegisters = true;
    } else if (name == "--seed") {
      arguments.options.seed = parseNumber(name, value());
    } else if (name == "--shape") {
      arguments.options.shape = parseShape(value());
    } else if (name == "--out") {
      arguments.directory = value();
    } else {
      throw UsageError("unknown argument: " + std::string(name));
    }
  }
  if (!hasRegisters) throw UsageError("--registers is missing");
  if (arguments.directory.empty()) throw UsageError("--out is missing");
  if (arguments.options.shape == generate::Shape::Field) arguments.options.renames = true;
  const uint64_t registers = arguments.options.registers;
  if (registers < 1 || registers > kMaxRegisters) throw UsageError("--registers: out of range");
  return arguments;
}

void writeHazardousDesign(const generate::Design& design, const generate::Placement& placement,
                          const std::filesystem::path& directory) {
  const generate::Implementation implementation(design);
  generate::writeEdif(design, implementation, generate::View::Elaborated, directory / "rtl.edf");
  generate::writeEdif(design, implementation, generate::View::Synthesized, directory / "synth.edf");
  generate::writeHazardLocations(design, implementation, placement, directory / "design.ll");
  generate::writeHazardLog(design, directory / "synth.log");
  generate::writeHazardTruth(design, placement, directory / "truth.txt");
}

void writeDesign(const Arguments& arguments) {
  const std::filesystem::path directory = arguments.directory;
  std::filesystem::create_directories(directory);
  const generate::Design design(arguments.options);
  const generate::Placement placement(arguments.options.seed);
  if (design.options().hazards) {
    writeHazardousDesign(design, placement, directory);
    return;
  }
  generate::writeEdif(design, generate::View::Elaborated, directory / "rtl.edf");
  generate::writeEdif(design, generate::View::Synthesized, directory / "synth.edf");
  generate::writeLocations(design, placement, directory / "design.ll");
  generate::writeLog(design, directory / "synth.log");
  generate::writeTruth(design, placement, directory / "truth.txt");
}

}  // namespace

int main(int count, char** words) {
  try {
    const Arguments arguments = parseArguments(count, words);
    if (arguments.wantsHelp) {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (arguments.wantsHazards) {
      generate::printHazards();
      return 0;
    }
    writeDesign(arguments);
    return 0;
  } catch (const UsageError& error) {
    std::fprintf(stderr, "generate: %s\n%s", error.what(), kUsage);
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "generate: %s\n", error.what());
    return 1;
  }
}
