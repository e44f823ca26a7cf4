#include <crossreference/NetlistState.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/Utils.h>
#include <support/InputFile.h>
#include <support/Limits.h>
#include <support/Report.h>
#include <support/Scan.h>

#include <algorithm>

namespace XRF_RTL2LL {

/// Rebuilds both views from the lines of a cross-reference file.
class XrfReader {
 public:
  XrfReader(Netlist& netlist, NetlistState& state, const std::string& path, std::string_view text);

  void read();

 private:
  struct SignalFields {
    std::string visibility;
    std::string direction;
    std::string name;
    std::uint32_t id = 0;
    std::uint32_t net = 0;
    std::uint32_t lsb = 0;
    std::uint32_t msb = 0;
    std::string_view bits;  // what follows the msb
    unsigned count = 0;     // fields converted
  };

  void parse_line(std::string_view line);
  bool parse_bit(std::string_view line);
  bool parse_signal(std::string_view line);
  bool parse_module(std::string_view line);
  bool parse_view(std::string_view line);
  bool parse_header(std::string_view line);

  static SignalFields scanSignal(std::string_view line);
  void linkBits(Signal& signal, std::string_view numbers);
  void closeModules(std::ptrdiff_t count);
  void declareBits(std::uint32_t count);
  void declareNets(std::uint32_t count);
  void checkDeclared(std::uint64_t& sum, std::uint64_t count, const char* what) const;
  Module& front() const;
  void recallRegisters();
  void finish();

  Netlist& m_netlist;
  NetlistState& m_state;
  LineReader m_lines;
  ReadPlace m_place;
  EdifView m_view = RTL;
  std::uint32_t m_version = 0;
  std::uint64_t m_path_bytes = 0;
  std::uint64_t m_declared_bits = 0;
  std::uint64_t m_declared_nets = 0;
  std::uint64_t m_declared_indices = 0;
  std::uint32_t m_highest_bit = 0;
  std::vector<Bit*> m_bits;
  std::vector<Net*> m_nets;
  std::vector<Module*> m_modules;  // the open ones, the view's root first
};

int Netlist::parse_xrf(std::string path) {
  const StateScope scope(m_state->model);
  m_state->loaded = true;
  const InputFile file(path);
  if (!file.isOpen()) fatal("Can't open file %s\n", path.c_str());
  message(StandardOutput, "Parsing xrf file: %s ...\n", path.c_str());
  XrfReader(*this, *m_state, path, file.text()).read();
  message(StandardOutput, "Parsing xrf file: %s complete.\n\n", path.c_str());
  return 0;
}

XrfReader::XrfReader(Netlist& netlist, NetlistState& state, const std::string& path,
                     std::string_view text)
    : m_netlist(netlist),
      m_state(state),
      m_lines(text),
      m_place(path, this, [](const void* reader) {
        return ReadPlace::Position{static_cast<const XrfReader*>(reader)->m_lines.number(), 0};
      }) {}

void XrfReader::read() {
  constexpr std::uint64_t reportDistance = std::uint64_t{1} << 22;
  std::uint64_t report = 0;
  while (m_lines.next()) {
    if (m_lines.offset() >= report) {
      progress("Reading cross-reference", m_lines.offset(), m_lines.size());
      report = m_lines.offset() + reportDistance;
    }
    std::string_view line = m_lines.line();
    const std::size_t start = line.find_first_not_of(" \n\r\t");
    if (start == std::string_view::npos) continue;
    parse_line(line.substr(start));
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
  for (const EdifView view : {RTL, SYNTH}) {
    Module* root = m_netlist.findModule(view, "/");
    if (root == nullptr) continue;
    ModelState::settleTree(*root);
    root->updateVisibleChildren(true);
    root->updateVisibleSignals(true);
  }
  m_state.model.nets.each([](const Net* net) { net->getSignals(); });
  if (m_state.reading.has(Rule::ClosingModules) && m_modules.size() > 1) {
    fatalHere("The file ends before all its modules are closed.");
  }
  if (m_state.reading.has(Rule::DeclareLoadedBits) && m_highest_bit > Bit::getMaxBitId()) {
    Bit::setMaxBitId(m_highest_bit);
  }
  if (m_state.reading.has(Rule::LoadedRegisters)) recallRegisters();
}

// What a cell is and which register it implements is not stored; their names tell again.
void XrfReader::recallRegisters() {
  for (const EdifView view : {RTL, SYNTH}) {
    RegisterTies ties(m_state, view);
    m_state.modules[view].each([&](Module* module) {
      const char* cell = module->getDefName();
      if (cell == nullptr || module->getParent() == nullptr) return;
      const unsigned lutMode = view == RTL ? 2 : 0;
      module->setKind(m_state.kindOf(m_state.tokens->getCode(cell), lutMode));
      if (!RegisterTies::isRegister(m_state, *module)) return;
      Signal* output = RegisterTies::outputOf(*module);
      if (output != nullptr) output->setSrcState();
      const NamedBits name = decodeRegister(module->getName());
      if (name.valid) ties.recall(*module->getParent(), *module, name);
    });
  }
}

void XrfReader::parse_line(std::string_view line) {
  if (parse_bit(line) || parse_signal(line) || parse_module(line) || parse_view(line) ||
      parse_header(line)) {
    return;
  }
  fatal("Unexpected syntax encountered.\n %s\n", std::string(line).c_str());
}

bool XrfReader::parse_bit(std::string_view line) {
  Scan scan(line);
  std::uint32_t id = 0;
  std::string_view kind;
  std::string_view value;
  if (!scan.literal("(BIT ") || !scan.integer(id) || !scan.word(kind) || !scan.word(value)) {
    return false;
  }
  std::uint32_t location[3] = {0, 0, 0};
  unsigned fields = 3;
  while (fields < 6 && scan.integer(location[fields - 3])) ++fields;
  if (fields == 4) return false;
  if (id >= m_bits.size()) {
    fatalHere("Bit %u is beyond the %zu bits that the file declares.", id, m_bits.size());
  }
  Bit* bit = new Bit(id);
  setValue(bit, std::string(value).c_str());
  if (fields == 3) {
    setKind(bit, std::string(kind).c_str());
  } else {
    bit->setKind(Bit::STATE);
    bit->setStateLoc(location[0], location[1], fields == 6 ? location[2] : 0);
  }
  m_bits[id] = bit;
  m_highest_bit = std::max(m_highest_bit, id);
  return true;
}

XrfReader::SignalFields XrfReader::scanSignal(std::string_view line) {
  SignalFields fields;
  Scan scan(line);
  if (!scan.literal("(SIG ")) return fields;
  for (std::string* text : {&fields.visibility, &fields.direction, &fields.name}) {
    std::string_view word;
    if (!scan.word(word)) return fields;
    *text = word;
    ++fields.count;
  }
  for (std::uint32_t* number : {&fields.id, &fields.net, &fields.lsb, &fields.msb}) {
    if (!scan.integer(*number)) return fields;
    ++fields.count;
  }
  fields.bits = scan.rest();
  std::uint32_t bit = 0;
  while (fields.count < 9 && scan.integer(bit)) ++fields.count;
  return fields;
}

bool XrfReader::parse_signal(std::string_view line) {
  const SignalFields fields = scanSignal(line);
  if (fields.count < 8) return false;
  if (fields.count == 8 && fields.lsb != fields.msb) {
    fatal("Illegal signal: %s\n", std::string(line).c_str());
  }
  if (fields.msb - fields.lsb >= limits::signalWidth && fields.msb >= fields.lsb) {
    fatalHere("Signal %s from %u to %u is wider than %u bits.", fields.name.c_str(), fields.lsb,
              fields.msb, limits::signalWidth);
  }
  if (fields.msb >= fields.lsb) {
    checkDeclared(m_declared_indices, std::uint64_t{fields.msb} - fields.lsb + 1, "indices");
  }
  if (fields.net >= m_nets.size()) {
    fatalHere("Net %u is beyond the %zu nets that the file declares.", fields.net, m_nets.size());
  }
  Module& module = front();
  auto* signal = new Signal(&module, fields.name.c_str(), fields.id, fields.lsb, fields.msb, true);
  setKind(signal, fields.direction.c_str());
  module.addSignal(signal);
  m_netlist.registerSignal(m_view, signal);
  linkBits(*signal, fields.bits);
  if (fields.visibility[0] == 'H') signal->setHidden(true);
  m_nets[fields.net]->addSignal(signal);
  // The first parenthesis closes the record itself.
  closeModules(std::count(line.begin(), line.end(), ')') - 1);
  return true;
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
    if (index > signal.getMsb()) {
      fatalHere("Signal %s has more bits than its range %u to %u.", signal.getName(),
                signal.getLsb(), signal.getMsb());
    }
    if (number >= m_bits.size() || m_bits[number] == nullptr) {
      fatalHere("Signal %s names bit %u, which the file does not declare.", signal.getName(),
                number);
    }
    auto* ref = new BitRef(&signal, static_cast<std::uint32_t>(index));
    ref->setBit(m_bits[number]);
    signal.setBitRef(static_cast<std::uint32_t>(index), ref);
  }
}

void XrfReader::closeModules(std::ptrdiff_t count) {
  for (; count > 0; --count) {
    if (m_modules.empty()) fatalHere("More modules are closed than are open.");
    m_modules.pop_back();
  }
}

Module& XrfReader::front() const {
  if (m_modules.empty()) fatalHere("A module or signal stands outside any view.");
  return *m_modules.back();
}

bool XrfReader::parse_module(std::string_view line) {
  Scan scan(line);
  std::string_view visibility;
  std::string_view definition;
  std::string_view name;
  std::uint32_t id = 0;
  if (!scan.literal("(MOD ") || !scan.word(visibility) || !scan.word(definition) ||
      !scan.word(name) || !scan.integer(id)) {
    return false;
  }
  Module& parent = front();
  if (m_modules.size() > limits::moduleNesting) {
    fatalHere("Modules are nested more than %u deep.", limits::moduleNesting);
  }
  const std::uint64_t before = m_state.model.pathBytes;
  auto* module = new Module(std::string(name).c_str(), std::string(definition).c_str(), id);
  if (m_modules.size() == 1) m_state.top.at(m_view) = module;
  // Parentheses do not count here: a module with anything to list closes on a later line.
  parent.addChild(module);
  m_path_bytes += m_state.model.pathBytes - before;
  if (m_path_bytes > limits::pathBytesBase + limits::pathBytesPerByte * m_lines.size()) {
    fatalHere("The paths of the modules take up more than %llu bytes.",
              static_cast<unsigned long long>(m_path_bytes));
  }
  m_netlist.registerModule(m_view, module);
  m_modules.push_back(module);
  if (visibility.front() == 'H') module->setHidden();
  if (m_state.reading.has(Rule::ClosingModules)) {
    // A module without anything to list closes on its own line, and may close its parents with it.
    closeModules(std::count(line.begin(), line.end(), ')'));
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
  m_modules.assign(1, root);
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
void XrfReader::checkDeclared(std::uint64_t& sum, std::uint64_t count, const char* what) const {
  sum += count;
  if (sum > limits::declaredBase + m_lines.size()) {
    fatalHere("The file declares %llu %s, more than it can hold.",
              static_cast<unsigned long long>(sum), what);
  }
}

void XrfReader::declareBits(std::uint32_t count) {
  checkDeclared(m_declared_bits, count, "bits");
  m_bits.resize(count);
}

void XrfReader::declareNets(std::uint32_t count) {
  checkDeclared(m_declared_nets, count, "nets");
  m_nets.resize(count);
  for (Net*& net : m_nets) net = new Net;
}

}  // namespace XRF_RTL2LL
