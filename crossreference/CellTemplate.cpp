#include <crossreference/CellTemplate.h>
#include <crossreference/MemberSet.h>
#include <crossreference/NameRegistry.h>

#include <unordered_map>
#include <unordered_set>

namespace XRF_RTL2LL {

namespace {

// The range of a port that a copy must be entered with. The members of any other count down from
// its highest index, as they do where no range is known, and nothing widens the ports of a copy.
std::optional<DeclaredRange> rangeToEnter(const Signal& port, const PortRanges& ranges) {
  const auto known = ranges.find(&port);
  if (known == ranges.end()) return std::nullopt;
  const DeclaredRange& range = known->second;
  const bool usual = !range.foreign && range.left == port.getMsb() && range.right <= range.left;
  return usual ? std::nullopt : std::optional(range);
}

}  // namespace

std::optional<CellTemplate> CellTemplate::of(const Module& module, Cost cost,
                                             const PortRanges& ranges) {
  if (module.getKind() == GND || module.getKind() == PWR) return std::nullopt;
  CellTemplate cell;
  cell.m_cost = cost;
  // In the order in which they were made, which is that of the cell's text.
  members::each<Signal>(module.m_signals, [&](const Signal* signal) {
    cell.m_ports.push_back({signal->m_name, signal->m_id, signal->m_lsb, signal->m_msb,
                            signal->getKind(), 0, 0, rangeToEnter(*signal, ranges)});
    cell.m_objects += std::uint64_t{1} + signal->getWidth();
  });
  std::unordered_set<const Word*> names;
  std::unordered_map<std::uint32_t, Port*> ports;
  for (Port& port : cell.m_ports) {
    if (!names.insert(port.name).second || !isPlainName(port.name)) return std::nullopt;
    ports.emplace(port.id, &port);
  }
  members::settle<Signal>(module.m_signals, false);
  cell.m_listed = module.m_signals.listed;
  cell.m_numbers = static_cast<std::uint32_t*>(
      ModelState::current().arena.allocate(module.m_signals.count * sizeof(std::uint32_t)));
  for (std::uint32_t at = 0; at < module.m_signals.count; ++at) {
    const std::uintptr_t slot = module.m_signals.slots[at];
    const std::uint32_t id = members::object<Signal>(slot)->getId();
    Port& port = *ports.at(id);
    cell.m_numbers[at] = id;
    port.slot = at;
    port.marks = slot & members::marks;
  }
  return cell;
}

bool CellTemplate::fits(const NetlistState& state, EdifView view, const Module& module) const {
  return module.m_signals.count == 0 && module.children().count == 0 &&
         state.budget->left() >= m_objects && state.signals.at(view).isPlain(module);
}

void CellTemplate::copyTo(NetlistState& state, EdifView view, Module& module,
                          PortRanges& ranges) const {
  ModelState& model = state.model;
  state.budget->count(m_objects);
  const auto count = static_cast<std::uint32_t>(m_ports.size());
  detail::Members& set = module.m_signals;
  members::reserve(model.arena, set, count);
  for (const Port& port : m_ports) {
    auto* signal = new (model.arena.allocate(sizeof(Signal)))
        Signal(model, &module, port.name, port.id, port.lsb, port.msb, true);
    signal->promiseBits(model);
    signal->m_kind = port.kind;
    signal->m_port = true;
    state.signals.at(view).hold(*signal);
    set.slots[port.slot] = reinterpret_cast<std::uintptr_t>(signal) | port.marks;
    if (port.range) ranges[signal] = *port.range;
  }
  // Only now, since memory may run out on the way.
  set.count = count;
  set.listed = m_listed;
  set.settled = true;
  members::indexAll<Signal>(model.arena, set);
  members::shareNumbers(set, m_numbers);
}

}  // namespace XRF_RTL2LL
