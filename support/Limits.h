#pragma once

#include <cstddef>
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

/// Bytes of a metadata document that are taken in at once, and the most where a single tag or
/// comment is longer than that.
inline constexpr std::size_t xmlPiece = std::size_t{1} << 16;
inline constexpr std::size_t xmlLongestPiece = std::size_t{1} << 26;

/// Entities that a metadata document may declare; tools declare none. Each may stand inside the
/// next, and they are expanded by recursion.
inline constexpr unsigned entityDeclarations = 64;

/// How many times its size the names, values and texts of a metadata document may come to, by
/// entities and default values, and what they may come to in any case.
inline constexpr std::uint64_t expansion = 10;
inline constexpr std::uint64_t expandedBytes = 1U << 16;

/// Levels to which a metadata document is indented. Elements nested deeper stand no further right,
/// so that what is written grows with the number of elements alone.
inline constexpr std::size_t indentedLevels = 32;

/// Names kept of the lines that a reader could not place.
inline constexpr std::uint64_t reportedNames = 100;

}  // namespace XRF_RTL2LL::limits
