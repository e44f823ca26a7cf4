#pragma once

#include <cstdint>

/// Bounds on what an input may ask for. Each is far above what tools write and low enough that a
/// corrupt or hostile file ends in a message instead of exhausted memory or stack.
namespace XRF_RTL2LL::limits {

/// Bytes of one word of a netlist; the longest in the field are below four thousand.
inline constexpr std::uint64_t wordLength = 1U << 20;

/// Lists inside lists in one netlist file; tools write fewer than twenty.
inline constexpr unsigned listNesting = 256;

/// Lists inside lists while cells are read inside the instances that use them. Bounds the stack;
/// allows some six hundred levels of hierarchy as tools write them.
inline constexpr unsigned elaborationNesting = 4096;

/// Levels of the module tree. Real designs have fewer than fifty.
inline constexpr unsigned moduleNesting = 500;
/// Registers of one name once their levels are joined that are told from one another.
inline constexpr std::size_t flattenedNames = 64;

/// Bytes of the paths that modules with children keep: a base, and a multiple of what the file or
/// the expanded design holds. Paths in the field stay below a few thousand bytes.
inline constexpr std::uint64_t pathBytesBase = 1U << 24;
inline constexpr std::uint64_t pathBytesPerByte = 64;
inline constexpr std::uint64_t pathBytesPerObject = 1024;

/// Words that are read while the design is built: a base, each word of the file a few times, and
/// for each object what a memory cell with all its properties has.
inline constexpr std::uint64_t wordsBase = 1U << 26;
inline constexpr std::uint64_t wordsPerObject = 2048;

/// Highest index of a signal: the largest number that the text formats carry in a signed field.
inline constexpr std::uint32_t signalIndex = 0x7ffffffeU;

/// Indices of one signal. A memory seen as one vector reaches a few million.
inline constexpr std::uint32_t signalWidth = 1U << 24;

/// Modules, signals and bits that a netlist may expand to: a base for small files, a multiple of
/// the words of the file for shared cells, and an end to both.
inline constexpr std::uint64_t objectsBase = 1U << 20;
inline constexpr std::uint64_t objectsPerWord = 256;
inline constexpr std::uint64_t objects = 400'000'000;

/// Bits or nets that a cross-reference file may declare beyond its size in bytes.
inline constexpr std::uint64_t declaredBase = 1U << 20;

/// Names kept of the lines that a reader could not place.
inline constexpr std::uint64_t reportedNames = 100;

}  // namespace XRF_RTL2LL::limits
