#include "Design.h"

#include "Banks.h"
#include "HazardBanks.h"
#include "HazardPorts.h"
#include "Outcomes.h"
#include "OutputFile.h"
#include "Random.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace generate {

namespace {

constexpr std::array<uint32_t, 4> kPortWidths = {4, 8, 8, 16};

constexpr uint32_t kUnitsPerBlock = 5;
constexpr uint32_t kGenerateLoop = 3;
constexpr uint32_t kBlocksPerCluster = 8;
constexpr uint32_t kDeepLevels = 50;
constexpr uint32_t kTopPortWidth = 8;
/// Where there are few levels, names tell more.
constexpr std::string_view kFieldPrefix = "datapath_stage_";

std::string numbered(std::string_view word, uint64_t number) {
  std::string text(word);
  appendNumber(text, number);
  return text;
}

}  // namespace

uint32_t Subscript::size() const {
  return field.empty() ? static_cast<uint32_t>(std::abs(left - right)) + 1 : 1;
}

int32_t Subscript::index(uint32_t place) const {
  const auto distance = static_cast<int32_t>(place);
  return left >= right ? right + distance : right - distance;
}

Fate Module::fate(const Bank& bank, uint32_t bit) const {
  if (hazards) return outcomes[bank.first + bit].fate;
  if (bank.isPort || (bit == 0 && bank.size() > 1)) return Fate::Live;
  const uint64_t lot = scramble(seed, 1, bank.index, bit);
  const uint64_t share = (lot >> 8) % 1000;
  if (share < 15) return (lot & 1) != 0 ? Fate::Constant1 : Fate::Constant0;
  return share < 25 ? Fate::Removed : Fate::Live;
}

bool Module::isImplemented(const Bank& bank, uint32_t bit) const {
  const Fate is = fate(bank, bit);
  return is == Fate::Live || is == Fate::Inverted;
}

bool Module::hasToolNet(const Bank& bank, uint32_t bit) const {
  if (hazards || bank.isPort || bank.naming == Naming::BracketNets) return false;
  return scramble(seed, 2, bank.index, bit) % 100 < 3;
}

bool Module::keepsNextNet(const Bank& bank, uint32_t bit) const {
  return (scramble(seed, 3, bank.index, bit) & 1) != 0;
}

Design::Design(const Options& options) : options_(options) {
  uint64_t remaining = options.registers;
  if (options.shape == Shape::Tree || options.shape == Shape::Narrow) planTree(remaining);
  if (options.shape == Shape::Deep) planDeep(remaining);
  if (options.shape == Shape::Field) planField(remaining);
  // The top takes what is left, so the design has exactly as many registers as asked for.
  addPlan(Level::Top, static_cast<uint32_t>(remaining), kTopPortWidth, std::move(topChildren_));
}

uint32_t Design::addPlan(Level level, uint32_t registers, uint32_t portWidth,
                         std::vector<Child> children) {
  plans_.push_back({level,
                    registers,
                    std::min(portWidth, std::max(registers, 1U)),
                    topChildren_.size(),
                    std::move(children),
                    {}});
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
  parent.push_back({definition, numbered("c", parent.size()), {}});
  return true;
}

std::string Design::loopName(uint32_t copy) const {
  if (has(Hazard::Blanks) && options_.seed % 2 == 0) return numbered("gen(", copy) + ").u";
  if (!options_.hazards || has(Hazard::Scopes)) return numbered("gen[", copy) + "].u";
  return numbered("v", copy);
}

bool Design::planBlock(uint64_t& remaining, std::vector<Child>& parent) {
  const bool narrow = options_.shape == Shape::Narrow;
  const uint32_t blockShare = narrow ? 4 : has(Hazard::FlattenCollisions) ? 28 : 12;
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
    if (unit > 0 && !isLoop) {
      plans_.back().twin = Twin{children.back().definition, children.back().name,
                                portWidth(children.back().definition)};
    }
    for (uint32_t copy = 0; copy < copies; ++copy) {
      children.push_back({definition, isLoop ? loopName(copy) : numbered("u", unit), {}});
    }
  }
  if (children.empty()) return false;
  remaining = budget;
  const uint32_t definition =
      addPlan(Level::Block, blockShare, narrow ? 2 : 8, std::move(children));
  parent.push_back({definition, numbered("b", parent.size()), {}});
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
      children.push_back({definition, numbered("s", level), {}});
      definition = addPlan(Level::Stage, registers, 8, std::move(children));
    }
    remaining -= uint64_t{kDeepLevels - 1} * registers;
    topChildren_.push_back({definition, numbered("d", topChildren_.size()), {}});
  } while (remaining > kChain);
}

void Design::planField(uint64_t& remaining) {
  constexpr uint32_t kLeast = 1000;
  constexpr uint32_t kPortWidth = 32;
  while (remaining > uint64_t{2} * kLeast) {
    Random random(scramble(options_.seed, 4, plans_.size()));
    const uint32_t registers = kLeast + random.below(kLeast);
    const uint32_t definition = addPlan(Level::Unit, registers, kPortWidth, {});
    remaining -= registers;
    topChildren_.push_back({definition, numbered("u", topChildren_.size()), {}});
  }
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

Ports Design::ports(uint32_t definition) const {
  const uint64_t seed = scramble(options_.seed, 5, definition);
  if (options_.hazards) return hazardPorts(*options_.hazards, seed, portWidth(definition));
  const Subscript range{"", static_cast<int32_t>(portWidth(definition)) - 1, 0};
  return {{"din", {range}}, {"dout", {range}}, {"dout", {range}}, "valid"};
}

Flattening Design::flattening(uint32_t definition, uint32_t child) const {
  const bool slash = has(Hazard::FlattenSlash);
  const bool underscore = has(Hazard::FlattenUnderscore) || has(Hazard::FlattenCollisions);
  if (!slash && !underscore) return Flattening::Kept;
  if (scramble(options_.seed, 20, definition, child) % 10 < 3) return Flattening::Kept;
  // One way for all that lies below a child of the top, as a tool has one for a netlist.
  const size_t group = plans_[plans_[definition].children[child].definition].group;
  const bool isEven = (scramble(options_.seed, 21) + group) % 2 == 0;
  return slash && (!underscore || isEven) ? Flattening::Slash : Flattening::Underscore;
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
  module.ports = ports(definition);
  module.children = plan.children;
  module.hazards = options_.hazards;
  module.twin = plan.twin;
  for (uint32_t child = 0; child < module.children.size(); ++child) {
    module.children[child].flattening = flattening(definition, child);
  }
  addBanks(module, plan.level);
  return module;
}

void Design::addBanks(Module& module, Level level) const {
  // Names differ from level to level: where a path cannot be resolved, a log line is tried on the
  // parent module, and must not meet a register of the same name there.
  static constexpr std::array<std::string_view, 5> kPrefixes = {"", "blk_", "clu_", "", "top_"};
  if (module.registers == 0) return;
  const bool isField = options_.shape == Shape::Field;
  const std::string_view prefix = isField ? kFieldPrefix : kPrefixes[static_cast<size_t>(level)];
  if (!options_.hazards) {
    addPlainBanks(module, prefix, options_.renames);
    return;
  }
  addHazardBanks(module, has(Hazard::ParentNames) ? "" : prefix);
  decideOutcomes(module);
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

LineEnd lineEnd(const Design& design) {
  const std::optional<Hazards>& hazards = design.options().hazards;
  return hazards && hazards->has(Hazard::Crlf) ? LineEnd::CrLf : LineEnd::Lf;
}

}  // namespace generate
