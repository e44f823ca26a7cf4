#include <tools/xrf/LimitOptions.h>

#include <CLI/CLI.hpp>
#include <array>
#include <fmt/format.h>

namespace xrf {

namespace {

using XRF_RTL2LL::Limits;

struct LimitOption {
  const char* name;
  std::uint64_t Limits::*limit;
  Reads reads;  // Netlists alone, or also what else it is offered for
  const char* what;
};

constexpr std::array<LimitOption, 14> limitOptions{{
    {"--max-word-length", &Limits::wordLength, Reads::Netlists, "Bytes of a word"},
    {"--max-list-nesting", &Limits::listNesting, Reads::Netlists, "Lists inside lists"},
    {"--max-elaboration-nesting", &Limits::elaborationNesting, Reads::Netlists,
     "Lists inside lists, those of the cells of instances included"},
    {"--max-objects-per-word", &Limits::objectsPerWord, Reads::Netlists,
     "Modules, signals and bits for each word of a netlist"},
    {"--max-work", &Limits::workPerObject, Reads::Netlists,
     "Words of cells for each module, signal and bit"},
    {"--max-module-nesting", &Limits::moduleNesting, Reads::CrossReference, "Levels of modules"},
    {"--max-instances", &Limits::instances, Reads::CrossReference, "Modules of a view"},
    {"--max-objects", &Limits::objects, Reads::CrossReference,
     "Modules, signals and bits of a view"},
    {"--max-path-bytes", &Limits::pathBytesPerObject, Reads::CrossReference,
     "Bytes of paths for each module, signal and bit"},
    {"--max-signal-index", &Limits::signalIndex, Reads::CrossReference, "Index of a signal"},
    {"--max-signal-width", &Limits::signalWidth, Reads::CrossReference, "Bits of a signal"},
    {"--max-xml-depth", &Limits::xmlDepth, Reads::Metadata, "Elements inside elements"},
    {"--max-xml-entities", &Limits::xmlEntities, Reads::Metadata, "Entities that are declared"},
    {"--max-xml-expansion", &Limits::xmlExpansion, Reads::Metadata,
     "Times its size that a document may expand to"},
}};

bool isOffered(const LimitOption& option, Reads reads) {
  if (reads == Reads::Netlists) return option.reads != Reads::Metadata;
  return option.reads == reads;
}

}  // namespace

void addLimitOptions(CLI::App& subcommand, Session& session, Reads reads) {
  constexpr Limits usual;
  constexpr Limits highest = Limits::highest();
  for (const LimitOption& option : limitOptions) {
    if (!isOffered(option, reads)) continue;
    const std::string text =
        fmt::format("{} ({}; {} at most)", option.what, usual.*option.limit, highest.*option.limit);
    std::uint64_t& value = session.options.limits.*option.limit;
    subcommand.add_option(option.name, value, text)
        ->check(CLI::Range(std::uint64_t{0}, highest.*option.limit).description(""))
        ->type_name("N")
        ->group("Limits");
  }
}

}  // namespace xrf
