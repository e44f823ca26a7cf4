#include <tools/xrf/ModelCounts.h>
#include <tools/xrf/ModuleWalk.h>
#include <tools/xrf/Table.h>

#include <algorithm>
#include <vector>

namespace xrf {

using XRF_RTL2LL::Bit;
using XRF_RTL2LL::BitRef;
using XRF_RTL2LL::Module;
using XRF_RTL2LL::Signal;

namespace {

// Counts each bit once, by id.
class BitCounter {
 public:
  void add(const Bit& bit) {
    const std::size_t id = bit.getId();
    if (id >= m_seen.size()) m_seen.resize(std::max<std::size_t>(id + 1, 2 * m_seen.size()));
    if (m_seen[id]) return;
    m_seen[id] = true;
    m_counts.add(bit.getKind());
  }

  void add(const Signal& signal) {
    const std::uint64_t msb = signal.getMsb();
    for (std::uint64_t index = signal.getLsb(); index <= msb; ++index) {
      const BitRef* ref = signal.getBitRef(static_cast<unsigned>(index), true);
      const Bit* bit = ref == nullptr ? nullptr : ref->getBit();
      if (bit != nullptr) add(*bit);
    }
  }

  const BitCounts& counts() const { return m_counts; }

 private:
  std::vector<bool> m_seen;
  BitCounts m_counts;
};

Json viewJson(const ViewCounts& view) {
  return {{"modules", view.modules},        {"hiddenModules", view.hiddenModules},
          {"signals", view.signals},        {"hiddenSignals", view.hiddenSignals},
          {"bits", view.bits.total()},      {"located", view.bits.located},
          {"constant", view.bits.constant}, {"unread", view.bits.unread},
          {"unknown", view.bits.unknown}};
}

void appendBits(Table::Row& row, const BitCounts& bits) {
  for (const std::uint64_t count :
       {bits.total(), bits.located, bits.constant, bits.unread, bits.unknown}) {
    row.push_back({std::to_string(count)});
  }
}

Table::Row viewRow(const char* name, const ViewCounts& view) {
  Table::Row row{{name},
                 {std::to_string(view.modules)},
                 {std::to_string(view.hiddenModules)},
                 {std::to_string(view.signals)},
                 {std::to_string(view.hiddenSignals)}};
  appendBits(row, view.bits);
  return row;
}

}  // namespace

void BitCounts::add(Bit::BitKind kind) {
  switch (kind) {
    case Bit::STATE:
      ++located;
      break;
    case Bit::CNST:
      ++constant;
      break;
    case Bit::UNREAD:
      ++unread;
      break;
    case Bit::UNKNOWN:
      ++unknown;
      break;
  }
}

ViewCounts countView(Module* top) {
  ViewCounts view;
  BitCounter bits;
  const auto enter = [&](Module* module, std::size_t) {
    ++view.modules;
    if (module->isHidden()) ++view.hiddenModules;
    for (const Signal* signal : module->getSignals(false)) {
      ++view.signals;
      if (signal->isHidden()) ++view.hiddenSignals;
      bits.add(*signal);
    }
    return true;
  };
  walkModules(top, enter, [](Module*, std::size_t) {});
  view.bits = bits.counts();
  return view;
}

BitCounts countAllBits() {
  BitCounts counts;
  for (const Bit* bit : Bit::getAllBits()) counts.add(bit->getKind());
  return counts;
}

DesignCounts::DesignCounts(const XRF_RTL2LL::Netlist& netlist)
    : rtl(countView(netlist.getTop(XRF_RTL2LL::RTL))),
      synth(countView(netlist.getTop(XRF_RTL2LL::SYNTH))) {}

Json viewsJson(const DesignCounts& counts) {
  return {{"rtl", viewJson(counts.rtl)}, {"synth", viewJson(counts.synth)}};
}

std::string viewsText(const DesignCounts& counts, const BitCounts* all, bool colored) {
  using enum Table::Align;
  Table table({{"VIEW", Left},
               {"MODULES", Right},
               {"(HIDDEN)", Right},
               {"SIGNALS", Right},
               {"(HIDDEN)", Right},
               {"BITS", Right},
               {"LOCATED", Right},
               {"CONSTANT", Right},
               {"UNREAD", Right},
               {"UNKNOWN", Right}},
              colored);
  std::vector<Table::Row> rows{viewRow("rtl", counts.rtl), viewRow("synth", counts.synth)};
  if (all != nullptr) {
    rows.push_back({{"all"}, {""}, {""}, {""}, {""}});
    appendBits(rows.back(), *all);
  }
  return table.text(rows);
}

}  // namespace xrf
