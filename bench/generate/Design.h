#ifndef BENCH_GENERATE_DESIGN_H
#define BENCH_GENERATE_DESIGN_H

#include "Hazards.h"
#include "OutputFile.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace generate {

enum class Shape : uint8_t {
  Tree,    ///< four levels, modules of some fifty registers
  Narrow,  ///< four levels, a handful of registers in each of very many modules
  Deep,    ///< chains of fifty levels
  Wide,    ///< one flat module, whose clock net reaches every register
  Field,   ///< a few large modules, with what makes netlists of real projects long
};

struct Options {
  uint64_t registers = 10000;
  uint64_t seed = 1;
  Shape shape = Shape::Tree;
  bool renames = false;  ///< printable names beside the identifiers, as today's tools write
  /// Where set, the design has these habits and no others, and its names are printable ones.
  std::optional<Hazards> hazards;
};

enum class Operation : uint8_t { Copy, Add, Subtract, And, Or, Xor, Multiplex };
enum class Control : uint8_t { None, Reset, Set, Clear, Preset };

/// How the registers of a bank are subscripted.
enum class Layout : uint8_t {
  Scalar,        ///< busy
  Vector,        ///< count[3]
  Matrix,        ///< mem[3][5]
  Record,        ///< pkt[len][5]
  RecordScalar,  ///< pkt[len]
  Subscripted,   ///< as the bank's subscripts say
};

/// A subscript of a register: the name of a record's field, or a range of indices.
struct Subscript {
  std::string field;  ///< empty for a range
  int32_t left = 0;
  int32_t right = 0;

  uint32_t size() const;
  /// The index at a place that is counted from the right end.
  int32_t index(uint32_t place) const;
};

/// How a bank's names are written where identifiers are the only names.
enum class Naming : uint8_t {
  /// Instance count_reg_3_, net count_3_. Location and log files name count[3] and count_reg[3];
  /// strict look-ups turn brackets into underscores, so they meet the one-bit signal of the net
  /// and the one-bit signal that is named after the instance.
  Cleaned,
  /// Instance count_reg[3], net count_3_. The instance's name makes bit 3 of a bus "count", the
  /// net's name still gives the one-bit signal that the location file asks for. A log line asks
  /// for count_reg_3_, which is nowhere.
  BracketInstances,
  /// Instance count_reg[3], net count[3]: all is in the bus, and no one-bit signal bears the name
  /// that strict look-ups form. Rare, so that the unmatched case occurs.
  BracketNets,
};

struct Operand {
  enum class Kind : uint8_t { Input, Bank, Link } kind = Kind::Input;
  uint32_t index = 0;  ///< of the bank or of the child whose output is the link
};

enum class Storage : uint8_t { FlipFlop, Latch, FallingEdge };

/// How elaboration groups the bits of a register.
enum class Grouping : uint8_t {
  Bits,       ///< a cell for each bit
  Whole,      ///< a cell named q_reg[7:0]
  Unprinted,  ///< a cell named q_reg
  TwoSlices,  ///< cells named q_reg[7:4] and q_reg[3:0]
};

/// Registers that are declared together and computed alike.
struct Bank {
  std::string base;   ///< the declared name, a generate scope included
  std::string field;  ///< of a record
  Layout layout = Layout::Scalar;
  std::vector<Subscript> subscripts;
  Naming naming = Naming::Cleaned;
  Operation operation = Operation::Copy;
  Control control = Control::None;
  bool enabled = false;
  bool isPort = false;  ///< the output port of that name is the register
  bool isScoped = false;
  bool isLive = false;          ///< whatever happens to others
  bool isAlike = false;         ///< the same as the bank before, so that they may be merged
  bool isStateMachine = false;  ///< synthesis replaces its registers by others
  bool inverts = false;         ///< a copy of the operand's inverse
  Storage storage = Storage::FlipFlop;
  Grouping grouping = Grouping::Bits;
  uint32_t index = 0;
  uint32_t rows = 1;
  uint32_t width = 1;
  Operand a;
  Operand b;
  uint32_t first = 0;  ///< number of the first register within the module

  uint32_t size() const { return rows * width; }
};

enum class Fate : uint8_t {
  Live,
  Constant0,
  Constant1,
  Removed,
  Merged,    ///< another register stands for it
  Inverted,  ///< it is there, but holds the inverse
};

/// What became of one register.
struct Outcome {
  Fate fate = Fate::Live;
  bool isWhole = false;   ///< all bits of its bank went the same way
  bool isInTwin = false;  ///< the survivor is a register of the module's twin
  uint32_t survivor = 0;  ///< of a merged register: another of the module, or a bit of the twin's
                          ///< port dout
};

enum class Flattening : uint8_t { Kept, Slash, Underscore };

struct Child {
  uint32_t definition = 0;
  std::string name;                          ///< as written in the source: u3, gen[2].u
  Flattening flattening = Flattening::Kept;  ///< what synthesis did with it
};

/// The module beside another in their parent, right before it. Both have one instance.
struct Twin {
  uint32_t definition = 0;
  std::string name;
  uint32_t width = 0;  ///< of its port dout
};

/// A bus port as declared in the source.
struct BusPort {
  std::string base;
  std::vector<Subscript> subscripts;  ///< the last is a range
  bool isBits = false;                ///< netlists have a single port for each bit
};

/// The ports of a module that differ from one to another.
struct Ports {
  BusPort din;
  BusPort dout;
  BusPort source;  ///< the register that drives dout, of the same name as a rule
  std::string valid;
};

/// One module definition in full. Ports of every module: clk, rst, en, sel[0] and sel[1] (single
/// ports), din (an array), dout (an array) and valid.
struct Module {
  std::string name;
  uint64_t seed = 0;
  bool isTop = false;
  uint32_t inputWidth = 0;
  uint32_t outputWidth = 0;
  uint32_t registers = 0;
  bool hasValid = false;
  Ports ports;
  std::vector<Bank> banks;
  std::vector<Child> children;
  std::optional<Hazards> hazards;
  std::optional<Twin> twin;
  std::vector<Outcome> outcomes;  ///< of each register, where there are hazards

  bool has(Hazard hazard) const { return hazards && hazards->has(hazard); }
  /// What synthesis made of a register. The first of several is live, so that a bus can feed
  /// others; what drives a port is live, so that ports mean the same in both netlists.
  Fate fate(const Bank& bank, uint32_t bit) const;
  /// Whether the synthesized netlist has a flip-flop for the register.
  bool isImplemented(const Bank& bank, uint32_t bit) const;
  /// Whether synthesis named the register's output net after the instance.
  bool hasToolNet(const Bank& bank, uint32_t bit) const;
  /// Whether the net that drives the register's data input kept the name it has in the source.
  bool keepsNextNet(const Bank& bank, uint32_t bit) const;
};

/// A design: the plan of its hierarchy. Module bodies are made on demand from the seed, so a
/// design of any size needs little memory.
class Design {
 public:
  explicit Design(const Options& options);

  const Options& options() const { return options_; }

  /// Definitions are numbered from 0; each comes after those that it instantiates, the top last.
  uint32_t definitions() const { return static_cast<uint32_t>(plans_.size()); }
  uint32_t top() const { return definitions() - 1; }
  std::string definitionName(uint32_t definition) const;
  uint32_t portWidth(uint32_t definition) const { return plans_[definition].portWidth; }
  bool hasValid(uint32_t definition) const;
  Ports ports(uint32_t definition) const;
  Module module(uint32_t definition) const;

  /// One module instance met on a walk.
  struct Visit {
    const Module& module;
    const std::string& path;  ///< below the top, as in the source, with a "/" after each level
    uint64_t firstRegister;   ///< number of its first register within the design
  };
  /// Visits every instance from the top down, children in order. Always in the same order.
  void visitInstances(const std::function<void(const Visit&)>& visitor) const;

 private:
  enum class Level : uint8_t { Unit, Block, Cluster, Stage, Top };
  struct Plan {
    Level level = Level::Unit;
    uint32_t registers = 0;
    uint32_t portWidth = 0;
    size_t group = 0;  ///< the child of the top that it belongs to
    std::vector<Child> children;
    std::optional<Twin> twin;
  };

  uint32_t addPlan(Level level, uint32_t registers, uint32_t portWidth,
                   std::vector<Child> children);
  void planTree(uint64_t& remaining);
  bool planCluster(uint64_t& remaining, std::vector<Child>& parent);
  bool planBlock(uint64_t& remaining, std::vector<Child>& parent);
  void planDeep(uint64_t& remaining);
  void planField(uint64_t& remaining);
  std::string loopName(uint32_t copy) const;
  void addBanks(Module& module, Level level) const;
  bool has(Hazard hazard) const { return options_.hazards && options_.hazards->has(hazard); }
  Flattening flattening(uint32_t definition, uint32_t child) const;
  void visitBelow(uint32_t definition, std::string& path, uint64_t& next,
                  const std::function<void(const Visit&)>& visitor) const;

  Options options_;
  std::vector<Plan> plans_;
  std::vector<Child> topChildren_;
};

/// How lines end in the files of a design.
LineEnd lineEnd(const Design& design);

}  // namespace generate

#endif
