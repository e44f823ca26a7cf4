#include <crossreference/DesignState.h>
#include <crossreference/NetlistState.h>
#include <crossreference/RegisterPairs.h>
#include <crossreference/RegisterPlaces.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>

namespace XRF_RTL2LL {

namespace {

void count(Coverage::Counts& counts, const Bit& bit) {
  switch (bit.getKind()) {
    case Bit::STATE:
      ++counts.located;
      break;
    case Bit::CNST:
      ++counts.constant;
      break;
    case Bit::UNREAD:
      ++counts.unread;
      break;
    case Bit::UNKNOWN:
      ++counts.unknown;
      break;
  }
}

void add(Coverage::Counts& sum, const Coverage::Counts& counts) {
  sum.located += counts.located;
  sum.constant += counts.constant;
  sum.merged += counts.merged;
  sum.unread += counts.unread;
  sum.unknown += counts.unknown;
}

bool isEarlierCell(const Module* a, const Module* b) {
  return NameKey::compare(NameKey(*a), NameKey(*b)) < 0;
}

// Tells modules of one path apart: siblings have numbers of their own.
bool isEarlierByNumber(const Module* a, const Module* b) {
  if (a == b || a == nullptr || b == nullptr) return a == nullptr && b != nullptr;
  if (a->getParent() != b->getParent()) return isEarlierByNumber(a->getParent(), b->getParent());
  return a->getId() < b->getId();
}

/// Counts the register bits of the RTL module by module. What costs more than a look at a bit is
/// spent on bits of several registers alone.
class RegisterCount {
 public:
  explicit RegisterCount(const NetlistState& state) : m_state(state) {}

  Coverage run();

 private:
  // One bit of a register's output.
  struct OutputBit {
    const Module* cell;
    const Bit* bit;
  };
  using Cells = std::vector<const Module*>;
  using Places = std::vector<BitRef*>;

  void collect();
  bool isOfRtl(const Module& cell);
  void countShared(const Bit& bit, const Cells& cells);
  const BitRef* survivorOf(const Places& places);
  Coverage::Counts& countsAround(const Module& cell) { return m_counts[cell.getParent()]; }
  Coverage summed() const;

  const NetlistState& m_state;
  std::vector<OutputBit> m_bits;
  std::unordered_map<const Bit*, Cells> m_shared;
  std::unordered_map<const Module*, Coverage::Counts> m_counts;  // by what holds the registers
  std::unordered_map<const Module*, bool> m_of_rtl;  // whether a module is below the RTL's root
};

Coverage RegisterCount::run() {
  collect();
  for (const OutputBit& one : m_bits) {
    const auto shared = m_shared.find(one.bit);
    if (shared == m_shared.end()) {
      count(countsAround(*one.cell), *one.bit);
    } else {
      shared->second.push_back(one.cell);
    }
  }
  for (const auto& [bit, cells] : m_shared) countShared(*bit, cells);
  return summed();
}

// Cells whose names became one are still cells, so the registry of names is no place to count them.
void RegisterCount::collect() {
  const Module* root = m_state.top[RTL];
  while (root != nullptr && root->getParent() != nullptr) root = root->getParent();
  m_of_rtl[root] = true;
  std::unordered_set<const Bit*> seen;
  m_state.model.signals.each([&](const Signal* output) {
    if (!output->isSrcState()) return;
    const Module* cell = output->getModule();
    if (!RegisterTies::isRegister(m_state, *cell) || !isOfRtl(*cell)) return;
    eachRef(*output, [&](const BitRef& ref) {
      const Bit* bit = ref.getBit();
      if (bit == nullptr) return;
      m_bits.push_back({cell, bit});
      if (!seen.insert(bit).second) m_shared.try_emplace(bit);
    });
  });
}

bool RegisterCount::isOfRtl(const Module& cell) {
  std::vector<const Module*> above;
  bool ofRtl = false;
  for (const Module* module = &cell; module != nullptr; module = module->getParent()) {
    const auto known = m_of_rtl.find(module);
    if (known != m_of_rtl.end()) {
      ofRtl = known->second;
      break;
    }
    if (module != &cell) above.push_back(module);
  }
  for (const Module* module : above) m_of_rtl[module] = ofRtl;
  return ofRtl;
}

// A register with a place of its own was merged with the others on purpose. One without was laid
// there for want of anything better, and nothing is known of it.
void RegisterCount::countShared(const Bit& bit, const Cells& cells) {
  std::unordered_map<const Module*, std::uint64_t> unplaced;
  for (const Module* cell : cells) ++unplaced[cell->getParent()];
  Places places = registerPlaces(m_state, RTL, bit);
  std::erase_if(places, [&](const BitRef* place) {
    const auto around = unplaced.find(place->getSignal()->getModule());
    if (around == unplaced.end() || around->second == 0) return true;
    --around->second;
    return false;
  });
  if (places.empty()) {
    const Module* first = *std::min_element(cells.begin(), cells.end(), isEarlierCell);
    --unplaced[first->getParent()];
    count(countsAround(*first), bit);
  } else {
    const BitRef* survivor = survivorOf(places);
    count(m_counts[survivor->getSignal()->getModule()], bit);
    for (const BitRef* place : places) {
      if (place != survivor) ++m_counts[place->getSignal()->getModule()].merged;
    }
  }
  for (const auto& [holder, number] : unplaced) m_counts[holder].unknown += number;
}

// The place that the implementation has; the first one where that is no answer.
const BitRef* RegisterCount::survivorOf(const Places& places) {
  if (places.size() == 1) return places.front();
  const std::shared_ptr<const RegisterPairs> pairs = RegisterPairs::of(m_state);
  const auto implemented = [&](const BitRef* place) { return pairs->isImplemented(*place); };
  const auto found = std::find_if(places.begin(), places.end(), implemented);
  const bool alone = found != places.end() && std::none_of(found + 1, places.end(), implemented);
  return alone ? *found : places.front();
}

Coverage RegisterCount::summed() const {
  struct Holder {
    const Module* module;
    Coverage::ModuleCounts counts;
  };
  Coverage coverage;
  std::vector<Holder> holders;
  for (const auto& [module, counts] : m_counts) {
    add(coverage.all, counts);
    const bool isRoot = module == nullptr || module->getParent() == nullptr;
    holders.push_back({module, {isRoot ? "" : NameKey(*module).compose(), counts}});
  }
  std::sort(holders.begin(), holders.end(), [](const Holder& a, const Holder& b) {
    const int order = a.counts.path.compare(b.counts.path);
    return order != 0 ? order < 0 : isEarlierByNumber(a.module, b.module);
  });
  for (Holder& holder : holders) coverage.modules.push_back(std::move(holder.counts));
  return coverage;
}

}  // namespace

Coverage Design::coverage() const {
  const DesignUse use(m_state->model);
  return RegisterCount(*m_state->netlist->m_state).run();
}

}  // namespace XRF_RTL2LL
