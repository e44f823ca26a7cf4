#ifndef BENCH_GENERATE_HAZARDS_H
#define BENCH_GENERATE_HAZARDS_H

#include <cstdint>
#include <string_view>

namespace generate {

/// Habits of real designs and tools that make a register hard to follow. Each is switched on by
/// itself; what they mean in detail is told by their descriptions.
enum class Hazard : uint8_t {
  Scopes,
  Records,
  Arrays,
  Ranges,
  Wide,
  EscapedNames,
  RegSuffix,
  ParentNames,
  Blanks,
  CleanedCollisions,
  BitPorts,
  PortRanges,
  NegativePorts,
  RecordPorts,
  EscapedPorts,
  Constants,
  Removed,
  Merged,
  Inverted,
  Replicas,
  ToolNets,
  FarNets,
  PortNets,
  IoBuffers,
  OneInputLuts,
  Latches,
  FallingEdges,
  StateMachines,
  FlattenSlash,
  FlattenUnderscore,
  FlattenCollisions,
  Shells,
  LatchKinds,
  Regions,
  ForeignBlocks,
  LogSpellings,
  SuppressedMessages,
  Crlf,
};

/// A set of hazards.
class Hazards {
 public:
  bool has(Hazard hazard) const { return (bits_ >> static_cast<uint32_t>(hazard) & 1) != 0; }
  void insert(Hazard hazard) { bits_ |= uint64_t{1} << static_cast<uint32_t>(hazard); }

 private:
  uint64_t bits_ = 0;
};

/// Reads a list of names with commas between them, or "all" or "none". Throws
/// std::invalid_argument for a name that is none.
Hazards parseHazards(std::string_view list);

/// Prints each hazard's name and description to standard output, one a line.
void printHazards();

}  // namespace generate

#endif
