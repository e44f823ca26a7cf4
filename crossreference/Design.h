#pragma once

#include <crossreference/Netlist.h>
#include <support/Api.h>
#include <support/Limits.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace XRF_RTL2LL {

/// How the names of the netlists, the location file and the log are brought together.
enum class Matching {
  Strict,   ///< to the letter of netlists whose identifiers are the only names
  Extended  ///< recovers registers of buses, scopes, arrays and flattened hierarchy, none wrongly
};

/// What became of the lines of the logic-location files read so far.
struct LocationReport {
  std::uint64_t lines = 0;                  ///< lines that carry a location
  std::uint64_t used = 0;                   ///< recorded on at least one bit
  std::uint64_t skippedBlocks = 0;          ///< of a block that holds no register
  std::uint64_t skippedLatches = 0;         ///< of a latch that taps something else than a register
  std::uint64_t skippedIndices = 0;         ///< of a signal that has no bit 0
  std::uint64_t unmatched = 0;              ///< whose net names no signal
  std::vector<std::string> unmatchedNames;  ///< nets of the first unmatched lines

  std::uint64_t skipped() const { return skippedBlocks + skippedLatches + skippedIndices; }
};

/// What became of the constant-propagation lines of the synthesis logs read so far.
struct LogReport {
  std::uint64_t lines = 0;                  ///< lines that report a constant register
  std::uint64_t used = 0;                   ///< recorded on a bit
  std::uint64_t skipped = 0;                ///< of a signal that has no bit 0
  std::uint64_t unmatched = 0;              ///< whose register names no signal
  bool suppressed = false;                  ///< the tool says that it left messages out
  std::vector<std::string> unmatchedNames;  ///< registers of the first unmatched lines
};

/// How many register bits of the RTL are accounted for. Each bit of a register cell's output counts
/// once.
struct Coverage {
  struct Counts {
    std::uint64_t located = 0;   ///< with a location
    std::uint64_t constant = 0;  ///< turned into a constant by synthesis
    std::uint64_t merged = 0;    ///< shares the bit of another register, which counts for itself
    std::uint64_t unread = 0;    ///< looked for in the implementation in vain
    std::uint64_t unknown = 0;   ///< nothing known

    std::uint64_t total() const { return located + constant + merged + unread + unknown; }
    /// Accounted for: located, constant, or merged into a register that counts for itself.
    std::uint64_t known() const { return located + constant + merged; }
  };
  struct ModuleCounts {
    std::string path;  ///< full path of the module that holds the registers
    Counts counts;
  };
  Counts all;
  std::vector<ModuleCounts> modules;  ///< those that hold registers, in path order
};

/// A register bit of the RTL: an index of the signal that carries its name.
struct RegisterBit {
  Signal* signal;
  unsigned int index;
};

/// One design: reads its files and answers look-ups by hierarchical name.
///
///     Design design;
///     design.parse_xrf("top.xrf");
///     Signal* count = design.findSignal(RTL, "/top/u0/cnt");
///
/// Read in this order: `parse_rtl` and `parse_synth`, or `parse_xrf` instead of both; then
/// `parse_ll`; then `parse_log`. Bad input is fatal (see Handlers.h). Readers return 0. Objects
/// that look-ups return belong to the model the design was made in and outlive the design; using a
/// design whose model was reset is a fatal error.
class XRF_API Design {
 public:
  explicit Design(Matching matching = Matching::Strict);
  ~Design();
  Design(const Design&) = delete;
  Design& operator=(const Design&) = delete;

  /// Chooses how names are matched. After the first read it is a fatal error.
  void setMatching(Matching matching);
  /// What the files that are read from now on may ask for: the limits of the design's model, which
  /// other designs of that model share.
  void setLimits(const Limits& limits);

  int parse_rtl(std::string file);
  int parse_synth(std::string file);
  int parse_xrf(std::string file);
  /// Records frame address, frame offset and region of every register bit the file names. In
  /// extended reading the file replaces what an earlier one said.
  int parse_ll(std::string file);
  /// Marks the registers that synthesis turned into constants, then completes the RTL view. Reads
  /// nothing for a design of no known family.
  int parse_log(std::string file);
  int parse_log_tarvona(std::string file);
  /// Sets the value text of every bit to "z".
  int initializeBits();

  /// Look up a full hierarchical name as given, then with "[", "]", "." and "$" as "_" (for a
  /// signal, in its module's part only). Null when not found; `findSignal` raises std::out_of_range
  /// for an unknown name without "/".
  Module* findModule(EdifView view, std::string name) const;
  Signal* findSignal(EdifView view, std::string name) const;
  /// Always null: nothing numbers modules across a design.
  Module* findModule(unsigned int id) const;
  /// The reference at `index` of the signal `signalName` in the first instance of a cell that has
  /// it, or null.
  BitRef* findBitRef(EdifView view, std::string defName, std::string signalName,
                     unsigned int index) const;
  /// The deepest path of hierarchical modules that `path` holds, components that name none dropped.
  std::string getValidModulePath(EdifView view, const std::string& path) const;

  /// The register bits of the RTL in name order, wherever they live: as many as `coverage` counts
  /// where each has a name of its own.
  std::vector<RegisterBit> registers() const;
  /// The register bits of the RTL that live at a place of the configuration memory, in name order;
  /// several where registers were merged. Where a copy lives that synthesis made of a register, the
  /// register, whose own place is another.
  ///
  ///     for (const RegisterBit& bit : design.registersAt(0x40061f, 2595))
  ///       show(bit.signal->getFullName(), bit.index);
  std::vector<RegisterBit> registersAt(unsigned int frame, unsigned int offset,
                                       unsigned int slr = 0) const;
  /// The register bits of the RTL behind a name of the synthesized netlist, taken from the top or
  /// below it: a register's instance, its output, a net, a bus or a bit of one. Nothing when the
  /// synthesized view has no such name; an empty list when what has the name is no register of the
  /// RTL.
  std::optional<std::vector<RegisterBit>> registersOf(const std::string& name) const;
  /// The full name of a register bit as written in RTL: /top/u/mem[3][5] for index 5 of mem<3>.
  std::string writtenName(const RegisterBit& bit) const;

  void dump() const;
  /// Always 0.
  unsigned int getInUseBitCount() const;
  Family getFamily() const;
  /// Writes a cross-reference file, see `Export::exportDesign`.
  int exportDesign(std::string file, bool showHidden) const;

  /// The design's netlist; belongs to the model.
  Netlist* getNetlist() const;
  const LocationReport& locationReport() const;
  const LogReport& logReport() const;
  /// Counts the register bits of the RTL view. Where several registers share a bit, one of them
  /// counts by its kind: the one that the synthesized view has, else the first in name order. The
  /// others count as merged, or as unknown where strict reading laid them there for want of a bit
  /// of their own. A design loaded in strict reading does not know its registers and counts none.
  Coverage coverage() const;

 private:
  friend class LogicLocationReader;
  friend class SynthesisLogReader;
  struct State;
  bool cleans() const;
  std::unique_ptr<State> m_state;
};

}  // namespace XRF_RTL2LL
