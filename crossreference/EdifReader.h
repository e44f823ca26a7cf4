#pragma once

#include <crossreference/CellTemplate.h>
#include <crossreference/EdifTokens.h>
#include <crossreference/NetlistState.h>
#include <crossreference/RegisterTies.h>

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

namespace XRF_RTL2LL {

/// Turns the words of one netlist into the model of one view. Cells are read where an instance
/// refers to them, once for each instance, so the design unfolds into its full instance tree.
class EdifReader {
 public:
  EdifReader(Netlist& netlist, NetlistState& state, EdifView view, const std::string& path,
             const TextSource& text);
  ~EdifReader();
  EdifReader(const EdifReader&) = delete;
  EdifReader& operator=(const EdifReader&) = delete;

  void read();

 private:
  enum ExprKind {
    EXPR_END,
    EXPR_INSTANCE,
    EXPR_SIGNAL,
    EXPR_BITREF,
    EXPR_LABEL,
    EXPR_NUMBER,
    EXPR_NONE
  };

  struct ExprResult {
    ExprKind kind = EXPR_NONE;
    std::uint32_t first = 0;   // of a label the identifier's code
    std::uint32_t second = 0;  // of a label the printable name's code
    std::int64_t number = 0;
    Module* instance = nullptr;
    Signal* signal = nullptr;
    BitRef* ref = nullptr;
    std::uint32_t direction = 0;  // of a direction form its word
  };

  struct CellRecord {
    explicit CellRecord(std::size_t at) : position(at) {}
    std::size_t position;               // of the "(" that opens the cell
    bool open = false;                  // an instance of it is being read
    bool known = false;                 // an instance of it was read
    std::optional<CellTemplate> ports;  // of a cell of nothing but ports
    InstanceGroup* instances = nullptr;
  };

  // An alias of an instance's output, which waits for the end of the module around it.
  struct Deferred {
    Module* parent;
    Module* instance;
    std::uint32_t alias;
  };

  // A port or a member of one, before it is known in which module it lies.
  struct PortName {
    ExprResult label;
    bool isMember = false;
    std::int64_t member = 0;
    bool valid = false;
  };

  // A port reference that was recognised ahead of its turn, and what was found of it so far.
  struct PlainPort {
    std::size_t end;
    std::uint32_t port;
    std::uint32_t instance;
    bool own;
    const Module* module;
    const Signal* signal;
    BitRef* ref;
  };

  ExprResult parse_expr();
  ExprResult parse_form(std::uint32_t keyword);
  ExprResult parse_structure(std::uint32_t keyword);
  void parse_body();
  void skip_body();
  void leave_list(std::size_t end);
  ExprResult parse_number();
  ExprResult parse_text();
  void backup(std::size_t count) { m_cursor -= count; }

  ExprResult parse_array();
  ExprResult parse_cell();
  ExprResult parse_cellref();
  ExprResult parse_design();
  ExprResult parse_instance();
  ExprResult parse_direction();
  ExprResult parse_joined();
  ExprResult parse_instanceref();
  ExprResult parse_library();
  ExprResult parse_libraryref();
  ExprResult parse_member();
  ExprResult parse_net();
  ExprResult parse_port();
  ExprResult parse_portref();
  ExprResult parse_program();
  ExprResult parse_property();
  ExprResult parse_rename();
  ExprResult parse_string();

  void record_cell(std::uint32_t cell, std::size_t position);
  void elaborate_cell(std::uint32_t cell);
  void elaborate_body(CellRecord& record);
  bool copy_ports(const CellRecord& record);
  void report();
  [[noreturn]] void end_early();
  void spend(std::uint64_t words) {
    m_taken += words;
    if (m_taken >= m_next_report) report();
  }
  Module* push_module(const ExprResult& name);
  void tie_instance(Module& instance, const ExprResult& name);
  void tie_register(Module& instance, const ExprResult& name);
  void tie_wide_register(Module& instance, const ExprResult& name);
  ExprResult createRegBit(std::uint32_t instance);
  void tie_printable(Module& instance, const ExprResult& name);
  void add_alias(Module& instance, std::uint32_t name);
  void make_alias(std::uint32_t name, Signal* output);
  void finish_module();
  void add_net(const ExprResult& name, BitRef& joined);
  void add_printable_net(const ExprResult& name, BitRef& joined);
  void merge_bit_port(const ExprResult& name, Signal& port);
  Signal* widen(std::uint32_t code, std::uint32_t index);
  bool is_foreign(const std::string& bus) const;
  bool is_others(std::string_view name, const BitRef& net) const;
  void apply_property(std::uint32_t property, const Word& text);

  PortName parse_port_name();
  BitRef* member_ref(const Module& module, const PortName& name) const;
  BitRef* port_ref(const Module& module, const PortName& name) const;
  static BitRef* scalar_ref(const Signal& signal);
  bool is_plain_portref(std::size_t at, PlainPort& port) const;
  void look_ahead();

  std::uint32_t take() {
    if (m_cursor >= m_tokens.size()) end_early();
    spend(1);
    return m_tokens[m_cursor++];
  }
  std::uint32_t require_label(const ExprResult& expr, const char* form) const;
  const Word* printable(std::uint32_t code) const;
  Module& front() const;
  Signal* add_signal(const Word* name, std::uint32_t lsb, std::uint32_t msb, std::uint32_t id);
  void hide_added(Signal& signal, const Word& name) const;
  void check_work() const;
  ReadPlace::Position position() const;

  Netlist& m_netlist;
  NetlistState& m_state;
  EdifView m_view;
  const Limits m_limits;
  EdifTokens m_tokens;
  ReadPlace m_place;
  std::unordered_map<std::uint32_t, CellRecord> m_cells;
  PortRanges m_ranges;
  bool m_any_bracketed = false;  // whether a register's own name ends in a bracket
  bool m_any_foreign = false;    // whether a port array's range is none that the model can have
  InstanceGroup* m_unknown_cell = nullptr;
  std::vector<const Module*> m_namesakes;  // modules of one name
  std::vector<Deferred> m_deferred;
  RegisterTies m_ties;
  std::vector<Module*> m_modules;  // being read, the current one last
  std::size_t m_cursor = 0;
  std::array<PlainPort, 16> m_plain{};
  std::size_t m_plain_count = 0;
  std::size_t m_plain_taken = 0;
  unsigned m_depth = 0;
  unsigned m_deepest = 0;     // since the body of a cell was begun
  bool m_only_ports = false;  // whether that body held nothing else
  ObjectBudget m_budget;
  std::uint64_t m_path_bytes = 0;
  std::uint64_t m_taken = 0;
  std::uint64_t m_next_report = std::uint64_t{1} << 20;
  bool m_lexing = true;
};

}  // namespace XRF_RTL2LL
