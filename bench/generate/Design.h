#ifndef BENCH_GENERATE_DESIGN_H
#define BENCH_GENERATE_DESIGN_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace generate {

enum class Shape : uint8_t {
  Tree,    ///< four levels, modules of some fifty registers
  Narrow,  ///< four levels, a handful of registers in each of very many modules
  Deep,    ///< chains of fifty levels
  Wide,    ///< one flat module, whose clock net reaches every register
};

struct Options {
  uint64_t registers = 10000;
  uint64_t seed = 1;
  Shape shape = Shape::Tree;
  bool renames = false;  ///< printable names beside the identifiers, as today's tools write
};

enum class Operation : uint8_t { Copy, Add, Subtract, And, Or, Xor, Multiplex };
enum class Control : uint8_t { None, Reset, Set, Clear, Preset };

/// How the registers of a bank are subscripted.
enum class Layout : uint8_t {
  Scalar,       ///< busy
  Vector,       ///< count[3]
  Matrix,       ///< mem[3][5]
  Record,       ///< pkt[len][5]
  RecordScalar  ///< pkt[len]
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

/// Registers that are declared together and computed alike.
struct Bank {
  std::string base;   ///< the declared name, a generate scope included
  std::string field;  ///< of a record
  Layout layout = Layout::Scalar;
  Naming naming = Naming::Cleaned;
  Operation operation = Operation::Copy;
  Control control = Control::None;
  bool enabled = false;
  bool isPort = false;  ///< the output port of that name is the register
  bool isScoped = false;
  uint32_t index = 0;
  uint32_t rows = 1;
  uint32_t width = 1;
  Operand a;
  Operand b;
  uint32_t first = 0;  ///< number of the first register within the module

  uint32_t size() const { return rows * width; }
};

enum class Fate : uint8_t { Live, Constant0, Constant1, Removed };

struct Child {
  uint32_t definition = 0;
  std::string name;  ///< as written in the source: u3, gen[2].u
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
  std::vector<Bank> banks;
  std::vector<Child> children;

  /// What synthesis made of a register. The first of several is live, so that a bus can feed
  /// others; what drives a port is live, so that ports mean the same in both netlists.
  Fate fate(const Bank& bank, uint32_t bit) const;
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
    std::vector<Child> children;
  };

  uint32_t addPlan(Level level, uint32_t registers, uint32_t portWidth,
                   std::vector<Child> children);
  void planTree(uint64_t& remaining);
  bool planCluster(uint64_t& remaining, std::vector<Child>& parent);
  bool planBlock(uint64_t& remaining, std::vector<Child>& parent);
  void planDeep(uint64_t& remaining);
  void addBanks(Module& module, Level level) const;
  void visitBelow(uint32_t definition, std::string& path, uint64_t& next,
                  const std::function<void(const Visit&)>& visitor) const;

  Options options_;
  std::vector<Plan> plans_;
  std::vector<Child> topChildren_;
};

}  // namespace generate

#endif
