#include <crossreference/EdifReader.h>
#include <crossreference/MemberSet.h>
#include <crossreference/Utils.h>
#include <support/Scan.h>
#include <support/TextSource.h>

#include <algorithm>
#include <limits>
#include <span>

namespace XRF_RTL2LL {

namespace {

// What a one-input look-up table is in each view.
unsigned lutMode(EdifView view) { return view == RTL ? 2 : 0; }

int readEdif(Netlist& netlist, NetlistState& state, EdifView view, const std::string& path) {
  const StateScope scope(state.model);
  const TextSource text(path);
  if (!text.isOpen()) fatal("Can't open file %s\n", path.c_str());
  // A read that is given up must not leave an earlier design's top behind.
  state.top.at(view) = nullptr;
  EdifReader(netlist, state, view, path, text).read();
  netlist.postProcess(view);
  return 0;
}

}  // namespace

int Netlist::parse_rtl(std::string path) { return readEdif(*this, *m_state, RTL, path); }

int Netlist::parse_synth(std::string path) { return readEdif(*this, *m_state, SYNTH, path); }

EdifReader::EdifReader(Netlist& netlist, NetlistState& state, EdifView view,
                       const std::string& path, const TextSource& text)
    : m_netlist(netlist),
      m_state(state),
      m_view(view),
      m_limits(state.model.limits),
      m_tokens(text, *state.tokens, m_limits),
      m_place(
          path, this,
          [](const void* reader) { return static_cast<const EdifReader*>(reader)->position(); }),
      m_ties(state, view) {}

ReadPlace::Position EdifReader::position() const {
  return m_lexing ? m_tokens.lexedPosition() : m_tokens.position(m_cursor == 0 ? 0 : m_cursor - 1);
}

EdifReader::~EdifReader() {
  m_state.model.breakPromises();
  m_state.budget = nullptr;
  m_state.model.firstPassing = std::numeric_limits<std::size_t>::max();
}

void EdifReader::read() {
  m_tokens.lex();
  m_lexing = false;
  m_budget = ObjectBudget(m_limits, m_tokens.size());
  m_state.budget = &m_budget;
  m_state.model.firstPassing = m_state.model.bits.nextPlace();
  parse_expr();
  for (const Module* module : m_namesakes) RegisterTies::disputeAll(*module);
  m_state.model.makePromised();
}

void EdifReader::end_early() {
  m_cursor = m_tokens.size() + 1;
  fatalHere("The netlist ends before it is complete.");
}

void EdifReader::report() {
  constexpr std::uint64_t distance = std::uint64_t{1} << 20;
  m_next_report = (m_taken / distance + 1) * distance;
  progress("Building the design", m_budget.made(), 0);
  check_work();
}

std::uint32_t EdifReader::require_label(const ExprResult& expr, const char* form) const {
  if (expr.kind != EXPR_LABEL) fatalHere("A name was expected in the form \"%s\".", form);
  return expr.first;
}

Module& EdifReader::front() const {
  if (m_modules.empty()) fatalHere("A port, net or instance stands outside any cell.");
  return *m_modules.back();
}

// A cell is read again for each of its instances, so that what little stands in a file can ask for
// far more work than it makes objects.
void EdifReader::check_work() const {
  if (m_taken > Limits::workBase + 4 * m_tokens.size() + m_limits.workPerObject * m_budget.made()) {
    fatalHere("The cells hold too much beside the %llu objects they make.",
              static_cast<unsigned long long>(m_budget.made()));
  }
}

Signal* EdifReader::add_signal(const Word* name, std::uint32_t lsb, std::uint32_t msb,
                               std::uint32_t id) {
  const std::uint32_t before = front().m_signals.count;
  Signal* signal = m_state.addSignal(m_view, &front(), name, lsb, msb, id);
  // A port that is declared twice has its bits made in turn with those of others.
  if (front().m_signals.count == before) m_only_ports = false;
  return signal;
}

const Word* EdifReader::printable(std::uint32_t code) const {
  const Word* word = m_state.word(code);
  if (!m_state.reading.has(Rule::CleanNames)) return word;
  if (word->empty()) return m_state.model.names.intern("_");
  return isClean(*word) ? word : m_state.model.names.intern(std::string_view(cleaned(*word)));
}

EdifReader::ExprResult EdifReader::parse_expr() {
  const std::uint32_t code = take();
  if (code == token::Close) return {EXPR_END};
  if (code != token::Open) {
    const std::uint32_t word = code & ~EdifTokens::quotedMark;
    return {EXPR_LABEL, word, word};
  }
  const std::uint32_t keyword = take();
  if (keyword == token::Close) return {};
  if (++m_depth > m_limits.elaborationNesting) {
    fatalHere("Lists and instances are nested more than %llu deep.",
              static_cast<unsigned long long>(m_limits.elaborationNesting));
  }
  m_deepest = std::max(m_deepest, m_depth);
  ExprResult result = parse_form(keyword);
  --m_depth;
  return result;
}

EdifReader::ExprResult EdifReader::parse_form(std::uint32_t keyword) {
  switch (keyword) {
    case token::Array:
      return parse_array();
    case token::Direction:
      return parse_direction();
    case token::Port:
      return parse_port();
    case token::Property:
      return parse_property();
    case token::Rename:
      return parse_rename();
    case token::String:
      return parse_string();
    default:
      break;
  }
  return parse_structure(keyword);
}

// Forms that make of a cell more than a set of ports.
EdifReader::ExprResult EdifReader::parse_structure(std::uint32_t keyword) {
  const bool only_ports = m_only_ports;
  m_only_ports = false;
  switch (keyword) {
    case token::Cell:
      return parse_cell();
    case token::CellRef:
      return parse_cellref();
    case token::DesignForm:
      return parse_design();
    case token::Instance:
      return parse_instance();
    case token::InstanceRef:
      return parse_instanceref();
    case token::Joined:
      return parse_joined();
    case token::Library:
      return parse_library();
    case token::LibraryRef:
      return parse_libraryref();
    case token::Member:
      return parse_member();
    case token::NetForm:
      return parse_net();
    case token::PortRef:
      return parse_portref();
    case token::Program:
      return parse_program();
    default:
      break;
  }
  // Any other form only wraps others, which act as they stand.
  m_only_ports = only_ports;
  if (keyword == token::Open) backup(1);
  parse_body();
  return {};
}

void EdifReader::parse_body() {
  while (parse_expr().kind != EXPR_END) {
  }
}

void EdifReader::skip_body() { leave_list(m_tokens.endOfList(m_cursor)); }

void EdifReader::leave_list(std::size_t end) {
  if (end > m_tokens.size()) end_early();
  spend(end - m_cursor);
  m_cursor = end;
}

EdifReader::ExprResult EdifReader::parse_number() {
  const Word& text = *m_state.word(take() & ~EdifTokens::quotedMark);
  ExprResult result{EXPR_NUMBER};
  if (!Scan(text).integer(result.number)) {
    fatal("ERROR:Token '%s' is not a number!\n", text.c_str());
  }
  return result;
}

// A text where one belongs: an empty string leaves no word, so the form may close at once.
EdifReader::ExprResult EdifReader::parse_text() {
  const ExprResult text = parse_expr();
  if (text.kind != EXPR_END) return text;
  backup(1);
  const std::uint32_t empty = m_state.tokens->getCode(std::string_view());
  return {EXPR_LABEL, empty, empty};
}

EdifReader::ExprResult EdifReader::parse_array() {
  const ExprResult name = parse_expr();
  require_label(name, "array");
  const std::int64_t width = parse_number().number;
  if (width < 1 || static_cast<std::uint64_t>(width) > m_limits.signalWidth) {
    fatalHere("The array %s has a width of %lld; 1 to %llu is possible.",
              m_state.word(name.first)->c_str(), static_cast<long long>(width),
              static_cast<unsigned long long>(m_limits.signalWidth));
  }
  skip_body();
  ExprResult result{EXPR_SIGNAL};
  const auto bits = static_cast<std::uint32_t>(width);
  if (!m_state.reading.has(Rule::PrintableArrays)) {
    result.signal = add_signal(m_state.word(name.first), 0, bits - 1, name.first);
    return result;
  }
  const PortRange range = decodeArray(*printable(name.second), bits);
  result.signal =
      add_signal(m_state.model.names.intern(std::string_view(range.signal)),
                 std::min(range.left, range.right), std::max(range.left, range.right), name.first);
  m_ranges[result.signal] = {range.left, range.right, range.foreign};
  m_any_foreign = m_any_foreign || range.foreign;
  return result;
}

// Whether the indices of a bus are not those of its printable names, so that its bits can only go
// by their whole names.
bool EdifReader::is_foreign(const std::string& bus) const {
  if (!m_any_foreign) return false;
  const auto range = m_ranges.find(m_state.findByName(m_view, front(), bus));
  return range != m_ranges.end() && range->second.foreign;
}

EdifReader::ExprResult EdifReader::parse_cell() {
  const std::size_t position = m_cursor - 2;
  record_cell(require_label(parse_expr(), "cell"), position);
  m_cursor = position + 1;
  spend(1);
  leave_list(m_tokens.endOfOuterList(position));
  return {};
}

void EdifReader::record_cell(std::uint32_t cell, std::size_t position) {
  m_cells.try_emplace(cell, CellRecord(position));
}

EdifReader::ExprResult EdifReader::parse_cellref() {
  const std::uint32_t cell = take() & ~EdifTokens::quotedMark;
  const bool closed = parse_expr().kind == EXPR_END;
  elaborate_cell(cell);
  if (!closed) parse_body();
  return {};
}

void EdifReader::elaborate_cell(std::uint32_t cell) {
  Module& module = front();
  module.m_def_name = m_state.word(cell);
  const opKind kind = m_state.kindOf(cell, lutMode(m_view));
  if (kind != HIER) module.setHidden();
  module.setKind(kind);
  const auto found = m_cells.find(cell);
  InstanceGroup*& instances = found == m_cells.end() ? m_unknown_cell : found->second.instances;
  if (instances == nullptr) {
    instances = &m_state.instances[m_view][*module.m_def_name];
    instances->definition = *module.m_def_name;
  }
  instances->modules.push_back(&module);
  if (found == m_cells.end()) {
    fatal("ERROR: Cell not found '%s'\n", module.getDefName());
  }
  if (found->second.open) fatalHere("The cell %s contains itself.", module.getDefName());
  if (!copy_ports(found->second)) elaborate_body(found->second);
}

bool EdifReader::copy_ports(const CellRecord& record) {
  if (!record.ports || !record.ports->fits(m_state, m_view, front())) return false;
  const CellTemplate::Cost& cost = record.ports->cost();
  if (m_depth + cost.nesting > m_limits.elaborationNesting) return false;
  spend(cost.words);
  record.ports->copyTo(m_state, m_view, front(), m_ranges);
  return true;
}

void EdifReader::elaborate_body(CellRecord& record) {
  const std::size_t resume = m_cursor;
  const std::uint64_t taken = m_taken;
  const unsigned deepest = m_deepest;
  const bool fresh = front().m_signals.count == 0;
  record.open = true;
  m_cursor = record.position + 2;
  m_deepest = m_depth;
  m_only_ports = fresh;
  parse_body();
  if (m_only_ports && !record.known) {
    record.ports = CellTemplate::of(front(), {m_taken - taken, m_deepest - m_depth}, m_ranges);
  }
  record.known = true;
  record.open = false;
  // The cell around holds an instance.
  m_only_ports = false;
  m_deepest = std::max(m_deepest, deepest);
  m_cursor = resume;
}

EdifReader::ExprResult EdifReader::parse_design() {
  auto* root = new Module("", "", 0);
  m_netlist.registerModule(m_view, root);
  m_modules.push_back(root);
  const ExprResult name = parse_expr();
  const Module* top = m_state.top.at(m_view) = push_module(name);
  parse_body();
  const bool undefined = top->m_def_name == nullptr || top->m_def_name->empty();
  if (undefined && m_state.reading.has(Rule::CleanNames)) {
    fatalHere("The design %s names no cell.", top->getName());
  }
  finish_module();
  return {};
}

EdifReader::ExprResult EdifReader::parse_instance() {
  const ExprResult name = parse_expr();
  Module* instance = push_module(name);
  parse_body();
  finish_module();
  const bool undefined = instance->m_def_name == nullptr || instance->m_def_name->empty();
  if (undefined && m_state.reading.has(Rule::CleanNames)) {
    instance->m_def_name = m_state.model.names.intern(std::string_view("_"));
  }
  tie_instance(*instance, name);
  return {};
}

Module* EdifReader::push_module(const ExprResult& name) {
  if (name.kind != EXPR_LABEL) {
    fatal("Illegal design or instance name. Got type: %d .\n", static_cast<int>(name.kind));
  }
  if (m_modules.size() > m_limits.moduleNesting) {
    fatalHere("Modules are nested more than %llu deep.",
              static_cast<unsigned long long>(m_limits.moduleNesting));
  }
  m_budget.countInstance();
  const Word* text = printable(name.second);
  m_state.modules.at(m_view).prefetch(*text);
  auto* module = new Module(text, m_state.model.names.empty(), name.first);
  const std::uint64_t paths = m_state.model.pathBytes;
  front().addChild(module);
  m_path_bytes += m_state.model.pathBytes - paths;
  if (m_path_bytes > Limits::pathBytesBase + m_limits.pathBytesPerObject * m_budget.made()) {
    fatalHere("The paths of the modules take up more than %llu bytes.",
              static_cast<unsigned long long>(m_path_bytes));
  }
  const Module* namesake = m_state.enter(m_view, module);
  if (namesake != nullptr && m_state.reading.has(Rule::CleanNames)) {
    m_namesakes.insert(m_namesakes.end(), {namesake, module});
  }
  m_modules.push_back(module);
  return module;
}

EdifReader::ExprResult EdifReader::parse_direction() {
  const ExprResult word = parse_expr();
  ExprResult result;
  if (word.kind == EXPR_END) return result;
  if (word.kind == EXPR_LABEL) result.direction = word.first;
  parse_body();
  return result;
}

EdifReader::ExprResult EdifReader::parse_joined() {
  BitRef* first = nullptr;
  m_plain_taken = m_plain_count = 0;
  while (true) {
    BitRef* ref = nullptr;
    if (m_plain_taken == m_plain_count) look_ahead();
    if (m_plain_taken < m_plain_count) {
      const PlainPort& port = m_plain[m_plain_taken++];
      const std::size_t words = port.end - m_cursor;
      m_cursor = port.end;
      spend(words);
      ref = port.ref;
    } else {
      const ExprResult item = parse_expr();
      if (item.kind == EXPR_END) break;
      if (item.kind == EXPR_NONE) continue;
      if (item.kind != EXPR_BITREF) {
        fatal("ERROR: unreachable (%d)\n", static_cast<int>(item.kind));
      }
      ref = item.ref;
    }
    if (ref == nullptr) continue;
    if (first == nullptr) {
      first = ref;
    } else {
      first->merge(ref);
    }
  }
  ExprResult result{first == nullptr ? EXPR_NONE : EXPR_BITREF};
  result.ref = first;
  return result;
}

// Recognises a port reference of the two forms that almost all have, (portref P) and (portref P
// (instanceref I)); anything else is left to `parse_portref`.
bool EdifReader::is_plain_portref(std::size_t at, PlainPort& port) const {
  constexpr std::size_t ownWords = 4;
  constexpr std::size_t instanceWords = 8;
  if (at + instanceWords > m_tokens.size()) return false;
  const auto isWord = [&](std::size_t place) { return m_tokens[place] > token::Close; };
  const auto code = [&](std::size_t place) { return m_tokens[place] & ~EdifTokens::quotedMark; };
  if (m_tokens[at] != token::Open || m_tokens[at + 1] != token::PortRef || !isWord(at + 2)) {
    return false;
  }
  port.port = code(at + 2);
  port.own = m_tokens[at + 3] == token::Close;
  port.end = at + (port.own ? ownWords : instanceWords);
  if (port.own) return true;
  port.instance = code(at + 5);
  return m_tokens[at + 3] == token::Open && m_tokens[at + 4] == token::InstanceRef &&
         isWord(at + 5) && m_tokens[at + 6] == token::Close && m_tokens[at + 7] == token::Close;
}

// Finds the bits of the plain port references that follow. Instances and what they hold are all
// over memory, so each step of the way is asked for of all of them before any is taken.
void EdifReader::look_ahead() {
  m_plain_taken = 0;
  m_plain_count = 0;
  if (m_modules.empty() || m_depth + 2 > m_limits.elaborationNesting) return;
  const Module& around = front();
  for (std::size_t at = m_cursor; m_plain_count < m_plain.size(); ++m_plain_count) {
    PlainPort& port = m_plain[m_plain_count];
    if (!is_plain_portref(at, port)) break;
    at = port.end;
    if (!port.own) {
      __builtin_prefetch(members::candidate<Module>(around.children(), port.instance));
    }
  }
  const std::span<PlainPort> found(m_plain.data(), m_plain_count);
  for (PlainPort& port : found) {
    port.module = port.own ? &around : around.getChild(port.instance, true);
    if (port.module != nullptr) __builtin_prefetch(port.module->m_signals.slots);
  }
  for (PlainPort& port : found) {
    port.signal = port.module == nullptr ? nullptr : port.module->getSignal(port.port, true);
    __builtin_prefetch(port.signal);
  }
  for (PlainPort& port : found) {
    port.ref = port.signal == nullptr ? nullptr : scalar_ref(*port.signal);
    __builtin_prefetch(port.ref);
  }
}

EdifReader::ExprResult EdifReader::parse_instanceref() {
  const ExprResult name = parse_expr();
  ExprResult result{EXPR_INSTANCE};
  if (name.kind == EXPR_END) return result;
  result.instance = front().getChild(require_label(name, "instanceref"), true);
  parse_body();
  return result;
}

EdifReader::ExprResult EdifReader::parse_library() {
  const ExprResult name = parse_expr();
  if (name.kind == EXPR_END) return {};
  require_label(name, "Library");
  parse_body();
  return {};
}

EdifReader::ExprResult EdifReader::parse_libraryref() {
  const std::uint32_t name = require_label(parse_expr(), "libraryref");
  parse_body();
  return {EXPR_LABEL, name, name};
}

EdifReader::PortName EdifReader::parse_port_name() {
  PortName name;
  const bool member = m_cursor + 1 < m_tokens.size() && m_tokens[m_cursor] == token::Open &&
                      m_tokens[m_cursor + 1] == token::Member;
  if (!member) {
    name.label = parse_expr();
    name.valid = name.label.kind == EXPR_LABEL;
    return name;
  }
  m_cursor += 2;
  name.label = parse_expr();
  require_label(name.label, "member");
  name.isMember = true;
  name.member = parse_number().number;
  name.valid = true;
  skip_body();
  return name;
}

// Members count from the most significant end.
BitRef* EdifReader::member_ref(const Module& module, const PortName& name) const {
  const Signal* signal = module.getSignal(name.label.first, true);
  if (signal == nullptr) return nullptr;
  std::int64_t index = static_cast<std::int64_t>(signal->getMsb()) - name.member;
  const auto declared = m_ranges.find(signal);
  if (declared != m_ranges.end()) {
    const DeclaredRange& range = declared->second;
    index = range.left >= range.right ? std::int64_t{range.left} - name.member
                                      : std::int64_t{range.left} + name.member;
  }
  return signal->getBitRef(static_cast<std::uint32_t>(index), true);
}

BitRef* EdifReader::port_ref(const Module& module, const PortName& name) const {
  if (name.isMember) return member_ref(module, name);
  const Signal* signal = module.getSignal(name.label.first, true);
  return signal == nullptr ? nullptr : scalar_ref(*signal);
}

BitRef* EdifReader::scalar_ref(const Signal& signal) {
  return signal.getLsb() > 0 ? nullptr : signal.getBitRef(0, true);
}

EdifReader::ExprResult EdifReader::parse_member() {
  backup(2);
  const PortName name = parse_port_name();
  ExprResult result;
  result.ref = member_ref(front(), name);
  if (result.ref != nullptr) result.kind = EXPR_BITREF;
  return result;
}

EdifReader::ExprResult EdifReader::parse_portref() {
  const PortName name = parse_port_name();
  ExprResult result{EXPR_BITREF};
  if (name.label.kind == EXPR_END) return result;
  const Module* module = &front();
  for (ExprResult item = parse_expr(); item.kind != EXPR_END; item = parse_expr()) {
    if (item.kind == EXPR_INSTANCE) module = item.instance;
  }
  if (module != nullptr && name.valid) result.ref = port_ref(*module, name);
  return result;
}

EdifReader::ExprResult EdifReader::parse_net() {
  const ExprResult name = parse_expr();
  if (name.kind == EXPR_END) return {};
  const ExprResult joined = parse_expr();
  if (joined.kind != EXPR_END) parse_body();
  if (joined.kind == EXPR_BITREF && joined.ref != nullptr) add_net(name, *joined.ref);
  return {};
}

void EdifReader::add_net(const ExprResult& name, BitRef& joined) {
  if (name.kind != EXPR_LABEL) fatal("ERROR: Net name is not a LBL\n.");
  if (m_state.reading.has(Rule::PrintableRegisters)) {
    add_printable_net(name, joined);
    return;
  }
  if (front().getSignal(name.first, true) != nullptr) return;
  if (name.first == token::Const0 || name.first == token::Const1) return;
  const Word& text = *m_state.word(name.second);
  const BusBit bit = BusBit::ofName(text);
  if (bit.valid) {
    const Signal* bus = widen(m_state.tokens->getCode(bit.base), bit.index);
    bus->getBitRef(bit.index)->merge(&joined);
    return;
  }
  Signal* signal = add_signal(&text, 0, 0, name.first);
  hide_added(*signal, text);
  signal->getBitRef(0)->merge(&joined);
}

// Whether a net is named like a register that does not drive it, where that name looks like a
// bit's, as \pos[3] does.
bool EdifReader::is_others(std::string_view name, const BitRef& net) const {
  if (!m_any_bracketed) return false;
  const Signal* signal = m_state.findByName(m_view, front(), name);
  const BitRef* place = signal == nullptr ? nullptr : signal->getBitRef(signal->getLsb(), true);
  return place != nullptr && RegisterTies::isTied(*place) && place->getBit() != net.getBit();
}

void EdifReader::hide_added(Signal& signal, const Word& name) const {
  const bool added = utils::isAddedQuellonNetName(m_state.family, name.c_str());
  const auto marks = [](char byte) { return byte == '$' || byte == '.' || byte == '['; };
  signal.setHidden(added || std::any_of(name.view().begin(), name.view().end(), marks));
}

void EdifReader::add_printable_net(const ExprResult& name, BitRef& joined) {
  Module& module = front();
  const Signal* known = module.getSignal(name.first, true);
  if (name.first == token::Const0 || name.first == token::Const1) return;
  const Word* text = printable(name.second);
  // A port's net is the port; anything else under this number has another name.
  if (known != nullptr && known->m_port && text->view() == known->getName()) return;
  const NamedBits bit = decodeBit(*text);
  if (bit.valid && !is_foreign(bit.signal) && !is_others(*text, joined)) {
    BitRef* place = m_ties.widen(module, bit.signal, bit.lsb, bit.lsb)->getBitRef(bit.lsb);
    if (RegisterTies::join(*place, joined)) return;
  }
  Signal* same = m_state.findByName(m_view, module, text);
  // A bus of the name is something else and keeps the name.
  const bool single = same != nullptr && same->getLsb() == 0 && same->getMsb() == 0;
  if (same != nullptr && (!single || RegisterTies::join(*same->getBitRef(0), joined))) return;
  const bool free = same == nullptr;
  const Word* own =
      free ? text
           : m_state.model.names.intern(std::string_view(netApart(std::string(text->view()))));
  const unsigned number = free && known == nullptr ? name.first : m_state.freeNumber(module, *own);
  Signal* signal = add_signal(own, 0, 0, number);
  hide_added(*signal, *text);
  signal->getBitRef(0)->merge(&joined);
}

// Makes the bus of a bit, or widens it to hold the bit's index.
Signal* EdifReader::widen(std::uint32_t code, std::uint32_t index) {
  const Signal* bus = front().getSignal(code, true);
  const Word* name = m_state.word(code);
  if (bus == nullptr) return add_signal(name, index, index, code);
  return index < bus->getLsb() ? add_signal(name, index, bus->getMsb(), code)
                               : add_signal(name, bus->getLsb(), index, code);
}

EdifReader::ExprResult EdifReader::parse_port() {
  ExprResult port = parse_expr();
  if (port.kind == EXPR_END) return {};
  if (port.kind == EXPR_LABEL) {
    const bool named = m_state.reading.has(Rule::PrintablePorts);
    port.signal =
        add_signal(named ? printable(port.second) : m_state.word(port.first), 0, 0, port.first);
    if (port.first != port.second) merge_bit_port(port, *port.signal);
  }
  if (port.signal != nullptr) port.signal->m_port = true;
  for (ExprResult item = parse_expr(); item.kind != EXPR_END; item = parse_expr()) {
    if (port.signal == nullptr) continue;
    if (item.direction == token::Input) port.signal->setKind(IN);
    if (item.direction == token::Output) port.signal->setKind(OUT);
  }
  return port;
}

// A port that is one bit of a bus by its printable name is that bit.
void EdifReader::merge_bit_port(const ExprResult& name, Signal& port) {
  m_only_ports = false;
  if (m_state.reading.has(Rule::PrintableRegisters)) {
    const NamedBits bit = decodeBit(*printable(name.second));
    if (!bit.valid) return;
    m_ties.widen(front(), bit.signal, bit.lsb, bit.lsb)->merge(&port, bit.lsb, 0);
    return;
  }
  const BusBit bit = BusBit::ofName(*m_state.word(name.second));
  if (!bit.valid) return;
  widen(m_state.tokens->getCode(bit.base), bit.index)->merge(&port, bit.index, 0);
}

EdifReader::ExprResult EdifReader::parse_program() {
  const ExprResult name = parse_text();
  if (name.kind == EXPR_LABEL && name.first == token::Tarvona) {
    m_netlist.setFamily(TORVAL7);
  } else {
    // Other writers' netlists are read all the same.
    message(StandardError, "ERROR: Unknown program '%s'\n",
            name.kind == EXPR_LABEL ? m_state.word(name.first)->c_str() : "");
  }
  parse_body();
  return {};
}

EdifReader::ExprResult EdifReader::parse_property() {
  const ExprResult name = parse_expr();
  if (name.kind == EXPR_END) return {};
  const std::uint32_t property = name.first;
  const bool initial = property == token::Init || isDInverted(property) || isRSTInverted(property);
  const bool acts = m_view == SYNTH ? initial : property == token::PartProperty;
  if (name.kind != EXPR_LABEL || !acts) {
    skip_body();
    return {};
  }
  m_only_ports = false;
  const ExprResult value = parse_expr();
  if (value.kind == EXPR_END) return {};
  if (value.kind == EXPR_LABEL) apply_property(property, *m_state.word(value.second));
  parse_body();
  return {};
}

void EdifReader::apply_property(std::uint32_t property, const Word& text) {
  if (property == token::PartProperty) {
    m_netlist.setPart(utils::getPart(text.c_str()));
    return;
  }
  // A literal such as 64'h00ff or 1'b1: every "'", "h" and "b" separates, digits are hexadecimal.
  std::string numbers(text.view());
  std::replace_if(
      numbers.begin(), numbers.end(),
      [](char byte) { return byte == '\'' || byte == 'h' || byte == 'b'; }, ' ');
  Scan scan(numbers);
  std::uint32_t width = 0;
  std::uint64_t value = 0;
  if (!scan.integer(width) || !scan.hexadecimal(value)) return;
  Module& module = front();
  if (property == token::Init) {
    module.setInit(value);
  } else if (value == 1 && isDInverted(property)) {
    module.setDInverted(true);
  } else if (value == 1) {
    module.setRSTInverted(true);
  }
}

EdifReader::ExprResult EdifReader::parse_rename() {
  const ExprResult identifier = parse_expr();
  const std::uint32_t code = require_label(identifier, "rename");
  const ExprResult printable = parse_text();
  require_label(printable, "rename");
  parse_body();
  m_state.renamed.at(m_view) = m_state.renamed.at(m_view) || code != printable.second;
  return {EXPR_LABEL, code, printable.second};
}

EdifReader::ExprResult EdifReader::parse_string() {
  const ExprResult text = parse_text();
  parse_body();
  return text.kind == EXPR_LABEL ? text : ExprResult{};
}

}  // namespace XRF_RTL2LL
