#pragma once

#include <crossreference/Module.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The decisions in which extended reading differs from strict reading, as functions of names
/// alone.
namespace XRF_RTL2LL {

/// What extended reading does beyond or instead of strict reading, one bit each.
enum class Rule : std::uint32_t {
  PrintableRegisters = 1U << 0,  ///< registers and bit nets are decoded from printable names
  LateAliases = 1U << 1,         ///< the alias named like a register is made last, if at all
  PrintableArrays = 1U << 2,  ///< port arrays take name, range and direction from printable names
  PrintablePorts = 1U << 3,   ///< scalar ports are named by their printable names
  CleanNames = 1U << 4,       ///< what the file format cannot carry becomes "_" in names
  RawLocations = 1U << 5,     ///< locations are resolved by raw names, at the register
  RegisterCopy = 1U << 6,     ///< the final copy goes by register identity
  RawLog = 1U << 7,           ///< log names are resolved by raw names
  LoadedRegisters = 1U << 8,  ///< registers of a loaded model are worked out again
  RegionColumns = 1U << 9,    ///< location lines may carry a region
  LogMerges = 1U << 10,       ///< merged registers share their survivor's bits
  StateCells = 1U << 11,      ///< latches and falling-edge cells count as registers
  SkipForeignBlocks = 1U << 12,  ///< blocks without registers are skipped
  UnreadIsOpen = 1U << 13,       ///< an unread bit takes what arrives later
  ClosingModules = 1U << 14,     ///< a module line of a cross-reference file may close itself
  DeclareLoadedBits = 1U << 15   ///< loading declares the highest bit id
};

/// The rules in force; none for strict reading.
class Reading {
 public:
  static Reading strict() { return Reading(0); }
  static Reading extended() { return Reading(0xffff); }

  bool has(Rule rule) const { return (m_rules & static_cast<std::uint32_t>(rule)) != 0; }
  Reading without(Rule rule) const { return Reading(m_rules & ~static_cast<std::uint32_t>(rule)); }

 private:
  explicit Reading(std::uint32_t rules) : m_rules(rules) {}
  std::uint32_t m_rules;
};

/// Part of a signal, as a printable name writes it: indices lsb to msb of the signal of a model
/// name. `mem[3][5]` is index 5 of `mem<3>`, `r[tag][valid]` index 0 of `r<tag><valid>`, `q[-1]`
/// index 0 of `q[-1]`, since the model has no negative indices.
struct NamedBits {
  std::string signal;
  std::string text;  ///< the name as it stands; of a register without its "_reg"
  std::uint32_t lsb = 0;
  std::uint32_t msb = 0;
  bool bare = false;       ///< the name has no groups
  bool ranged = false;     ///< the name ends in a range, as in q[7:4]
  bool ascending = false;  ///< the range counts up: its first bit is lsb
  bool replica = false;    ///< of a register: a copy that synthesis made
  bool valid = false;

  /// The same bit as a signal of its own that bears the whole name.
  NamedBits whole() const;
};

/// The register that an instance implements: `_reg`, then nothing but bracket groups.
NamedBits decodeRegister(std::string_view instance);

/// Whether `decodeRegister` finds one.
bool namesRegister(std::string_view instance);

/// The bus bit that a net's or bit port's name ends in; not valid for a name without an index.
NamedBits decodeBit(std::string_view name);

/// Whether a name ends in one, with the signal and the index, which mean nothing otherwise. No
/// strings are made: the signal's name lies in `name`, or in the buffer, which must not hold
/// `name`.
bool splitBit(std::string_view name, std::string& buffer, std::string_view& bus,
              std::uint32_t& index);

/// Name and declared range of a port array.
struct PortRange {
  std::string signal;
  std::uint32_t left = 0;
  std::uint32_t right = 0;
  bool foreign = false;  ///< the printed range is none that the model can have
};
PortRange decodeArray(std::string_view name, std::uint32_t width);

/// Whether the file format can carry a name as it stands.
bool isClean(std::string_view name);
/// The name with everything that the file format cannot carry as "_".
std::string cleaned(std::string_view name);

/// Whether a cell outside the table of primitives holds state.
bool holdsState(std::string_view cell);

/// "[", "]", "." and "$" as "_", the way implementation tools clean names.
void normalise(std::string& name);
/// Whether that leaves a name as it is.
bool isNormal(std::string_view name);
std::string normalised(std::string name);

/// What a net's name may stand for, most faithful first: a signal of the whole name, then the bit
/// of a bus.
std::vector<NamedBits> netReadings(std::string_view name);

/// The same for the name of a register's instance, with the levels before it.
std::vector<NamedBits> registerReadings(std::string_view name);

/// The end of such a name as `netApart` makes.
inline constexpr std::string_view apartEnding = ":net";
/// What a net is called whose name belongs to a register that does not drive it.
std::string netApart(std::string name);

/// A name whose module levels were changed as tools change them.
struct ChangedLevels {
  std::string name;
  std::string joined;  ///< the module whose level is part of the name now, if that was the change
};

/// The changes that a name below the top may have gone through, one after another: its levels
/// cleaned, or joined to the name with "_" from the innermost on.
class LevelChanges {
 public:
  explicit LevelChanges(std::string_view name);

  /// False when there is none left.
  bool next();
  const ChangedLevels& current() const { return m_current; }

 private:
  enum class Next { Clean, Join, None };

  std::string m_name;
  ChangedLevels m_current;
  std::string m_flat;  // with the levels joined so far
  Next m_next = Next::Clean;
};
std::vector<ChangedLevels> changedLevels(std::string_view name);

/// The name with its levels cleaned alone.
std::string withCleanLevels(const std::string& name);

/// A name as a log writes it, and what a partition put before it.
struct PartitionedName {
  std::string name;
  std::string partition;  ///< the levels that are left out as a partition's
};

/// The names that a log's name may mean, without the marks of its own, longest first.
std::vector<PartitionedName> partitionedNames(std::string_view name);

}  // namespace XRF_RTL2LL
