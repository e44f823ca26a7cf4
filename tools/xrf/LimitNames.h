#pragma once

#include <support/Limits.h>

#include <array>
#include <cstdint>

namespace xrf {

/// The files whose limits a subcommand offers: netlists or a cross-reference file, a
/// cross-reference file alone, a metadata document.
enum class Reads { Netlists, CrossReference, Metadata };

/// A limit as users name it: `--max-word-length` of the command, `word_length` in Python.
struct LimitName {
  const char* words;  ///< joined by "-"
  std::uint64_t XRF_RTL2LL::Limits::*limit;
  Reads reads;  ///< Netlists alone, or also what else it is offered for
  const char* what;
};

inline constexpr std::array<LimitName, 14> limitNames{{
    {"word-length", &XRF_RTL2LL::Limits::wordLength, Reads::Netlists, "Bytes of a word"},
    {"list-nesting", &XRF_RTL2LL::Limits::listNesting, Reads::Netlists, "Lists inside lists"},
    {"elaboration-nesting", &XRF_RTL2LL::Limits::elaborationNesting, Reads::Netlists,
     "Lists inside lists, those of the cells of instances included"},
    {"objects-per-word", &XRF_RTL2LL::Limits::objectsPerWord, Reads::Netlists,
     "Modules, signals and bits for each word of a netlist"},
    {"work", &XRF_RTL2LL::Limits::workPerObject, Reads::Netlists,
     "Words of cells for each module, signal and bit"},
    {"module-nesting", &XRF_RTL2LL::Limits::moduleNesting, Reads::CrossReference,
     "Levels of modules"},
    {"instances", &XRF_RTL2LL::Limits::instances, Reads::CrossReference, "Modules of a view"},
    {"objects", &XRF_RTL2LL::Limits::objects, Reads::CrossReference,
     "Modules, signals and bits of a view"},
    {"path-bytes", &XRF_RTL2LL::Limits::pathBytesPerObject, Reads::CrossReference,
     "Bytes of paths for each module, signal and bit"},
    {"signal-index", &XRF_RTL2LL::Limits::signalIndex, Reads::CrossReference, "Index of a signal"},
    {"signal-width", &XRF_RTL2LL::Limits::signalWidth, Reads::CrossReference, "Bits of a signal"},
    {"xml-depth", &XRF_RTL2LL::Limits::xmlDepth, Reads::Metadata, "Elements inside elements"},
    {"xml-entities", &XRF_RTL2LL::Limits::xmlEntities, Reads::Metadata,
     "Entities that are declared"},
    {"xml-expansion", &XRF_RTL2LL::Limits::xmlExpansion, Reads::Metadata,
     "Times its size that a document may expand to"},
}};

/// Whether a limit has a say in reading `reads`.
constexpr bool isOffered(const LimitName& name, Reads reads) {
  if (reads == Reads::Netlists) return name.reads != Reads::Metadata;
  return name.reads == reads;
}

}  // namespace xrf
