#pragma once

#include <cstdint>
#include <initializer_list>

namespace XRF_RTL2LL {

/// What an input may ask for. Each limit is far above what tools write and low enough that a
/// corrupt or hostile file ends in a message, with file and line, instead of exhausted memory or
/// stack: the value itself is allowed, one more is a fatal error, or a fault of the metadata
/// reader.
///
///     Limits limits;
///     limits.objects = 50'000'000;      // this host has little memory
///     Design design;
///     design.setLimits(limits);
///     design.parse_rtl("top.edf");
///
/// Limits belong to a model (`Model::setLimits`, `Design::setLimits`) or to what reads a metadata
/// document (`lmx60::c_xml_reader::set_limits`, `XRF::HardwareEmulationMap`); what was not given
/// any has these. A value above that of `highest` counts as that.
struct Limits {
  /// Bytes of one word of a netlist. The longest in the field are below four thousand.
  std::uint64_t wordLength = 1U << 20;

  /// Lists inside lists in one netlist file. Tools write fewer than twenty.
  std::uint64_t listNesting = 256;

  /// Lists inside lists while cells are read inside the instances that use them, some six of them
  /// for a level of hierarchy as tools write it: enough for `moduleNesting`. Bounds the stack, so
  /// it can only be lowered.
  std::uint64_t elaborationNesting = 4096;

  /// Levels of the module tree. Real designs have fewer than fifty.
  std::uint64_t moduleNesting = 500;

  /// Modules of one view, cells of logic and registers included. The largest devices hold some
  /// thirty million such cells.
  std::uint64_t instances = 100'000'000;

  /// Modules, signals and bits of one view. An instance has three or four ports, and there are
  /// fewer nets than ports; what this many take up fills the memory of a large machine.
  std::uint64_t objects = 400'000'000;

  /// Modules, signals and bits that a netlist may make for each of its words, beside the first
  /// `objectsBase`. Cells that are used over and over make ten; those that multiply tenfold at each
  /// of a dozen levels, a million million.
  std::uint64_t objectsPerWord = 256;
  static constexpr std::uint64_t objectsBase = 1U << 20;

  /// Bytes of the paths of modules with children, for each module, signal and bit, beside the first
  /// `pathBytesBase`. Paths in the field have a few hundred, for a module with all it holds.
  std::uint64_t pathBytesPerObject = 1024;
  static constexpr std::uint64_t pathBytesBase = 1U << 24;

  /// Words that are read again while cells are read inside their instances, for each module, signal
  /// and bit, beside the first `workBase`. A memory cell with all its properties has a thousand.
  std::uint64_t workPerObject = 2048;
  static constexpr std::uint64_t workBase = 1U << 26;

  /// Highest index of a signal. The text formats carry no larger number.
  std::uint64_t signalIndex = 0x7ffffffeU;

  /// Bits of one signal. A memory seen as one vector reaches a few million.
  std::uint64_t signalWidth = 1U << 24;

  /// Elements inside elements of a metadata document. Tools nest fewer than twenty.
  std::uint64_t xmlDepth = 1U << 17;

  /// Entities that a metadata document may declare, and for each of them so many attributes. Tools
  /// declare none.
  std::uint64_t xmlEntities = 64;
  static constexpr std::uint64_t xmlAttributesEach = 16;

  /// How many times its size the names, values and texts of a metadata document may come to, by
  /// entities and default values, beside the first `xmlExpansionBase` bytes. Documents without any
  /// stay below once.
  std::uint64_t xmlExpansion = 10;
  static constexpr std::uint64_t xmlExpansionBase = 1U << 16;

  /// The largest values that count: what the library's counters hold, what the stack does for, and
  /// what the reader of XML below allows in any case.
  static constexpr Limits highest();
  /// These limits, none above `highest`.
  constexpr Limits possible() const;
};

constexpr Limits Limits::highest() {
  Limits most;
  most.wordLength = 1U << 30;
  most.listNesting = 1U << 30;
  most.moduleNesting = 2000;
  most.instances = 2'000'000'000;
  most.objects = 2'000'000'000;
  most.objectsPerWord = 2'000'000'000;
  most.pathBytesPerObject = 1U << 30;
  most.workPerObject = 1U << 30;
  most.signalWidth = 0x7fffffffU;
  most.xmlDepth = 1U << 24;
  most.xmlEntities = 1024;
  most.xmlExpansion = 100;
  return most;
}

constexpr Limits Limits::possible() const {
  constexpr Limits most = highest();
  Limits bounded = *this;
  for (std::uint64_t Limits::*limit :
       {&Limits::wordLength, &Limits::listNesting, &Limits::elaborationNesting,
        &Limits::moduleNesting, &Limits::instances, &Limits::objects, &Limits::objectsPerWord,
        &Limits::pathBytesPerObject, &Limits::workPerObject, &Limits::signalIndex,
        &Limits::signalWidth, &Limits::xmlDepth, &Limits::xmlEntities, &Limits::xmlExpansion}) {
    if (bounded.*limit > most.*limit) bounded.*limit = most.*limit;
  }
  return bounded;
}

}  // namespace XRF_RTL2LL
