#include "Design.h"

#include "OutputFile.h"
#include "Random.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace generate {

namespace {

constexpr std::array<std::string_view, 16> kScalarWords = {
    "busy", "ready",  "empty", "full",  "start", "done", "ack",   "req",
    "last", "parity", "error", "grant", "lock",  "wrap", "stall", "flush"};
constexpr std::array<std::string_view, 24> kVectorWords = {
    "count", "state", "data", "addr",  "shift",  "acc",   "ptr",       "crc",
    "timer", "level", "head", "tail",  "opcode", "mask",  "credit",    "delay",
    "tap",   "sum",   "coef", "phase", "window", "index", "lane_data", "seq"};
constexpr std::array<std::string_view, 6> kMatrixWords = {"mem",  "fifo", "line",
                                                          "bank", "tbl",  "hist"};
constexpr std::array<std::string_view, 4> kRecordWords = {"pkt", "cfg", "hdr", "stat"};
constexpr std::array<std::string_view, 6> kFields = {"len", "tag", "kind", "src", "prio", "ok"};
constexpr std::array<uint32_t, 11> kVectorWidths = {2, 3, 4, 8, 8, 8, 12, 16, 16, 24, 32};
constexpr std::array<uint32_t, 4> kPortWidths = {4, 8, 8, 16};

constexpr uint32_t kUnitsPerBlock = 5;
constexpr uint32_t kGenerateLoop = 3;
constexpr uint32_t kBlocksPerCluster = 8;
constexpr uint32_t kDeepLevels = 50;
constexpr uint32_t kTopPortWidth = 8;

/// Takes the words of one list in turn, from any word on; numbers follow when all are used.
template <size_t N>
class WordSource {
 public:
  WordSource(const std::array<std::string_view, N>& words, uint32_t start)
      : words_(words), start_(start) {}

  std::string next() {
    std::string name(words_[(start_ + used_) % N]);
    if (used_ >= N) {
      name += '_';
      appendNumber(name, used_ / N);
    }
    ++used_;
    return name;
  }

 private:
  const std::array<std::string_view, N>& words_;
  uint32_t start_;
  uint32_t used_ = 0;
};

/// Invents the banks of one module.
class BankMaker {
 public:
  BankMaker(Module& module, std::string_view prefix, bool renames)
      : module_(module), random_(module.seed), prefix_(prefix), renames_(renames) {}

  void fill(uint32_t registers) {
    while (registers > 0) {
      Bank bank = declare(registers);
      registers -= bank.size();
      add(std::move(bank));
    }
  }

  void addPort(std::string_view name, Layout layout, uint32_t width) {
    Bank bank;
    bank.base = name;
    bank.layout = layout;
    bank.width = width;
    bank.isPort = true;
    if (layout == Layout::Vector && random_.percent(20)) bank.naming = Naming::BracketInstances;
    add(std::move(bank));
  }

 private:
  Bank declare(uint32_t limit) {
    const uint32_t choice = random_.below(100);
    if (limit < 2 || choice < 22) return declareScalar();
    if (limit >= 16 && choice < 34) return declareMatrix(limit);
    if (choice < 42) return declareRecord(limit);
    return declareVector(limit);
  }

  Bank declareScalar() {
    Bank bank;
    bank.base = scoped(bank, scalars_.next());
    return bank;
  }

  Bank declareVector(uint32_t limit) {
    Bank bank;
    bank.layout = Layout::Vector;
    bank.width = std::min(kVectorWidths[random_.below(kVectorWidths.size())], limit);
    bank.base = scoped(bank, vectors_.next());
    if (!bank.isScoped) {
      if (bank.width <= 8 && random_.below(250) == 0) {
        bank.naming = Naming::BracketNets;
      } else if (random_.percent(20)) {
        bank.naming = Naming::BracketInstances;
      }
    }
    return bank;
  }

  Bank declareMatrix(uint32_t limit) {
    Bank bank;
    bank.layout = Layout::Matrix;
    bank.rows = 2 + random_.below(3);
    bank.width = std::min(4 + random_.below(5), limit / bank.rows);
    bank.base = prefix_ + matrices_.next();
    if (random_.percent(20)) bank.naming = Naming::BracketInstances;
    return bank;
  }

  Bank declareRecord(uint32_t limit) {
    Bank bank;
    bank.base = prefix_ + records_.next();
    bank.field = kFields[random_.below(kFields.size())];
    bank.layout = random_.percent(30) ? Layout::RecordScalar : Layout::Record;
    if (bank.layout == Layout::Record) bank.width = std::min(2 + random_.below(7), limit);
    return bank;
  }

  std::string scoped(Bank& bank, std::string name) {
    name.insert(0, prefix_);
    if (!random_.percent(8)) return name;
    bank.isScoped = true;
    std::string scope = "lane[";
    appendNumber(scope, random_.below(4));
    return scope + "]." + name;
  }

  void add(Bank bank) {
    static constexpr std::array<Operation, 10> kOperations = {
        Operation::Copy, Operation::Copy, Operation::Add,       Operation::Add, Operation::Subtract,
        Operation::And,  Operation::Or,   Operation::Multiplex, Operation::Xor, Operation::Xor};
    // Printable names say it all where they exist, so the choice is one of identifiers alone.
    if (renames_) bank.naming = Naming::Cleaned;
    bank.index = static_cast<uint32_t>(module_.banks.size());
    bank.first = next_;
    next_ += bank.size();
    bank.operation = kOperations[random_.below(kOperations.size())];
    bank.control = static_cast<Control>(random_.below(5));
    bank.enabled = random_.percent(50);
    bank.a = bank.index > 0 ? Operand{Operand::Kind::Bank, bank.index - 1} : outside(true);
    bank.b = bank.index > 1 && random_.percent(60)
                 ? Operand{Operand::Kind::Bank, random_.below(bank.index)}
                 : outside(false);
    module_.banks.push_back(std::move(bank));
  }

  /// What comes from beyond the module's own registers.
  Operand outside(bool last) {
    const auto children = static_cast<uint32_t>(module_.children.size());
    if (children == 0) return {};
    return {Operand::Kind::Link, last ? children - 1 : random_.below(children)};
  }

  Module& module_;
  Random random_;
  std::string prefix_;
  bool renames_;
  uint32_t next_ = 0;
  WordSource<kScalarWords.size()> scalars_{kScalarWords, random_.below(kScalarWords.size())};
  WordSource<kVectorWords.size()> vectors_{kVectorWords, random_.below(kVectorWords.size())};
  WordSource<kMatrixWords.size()> matrices_{kMatrixWords, random_.below(kMatrixWords.size())};
  WordSource<kRecordWords.size()> records_{kRecordWords, random_.below(kRecordWords.size())};
};

std::string numbered(std::string_view word, uint64_t number) {
  std::string text(word);
  appendNumber(text, number);
  return text;
}

}  // namespace

Fate Module::fate(const Bank& bank, uint32_t bit) const {
  if (bank.isPort || (bit == 0 && bank.size() > 1)) return Fate::Live;
  const uint64_t lot = scramble(seed, 1, bank.index, bit);
  const uint64_t share = (lot >> 8) % 1000;
  if (share < 15) return (lot & 1) != 0 ? Fate::Constant1 : Fate::Constant0;
  return share < 25 ? Fate::Removed : Fate::Live;
}

bool Module::hasToolNet(const Bank& bank, uint32_t bit) const {
  if (bank.isPort || bank.naming == Naming::BracketNets) return false;
  return scramble(seed, 2, bank.index, bit) % 100 < 3;
}

bool Module::keepsNextNet(const Bank& bank, uint32_t bit) const {
  return (scramble(seed, 3, bank.index, bit) & 1) != 0;
}

Design::Design(const Options& options) : options_(options) {
  uint64_t remaining = options.registers;
  if (options.shape == Shape::Tree || options.shape == Shape::Narrow) planTree(remaining);
  if (options.shape == Shape::Deep) planDeep(remaining);
  // The top takes what is left, so the design has exactly as many registers as asked for.
  addPlan(Level::Top, static_cast<uint32_t>(remaining), kTopPortWidth, std::move(topChildren_));
}

uint32_t Design::addPlan(Level level, uint32_t registers, uint32_t portWidth,
                         std::vector<Child> children) {
  plans_.push_back(
      {level, registers, std::min(portWidth, std::max(registers, 1U)), std::move(children)});
  return static_cast<uint32_t>(plans_.size()) - 1;
}

void Design::planTree(uint64_t& remaining) {
  constexpr uint64_t kTopShare = 24;
  if (remaining <= kTopShare) return;
  remaining -= kTopShare;
  while (planCluster(remaining, topChildren_)) {
  }
  remaining += kTopShare;
}

bool Design::planCluster(uint64_t& remaining, std::vector<Child>& parent) {
  constexpr uint32_t kClusterShare = 20;
  if (remaining < kClusterShare) return false;
  uint64_t budget = remaining - kClusterShare;
  std::vector<Child> children;
  while (children.size() < kBlocksPerCluster && planBlock(budget, children)) {
  }
  if (children.empty()) return false;
  remaining = budget;
  const uint32_t definition = addPlan(Level::Cluster, kClusterShare, 8, std::move(children));
  parent.push_back({definition, numbered("c", parent.size())});
  return true;
}

bool Design::planBlock(uint64_t& remaining, std::vector<Child>& parent) {
  const bool narrow = options_.shape == Shape::Narrow;
  const uint32_t blockShare = narrow ? 4 : 12;
  if (remaining < blockShare) return false;
  uint64_t budget = remaining - blockShare;
  Random random(scramble(options_.seed, 4, plans_.size()));
  std::vector<Child> children;
  for (uint32_t unit = 0; unit <= kUnitsPerBlock; ++unit) {
    const bool isLoop = unit == kUnitsPerBlock;
    const uint32_t copies = isLoop ? kGenerateLoop : 1;
    const uint32_t registers = narrow ? 3 + random.below(4) : 24 + random.below(49);
    const uint32_t width = narrow ? 2 : kPortWidths[random.below(kPortWidths.size())];
    if (budget < uint64_t{copies} * registers) break;
    budget -= uint64_t{copies} * registers;
    const uint32_t definition = addPlan(Level::Unit, registers, width, {});
    for (uint32_t copy = 0; copy < copies; ++copy) {
      children.push_back(
          {definition, isLoop ? numbered("gen[", copy) + "].u" : numbered("u", unit)});
    }
  }
  if (children.empty()) return false;
  remaining = budget;
  const uint32_t definition =
      addPlan(Level::Block, blockShare, narrow ? 2 : 8, std::move(children));
  parent.push_back({definition, numbered("b", parent.size())});
  return true;
}

void Design::planDeep(uint64_t& remaining) {
  constexpr uint32_t kStageRegisters = 32;
  constexpr uint64_t kChain = uint64_t{kDeepLevels - 1} * kStageRegisters;
  do {
    const auto registers =
        static_cast<uint32_t>(std::min<uint64_t>(kStageRegisters, remaining / kDeepLevels));
    if (registers == 0) return;
    uint32_t definition = addPlan(Level::Stage, registers, 8, {});
    for (uint32_t level = kDeepLevels - 2; level > 0; --level) {
      std::vector<Child> children;
      children.push_back({definition, numbered("s", level)});
      definition = addPlan(Level::Stage, registers, 8, std::move(children));
    }
    remaining -= uint64_t{kDeepLevels - 1} * registers;
    topChildren_.push_back({definition, numbered("d", topChildren_.size())});
  } while (remaining > kChain);
}

std::string Design::definitionName(uint32_t definition) const {
  switch (plans_[definition].level) {
    case Level::Unit:
      return numbered("unit_", definition);
    case Level::Block:
      return numbered("block_", definition);
    case Level::Cluster:
      return numbered("cluster_", definition);
    case Level::Stage:
      return numbered("stage_", definition);
    case Level::Top:
      break;
  }
  return "top";
}

bool Design::hasValid(uint32_t definition) const {
  return plans_[definition].registers > plans_[definition].portWidth;
}

Module Design::module(uint32_t definition) const {
  const Plan& plan = plans_[definition];
  Module module;
  module.name = definitionName(definition);
  module.seed = scramble(options_.seed, 5, definition);
  module.isTop = plan.level == Level::Top;
  module.inputWidth = plan.portWidth;
  module.outputWidth = plan.portWidth;
  module.registers = plan.registers;
  module.hasValid = hasValid(definition);
  module.children = plan.children;
  addBanks(module, plan.level);
  return module;
}

void Design::addBanks(Module& module, Level level) const {
  // Names differ from level to level: where a path cannot be resolved, a log line is tried on the
  // parent module, and must not meet a register of the same name there.
  static constexpr std::array<std::string_view, 5> kPrefixes = {"", "blk_", "clu_", "", "top_"};
  BankMaker maker(module, kPrefixes[static_cast<size_t>(level)], options_.renames);
  if (module.registers == 0) return;
  const uint32_t valid = module.hasValid ? 1 : 0;
  maker.fill(module.registers - module.outputWidth - valid);
  if (module.hasValid) maker.addPort("valid", Layout::Scalar, 1);
  maker.addPort("dout", Layout::Vector, module.outputWidth);
}

void Design::visitInstances(const std::function<void(const Visit&)>& visitor) const {
  std::string path;
  uint64_t next = 0;
  visitBelow(top(), path, next, visitor);
}

void Design::visitBelow(uint32_t definition, std::string& path, uint64_t& next,
                        const std::function<void(const Visit&)>& visitor) const {
  {
    const Module body = module(definition);
    visitor({body, path, next});
    next += body.registers;
  }
  for (const Child& child : plans_[definition].children) {
    const size_t length = path.size();
    path.append(child.name).push_back('/');
    visitBelow(child.definition, path, next, visitor);
    path.resize(length);
  }
}

}  // namespace generate
