#include <crossreference/LeafText.h>
#include <crossreference/MemberSet.h>
#include <crossreference/NetlistState.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/Utils.h>
#include <crossreference/XrfRecords.h>
#include <support/FileLines.h>
#include <support/Prefetch.h>
#include <support/Report.h>
#include <support/Scan.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace XRF_RTL2LL {

namespace {

std::string_view withoutMargin(std::string_view line) {
  constexpr std::string_view blanks = "        ";
  while (line.size() >= blanks.size() && std::memcmp(line.data(), blanks.data(), 8) == 0) {
    line.remove_prefix(blanks.size());
  }
  const auto isMargin = [](char byte) {
    return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t';
  };
  while (!line.empty() && isMargin(line.front())) line.remove_prefix(1);
  return line;
}

/// The bits of a file by their numbers. They lie one after another, so that their numbers tell
/// where.
class LoadedBits {
 public:
  explicit LoadedBits(ModelState& model) : m_model(model) {}

  std::size_t size() const { return m_there.size(); }
  /// Makes room for the bits below a number, and forgets those from there on.
  void declare(std::uint32_t count);
  /// Makes the bit of a number, which takes the place of an earlier one.
  Bit* make(std::uint32_t number);
  bool has(std::uint32_t number) const { return number < m_there.size() && m_there[number]; }
  /// One that is there.
  Bit* at(std::uint32_t number) const {
    if (!m_elsewhere.empty()) {
      const auto found = m_elsewhere.find(number);
      if (found != m_elsewhere.end()) return found->second;
    }
    return m_bits + number;
  }
  void prefetch(std::uint32_t number) const {
    if (number < m_there.size()) prefetchWhole(m_bits[number]);
  }

 private:
  ModelState& m_model;
  Bit* m_bits = nullptr;
  std::vector<bool> m_there;
  std::unordered_map<std::uint32_t, Bit*> m_elsewhere;  // repeated, or declared before others
};

void LoadedBits::declare(std::uint32_t count) {
  m_there.resize(count);
  for (std::uint32_t number = 0; number < count; ++number) {
    if (m_there[number]) m_elsewhere[number] = at(number);
  }
  m_bits = static_cast<Bit*>(m_model.arena.allocate(count * sizeof(Bit)));
}

Bit* LoadedBits::make(std::uint32_t number) {
  if (!m_there[number]) {
    m_there[number] = true;
    m_elsewhere.erase(number);
    return new (m_bits + number) Bit(number);
  }
  return m_elsewhere[number] = new Bit(number);
}

}  // namespace

/// Rebuilds both views from the lines of a cross-reference file.
class XrfReader {
 public:
  XrfReader(Netlist& netlist, NetlistState& state, const std::string& path, const TextSource& text);

  void read();

 private:
  void parse_line(std::string_view line);
  bool parse_bit(std::string_view line);
  bool parse_signals(std::string_view line);
  bool parse_module(std::string_view line);
  bool parse_view(std::string_view line);
  bool parse_header(std::string_view line);

  void checkSignal(const SignalRecord& record, std::string_view line);
  void linkBits(Signal& signal, std::string_view numbers);
  void linkBit(Signal& signal, std::uint64_t index, std::uint32_t number);
  void join(Signal& signal, Net& net);
  bool copyLeaf(Module& module);
  bool areThere(const std::vector<LeafText::Place>& places) const;
  void copyPorts(Module& module, const LeafText& leaf);
  void learnLeaf(const Module& module);
  static void close(Module& module);
  static void forgetVisible(Module& module);
  void closeModules(std::ptrdiff_t count);
  void closeAll();
  void declareBits(std::uint32_t count);
  void declareNets(std::uint32_t count);
  bool mayDeclare(std::uint64_t sum) const;
  void checkDeclared(std::uint64_t& sum, std::uint64_t count, const char* what) const;
  std::uint64_t objectsOfBothViews() const;
  Module& front() const;
  void settleNets();
  void recallRegisters();
  void finish();

  Netlist& m_netlist;
  NetlistState& m_state;
  FileLines m_lines;
  // Signals of following lines, scanned together so that the waits for what they name overlap.
  struct ScannedSignal {
    std::string_view line;
    std::size_t bytes = 0;  // from the end of the line before it
    std::uint64_t lines = 0;
    SignalRecord record;
    std::uint32_t hash = 0;  // of its name
  };
  std::size_t scanAhead();
  void askFor(ScannedSignal& signal) const;
  // The record of a module whose line comes next.
  struct ScannedModule {
    ModuleRecord record;
    std::array<std::size_t, 2> places{};  // of definition and name in the line
    bool hidden = false;
    std::uint32_t hash = 0;  // of the name
    std::uint64_t end = 0;   // of the line in the file
  };
  void passEmptyLines();
  void askForModule(std::string_view text, std::ptrdiff_t closing);
  bool scanModule(std::string_view line);
  void addSignal(const ScannedSignal& scanned);

  std::array<ScannedSignal, 8> m_scanned;
  ScannedModule m_module;
  EdifView m_view = RTL;
  std::uint32_t m_version = 0;
  std::array<ObjectBudget, 2> m_budget;  // of each view; the file's bits may all be of either
  std::uint64_t m_path_bytes = 0;
  std::uint64_t m_declared_bits = 0;
  std::uint64_t m_bit_records = 0;
  std::uint64_t m_declared_nets = 0;
  std::uint64_t m_declared_indices = 0;
  std::uint32_t m_highest_bit = 0;
  LoadedBits m_bits;
  Net* m_nets = nullptr;  // those of the file, one after another
  std::size_t m_net_count = 0;
  std::array<Module*, 2> m_roots{};
  std::vector<Module*> m_modules;  // the open ones, the view's root first
  // Of a cell: its text, and how many of its instances were met without one.
  struct Leaf {
    std::optional<LeafText> text;
    unsigned met = 0;
  };
  Leaf& leafOf(const Module& module);

  std::unordered_map<const Word*, Leaf> m_leaves;
  // Those that were asked for last, by the numbers of their names.
  std::array<std::pair<const Word*, Leaf*>, 64> m_last_leaves{};
  std::vector<LeafText::Place> m_places;
};

int Netlist::parse_xrf(std::string path) {
  const StateScope scope(m_state->model);
  m_state->loaded = true;
  const TextSource file(path);
  if (!file.isOpen()) fatal("Can't open file %s\n", path.c_str());
  message(StandardOutput, "Parsing xrf file: %s ...\n", path.c_str());
  XrfReader(*this, *m_state, path, file).read();
  message(StandardOutput, "Parsing xrf file: %s complete.\n\n", path.c_str());
  return 0;
}

XrfReader::XrfReader(Netlist& netlist, NetlistState& state, const std::string& path,
                     const TextSource& text)
    : m_netlist(netlist),
      m_state(state),
      m_lines(path, text, "Reading cross-reference"),
      m_budget{ObjectBudget(state.model.limits), ObjectBudget(state.model.limits)},
      m_bits(state.model) {}

void XrfReader::read() {
  while (m_lines.next()) {
    const std::string_view line = withoutMargin(m_lines.line());
    if (!line.empty()) parse_line(line);
  }
  finish();
}

void XrfReader::finish() {
  if (m_version != utils::getVersion()) {
    message(StandardError,
            "WARNING: The .xrf file format version (%d) and sofware format version (%d) do not "
            "match.\n",
            static_cast<int>(m_version), static_cast<int>(utils::getVersion()));
  }
  settleNets();
  if (m_state.reading.has(Rule::ClosingModules) && m_modules.size() > 1) {
    fatalHere("The file ends before all its modules are closed.");
  }
  closeAll();
  if (m_state.reading.has(Rule::DeclareLoadedBits) && m_highest_bit > Bit::getMaxBitId()) {
    Bit::setMaxBitId(m_highest_bit);
  }
  if (m_state.reading.has(Rule::LoadedRegisters)) recallRegisters();
}

void XrfReader::settleNets() {
  constexpr std::size_t slotsAhead = 24;
  constexpr std::size_t signalsAhead = 16;
  constexpr std::size_t namesAhead = 8;
  const Registry<Net>& nets = m_state.model.nets;
  for (std::size_t place = 0; place < nets.nextPlace(); ++place) {
    using Slots = std::span<const std::uintptr_t>;
    const auto ahead = [&](std::size_t distance, void (*ask)(Slots)) {
      const Net* net = nets.at(place + distance);
      // What stands alone is in order.
      if (net == nullptr || net->m_signals.count < 2) return;
      ask({net->m_signals.slots, net->m_signals.count});
    };
    ahead(slotsAhead, [](Slots slots) { __builtin_prefetch(slots.data()); });
    ahead(signalsAhead, members::prefetchObjects<Signal>);
    ahead(namesAhead, members::prefetchNames<Signal>);
    if (const Net* net = nets.at(place); net != nullptr) net->getSignals();
  }
}

// What a cell is and which register it implements is not stored; their names tell again.
void XrfReader::recallRegisters() {
  for (const EdifView view : {RTL, SYNTH}) {
    RegisterTies ties(m_state, view);
    // Of the cells met so far, counted from 1, by the numbers of their names.
    std::vector<std::uint8_t> kinds;
    m_state.modules[view].each([&](Module* module) {
      const Word* cell = module->m_def_name;
      if (cell == nullptr || module->getParent() == nullptr) return;
      if (cell->number() >= kinds.size()) kinds.resize(std::size_t{cell->number()} + 1);
      std::uint8_t& kind = kinds[cell->number()];
      const unsigned lutMode = view == RTL ? 2 : 0;
      if (kind == 0) {
        const unsigned int code = m_state.tokens->getCode(*cell);
        kind = static_cast<std::uint8_t>(m_state.kindOf(code, lutMode) + 1);
      }
      module->setKind(static_cast<opKind>(kind - 1));
      if (!RegisterTies::isRegister(m_state, *module)) return;
      Signal* output = RegisterTies::outputOf(*module);
      if (output != nullptr) output->setSrcState();
      const NamedBits name = decodeRegister(module->getName());
      if (name.valid) ties.recall(*module->getParent(), *module, name);
    });
  }
}

void XrfReader::parse_line(std::string_view line) {
  bool known = false;
  // The letter after the parenthesis leaves few records to try.
  switch (line.size() > 1 ? line[1] : ' ') {
    case 'S':
      known = parse_signals(line);
      break;
    case 'M':
      known = parse_module(line);
      break;
    case 'B':
      known = parse_bit(line) || parse_header(line);
      break;
    default:
      known = parse_view(line) || parse_header(line);
  }
  if (!known) fatal("Unexpected syntax encountered.\n %s\n", std::string(line).c_str());
}

bool XrfReader::parse_bit(std::string_view line) {
  BitRecord record;
  if (!record.scan(line)) return false;
  if (record.id >= m_bits.size()) {
    fatalHere("Bit %u is beyond the %zu bits that the file declares.", record.id, m_bits.size());
  }
  Bit* bit = m_bits.make(record.id);
  setValue(bit, std::string(record.value).c_str());
  if (record.fields == 3) {
    setKind(bit, std::string(record.kind).c_str());
  } else {
    bit->setKind(Bit::STATE);
    bit->setStateLoc(record.location[0], record.location[1], record.location[2]);
  }
  ++m_bit_records;
  m_highest_bit = std::max(m_highest_bit, record.id);
  return true;
}

void XrfReader::checkSignal(const SignalRecord& record, std::string_view line) {
  if (record.fields == 8 && record.lsb != record.msb) {
    fatal("Illegal signal: %s\n", std::string(line).c_str());
  }
  const Limits& limits = m_state.model.limits;
  if (record.msb >= record.lsb && record.msb - record.lsb >= limits.signalWidth) {
    fatalHere("Signal %s from %u to %u is wider than %llu bits.", std::string(record.name).c_str(),
              record.lsb, record.msb, static_cast<unsigned long long>(limits.signalWidth));
  }
  if (record.msb >= record.lsb) {
    checkDeclared(m_declared_indices, std::uint64_t{record.msb} - record.lsb + 1, "indices");
  }
  if (record.net >= m_net_count) {
    fatalHere("Net %u is beyond the %zu nets that the file declares.", record.net, m_net_count);
  }
}

bool XrfReader::parse_signals(std::string_view line) {
  ScannedSignal& first = m_scanned.front();
  first.line = line;
  first.bytes = first.lines = 0;
  if (!first.record.scan(line)) return false;
  askFor(first);
  const std::size_t count = 1 + (first.record.isPlain ? scanAhead() : 0);
  const std::span<const ScannedSignal> scanned(m_scanned.data(), count);
  for (const ScannedSignal& signal : scanned) {
    __builtin_prefetch(m_state.model.names.candidate(signal.hash));
  }
  for (const ScannedSignal& signal : scanned) {
    m_lines.skip(signal.bytes, signal.lines);
    addSignal(signal);
  }
  return true;
}

// Scans the plain signals that follow the first; returns how many there are.
std::size_t XrfReader::scanAhead() {
  std::string_view text = m_lines.rest();
  std::size_t count = 0;
  std::size_t bytes = 0;
  std::uint64_t lines = 0;
  while (count + 1 < m_scanned.size()) {
    const std::size_t feed = text.find('\n');
    if (feed == std::string_view::npos) break;
    const std::string_view line = withoutMargin(text.substr(0, feed));
    bytes += feed + 1;
    ++lines;
    ScannedSignal& signal = m_scanned[count + 1];
    if (!line.empty() && !signal.record.scanPlain(line)) {
      askForModule(text, m_scanned[count].record.closing);
      break;
    }
    text.remove_prefix(feed + 1);
    if (line.empty()) continue;
    signal.line = line;
    signal.bytes = std::exchange(bytes, 0);
    signal.lines = std::exchange(lines, 0);
    askFor(signal);
    ++count;
  }
  return count;
}

// What is named beyond what is declared is refused when its turn comes.
void XrfReader::askFor(ScannedSignal& signal) const {
  constexpr std::size_t most = 4;
  const SignalRecord& record = signal.record;
  signal.hash = NamePool::hashOf(record.name);
  m_state.model.names.prefetch(signal.hash);
  if (record.net < m_net_count) prefetchWhole(m_nets[record.net]);
  const std::size_t count = std::min(record.bits.size(), most);
  for (std::size_t at = 0; at < count; ++at) m_bits.prefetch(record.bits[at]);
}

// The writer puts them between records.
void XrfReader::passEmptyLines() {
  const std::string_view text = m_lines.rest();
  const std::size_t count = std::min(text.find_first_not_of('\n'), text.size());
  m_lines.skip(count, count);
}

// The next module mostly lies beside the one that ends, so the hash of its path is at hand.
void XrfReader::askForModule(std::string_view text, std::ptrdiff_t closing) {
  const std::size_t feed = text.find('\n');
  if (feed == std::string_view::npos) return;
  const std::string_view line = withoutMargin(text.substr(0, feed));
  ModuleRecord& record = m_module.record;
  m_module.end = 0;
  if (!record.scanPlain(line)) return;
  const auto placeOf = [&](std::string_view word) {
    return static_cast<std::size_t>(word.data() - line.data());
  };
  m_module.places = {placeOf(record.definition), placeOf(record.name)};
  m_module.hidden = record.visibility.front() == 'H';
  m_module.hash = NamePool::hashOf(record.name);
  const auto before = static_cast<std::uint64_t>(text.data() - m_lines.rest().data());
  m_module.end = m_lines.offset() + before + feed + 1;
  m_state.model.names.prefetch(m_module.hash);
  if (closing == 1) m_state.modules.at(m_view).prefetch(record.name);
}

// The line may have been scanned already, where it was in memory before.
bool XrfReader::scanModule(std::string_view line) {
  ModuleRecord& record = m_module.record;
  if (std::exchange(m_module.end, 0) == m_lines.offset()) {
    record.definition = line.substr(m_module.places[0], record.definition.size());
    record.name = line.substr(m_module.places[1], record.name.size());
    return true;
  }
  if (!record.scan(line)) return false;
  m_module.hidden = record.visibility.front() == 'H';
  m_module.hash = NamePool::hashOf(record.name);
  return true;
}

void XrfReader::addSignal(const ScannedSignal& scanned) {
  const SignalRecord& record = scanned.record;
  checkSignal(record, scanned.line);
  m_budget.at(m_view).count(1);
  Module& module = front();
  ModelState& model = m_state.model;
  auto* signal = new (model.arena.allocate(sizeof(Signal)))
      Signal(model, &module, model.names.intern(record.name, scanned.hash), record.id, record.lsb,
             record.msb, true);
  if (record.direction != "WIRE") setKind(signal, std::string(record.direction).c_str());
  module.addSignal(signal);
  m_state.enter(m_view, signal, true);
  if (record.isPlain) {
    signal->cover(model, record.lsb, record.msb);
    std::uint64_t index = record.lsb;
    for (const std::uint32_t bit : record.bits) linkBit(*signal, index++, bit);
  } else {
    linkBits(*signal, record.rest);
  }
  if (record.visibility.front() == 'H') signal->setHidden(true);
  join(*signal, m_nets[record.net]);
  closeModules(record.closing);
}

// Every word that is left stands for one index, from the lsb upward; what is no number means bit 0.
void XrfReader::linkBits(Signal& signal, std::string_view numbers) {
  Scan scan(numbers);
  std::string_view word;
  for (std::uint64_t index = signal.getLsb(); scan.word(word); ++index) {
    const std::size_t close = word.find_first_not_of(')');
    if (close == std::string_view::npos) continue;
    std::uint32_t number = 0;
    Scan(word.substr(close)).integer(number);
    linkBit(signal, index, number);
  }
}

void XrfReader::linkBit(Signal& signal, std::uint64_t index, std::uint32_t number) {
  if (index > signal.m_msb) {
    fatalHere("Signal %s has more bits than its range %u to %u.", signal.getName(), signal.getLsb(),
              signal.getMsb());
  }
  if (!m_bits.has(number)) {
    fatalHere("Signal %s names bit %u, which the file does not declare.", signal.getName(), number);
  }
  const auto at = static_cast<std::uint32_t>(index);
  auto* ref = new (m_state.model.arena.allocate(sizeof(BitRef))) BitRef(&signal, at);
  ref->setBit(m_bits.at(number));
  signal.setBitRef(at, ref);
}

// A net lists one signal of each name, and the million members of a clock have but a few. What a
// small net has too many it loses when it is settled.
void XrfReader::join(Signal& signal, Net& net) {
  constexpr std::uint32_t few = 8;
  constexpr std::uint32_t compared = 16;
  signal.m_net = &net;
  const detail::Members& set = net.m_signals;
  for (std::uint32_t at = 0; set.count >= few && at < std::min(set.count, compared); ++at) {
    if (members::object<Signal>(set.slots[at])->m_name == signal.m_name) return;
  }
  members::append(m_state.model.arena, net.m_signals, &signal);
}

// A module's sets are settled while they are at hand.
void XrfReader::close(Module& module) {
  module.updateVisibleSignals(false);
  module.updateVisibleChildren(false);
  const detail::Members& children = module.children();
  if (children.listed == children.count) return;
  for (std::uint32_t at = 0; at < children.count; ++at) {
    if ((children.slots[at] & members::unlisted) != 0) {
      forgetVisible(*members::object<Module>(children.slots[at]));
    }
  }
}

void XrfReader::closeAll() {
  for (; !m_modules.empty(); m_modules.pop_back()) close(*m_modules.back());
}

// What no tree of a view lists shows nothing.
void XrfReader::forgetVisible(Module& module) {
  members::updateVisible<Signal>(module.m_signals, [](const Signal*) { return true; });
  if (module.m_inside == nullptr) return;
  detail::Members& children = module.m_inside->children;
  members::updateVisible<Module>(children, [](const Module*) { return true; });
  members::each<Module>(children, [](Module* child) { forgetVisible(*child); });
}

void XrfReader::closeModules(std::ptrdiff_t count) {
  for (; count > 0; --count) {
    if (m_modules.empty()) fatalHere("More modules are closed than are open.");
    close(*m_modules.back());
    learnLeaf(*m_modules.back());
    m_modules.pop_back();
  }
}

XrfReader::Leaf& XrfReader::leafOf(const Module& module) {
  const Word* cell = module.m_def_name;
  auto& [last, leaf] = m_last_leaves.at(cell->number() % m_last_leaves.size());
  if (leaf == nullptr || last != cell) {
    last = cell;
    leaf = &m_leaves[cell];
  }
  return *leaf;
}

bool XrfReader::copyLeaf(Module& module) {
  if (!m_state.signals.at(m_view).isPlain(module)) return false;
  Leaf& leaf = leafOf(module);
  if (!leaf.text) return false;
  const LeafText::Passed passed = leaf.text->scan(m_lines.rest(), m_places);
  if (passed.bytes == 0 || !areThere(m_places)) {
    leaf.text.reset();
    return false;
  }
  m_lines.skip(passed.bytes, passed.lines);
  passEmptyLines();
  askForModule(m_lines.rest(), passed.closing);
  copyPorts(module, *leaf.text);
  closeModules(passed.closing);
  return true;
}

// Whether nets and bits were declared. They are all over memory, and are asked for by the way.
bool XrfReader::areThere(const std::vector<LeafText::Place>& places) const {
  if (!mayDeclare(m_declared_indices + places.size())) return false;
  if (m_budget.at(m_view).left() < places.size()) return false;
  for (const LeafText::Place& place : places) {
    if (place.net >= m_net_count || !m_bits.has(place.bit)) return false;
    prefetchWhole(m_nets[place.net]);
    m_bits.prefetch(place.bit);
  }
  return true;
}

void XrfReader::copyPorts(Module& module, const LeafText& leaf) {
  ModelState& model = m_state.model;
  const auto count = static_cast<std::uint32_t>(leaf.ports().size());
  detail::Members& set = module.m_signals;
  members::reserve(model.arena, set, count);
  for (std::uint32_t at = 0; at < count; ++at) {
    const LeafText::Port& port = leaf.ports()[at];
    auto* signal = new (model.arena.allocate(sizeof(Signal)))
        Signal(model, &module, port.name, port.id, 0, 0, true);
    signal->m_kind = port.kind;
    signal->m_hidden = port.hidden;
    m_state.signals.at(m_view).hold(*signal);
    set.slots[at] = reinterpret_cast<std::uintptr_t>(signal);
    auto* ref = new (model.arena.allocate(sizeof(BitRef))) BitRef(signal, 0);
    ref->setBit(m_bits.at(m_places[at].bit));
    signal->store(0, ref);
    join(*signal, m_nets[m_places[at].net]);
    // One by one, since memory may run out on the way.
    set.count = set.listed = at + 1;
  }
  m_declared_indices += count;
  m_budget.at(m_view).count(count);
  members::shareNumbers(set, leaf.ids());
}

// Cells of one instance are not learned at all, and those whose instances keep differing not again
// and again.
void XrfReader::learnLeaf(const Module& module) {
  constexpr unsigned often = 5;
  if (module.m_signals.count > members::unindexed || module.children().count != 0) return;
  Leaf& leaf = leafOf(module);
  if (leaf.text || leaf.met >= often || leaf.met++ == 0) return;
  leaf.text = LeafText::of(module);
}

Module& XrfReader::front() const {
  if (m_modules.empty()) fatalHere("A module or signal stands outside any view.");
  return *m_modules.back();
}

// What is there, of what the paths of both views may be long for. The budgets count each bit that
// the head of the file declares, whether it is there or not.
std::uint64_t XrfReader::objectsOfBothViews() const {
  return m_bit_records + m_budget[RTL].made() + m_budget[SYNTH].made() - 2 * m_declared_bits;
}

bool XrfReader::parse_module(std::string_view line) {
  if (!scanModule(line)) return false;
  const ModuleRecord& record = m_module.record;
  Module& parent = front();
  const Limits& limits = m_state.model.limits;
  if (m_modules.size() > limits.moduleNesting) {
    fatalHere("Modules are nested more than %llu deep.",
              static_cast<unsigned long long>(limits.moduleNesting));
  }
  m_budget.at(m_view).countInstance();
  const std::uint64_t before = m_state.model.pathBytes;
  NamePool& names = m_state.model.names;
  auto* module = new Module(names.intern(record.name, m_module.hash),
                            names.intern(record.definition), record.id);
  if (m_modules.size() == 1) m_state.top.at(m_view) = module;
  // Parentheses do not count here: a module with anything to list closes on a later line.
  parent.addChild(module);
  m_path_bytes += m_state.model.pathBytes - before;
  if (m_path_bytes > Limits::pathBytesBase + limits.pathBytesPerObject * objectsOfBothViews()) {
    fatalHere("The paths of the modules take up more than %llu bytes.",
              static_cast<unsigned long long>(m_path_bytes));
  }
  m_netlist.registerModule(m_view, module);
  m_modules.push_back(module);
  if (m_module.hidden) module->setHidden();
  // What is copied asks for the module after it.
  const std::ptrdiff_t closing = record.closing;
  if (closing == 0 && copyLeaf(*module)) return true;
  if (m_state.reading.has(Rule::ClosingModules)) {
    // A module without anything to list closes on its own line, and may close its parents with it.
    closeModules(closing);
  }
  return true;
}

bool XrfReader::parse_view(std::string_view line) {
  Scan scan(line);
  std::string_view view;
  if (!scan.literal("(VIEW ") || !scan.word(view)) return false;
  if (view.front() != 'R' && view.front() != 'S') {
    fatal("Unknown view type: '%s'!\n", std::string(view).c_str());
  }
  m_view = view.front() == 'R' ? RTL : SYNTH;
  auto* root = new Module("", "", 0);
  m_netlist.registerModule(m_view, root);
  closeAll();
  if (m_roots.at(m_view) != nullptr) forgetVisible(*m_roots[m_view]);
  m_roots[m_view] = root;
  m_modules.push_back(root);
  return true;
}

bool XrfReader::parse_header(std::string_view line) {
  Scan version(line);
  if (version.literal("(VERSION ") && version.integer(m_version)) return true;
  Scan family(line);
  std::string_view name;
  if (family.literal("(FAMILY ") && family.word(name)) {
    if (name.front() != 'T') fatal("Unknown family: '%s'!\n", std::string(name).c_str());
    m_netlist.setFamily(TORVAL7);
    return true;
  }
  std::uint32_t count = 0;
  Scan bits(line);
  if (bits.literal("(BITS ") && bits.integer(count)) {
    declareBits(count);
    return true;
  }
  Scan nets(line);
  if (nets.literal("(NETS ") && nets.integer(count)) {
    declareNets(count);
    return true;
  }
  return false;
}

// Every bit and net of a written file takes up more than a byte of it.
bool XrfReader::mayDeclare(std::uint64_t sum) const {
  constexpr std::uint64_t smallFile = 1U << 20;
  return sum <= smallFile + m_lines.size();
}

void XrfReader::checkDeclared(std::uint64_t& sum, std::uint64_t count, const char* what) const {
  sum += count;
  if (!mayDeclare(sum)) {
    fatalHere("The file declares %llu %s, more than it can hold.",
              static_cast<unsigned long long>(sum), what);
  }
}

void XrfReader::declareBits(std::uint32_t count) {
  checkDeclared(m_declared_bits, count, "bits");
  for (ObjectBudget& budget : m_budget) budget.count(count);
  m_bits.declare(count);
}

void XrfReader::declareNets(std::uint32_t count) {
  checkDeclared(m_declared_nets, count, "nets");
  m_nets = static_cast<Net*>(m_state.model.arena.allocate(count * sizeof(Net)));
  for (m_net_count = 0; m_net_count < count; ++m_net_count) {
    new (m_nets + m_net_count) Net(m_state.model);
  }
}

}  // namespace XRF_RTL2LL
