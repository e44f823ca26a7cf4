#include "Hazards.h"

#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace generate {

namespace {

struct Entry {
  Hazard hazard;
  std::string_view name;
  std::string_view description;
};

constexpr std::array<Entry, static_cast<size_t>(Hazard::Crlf) + 1> kEntries = {{
    {Hazard::Scopes, "scopes",
     "generate scopes: registers gen[2].cnt_reg[3], scopes in scopes, instances gen[2].u"},
    {Hazard::Records, "records", "record fields: r_reg[count][31], r_reg[tag][valid], r_reg[tag]"},
    {Hazard::Arrays, "arrays", "registers of two and three dimensions: m_reg[1][2][3]"},
    {Hazard::Ranges, "ranges", "ranges that do not end at 0 or ascend: d[15:8], d[0:7]"},
    {Hazard::Wide, "wide",
     "elaborated registers of several bits, with and without a printed range, in two slices"},
    {Hazard::EscapedNames, "escaped-names",
     "escaped names: foo.bar beside foo_bar and foo$bar, pos[3] beside pos_3_"},
    {Hazard::RegSuffix, "reg-suffix", "foo beside foo_reg"},
    {Hazard::ParentNames, "parent-names",
     "the same register names on every level of the hierarchy"},
    {Hazard::Blanks, "blanks", "blanks and parentheses in names: \"a b\", x(2)"},
    {Hazard::CleanedCollisions, "cleaned-collisions",
     "\"a b\" beside a_b, x(1) beside x_1_: one name once cleaned, hence unmatched"},
    {Hazard::BitPorts, "bit-ports", "ports bit by bit instead of arrays"},
    {Hazard::PortRanges, "port-ranges",
     "port arrays [15:8], [0:7], some of them with the bus for an identifier"},
    {Hazard::NegativePorts, "negative-ports", "input arrays with a negative bound: din[3:-4]"},
    {Hazard::RecordPorts, "record-ports", "ports of record types: din[4][tag][7:0]"},
    {Hazard::EscapedPorts, "escaped-ports",
     "single ports with escaped names: valid.o, beside registers valid_o"},
    {Hazard::Constants, "constants", "registers that became constant, alone and whole"},
    {Hazard::Removed, "removed", "registers that were removed for want of a load"},
    {Hazard::Merged, "merged",
     "registers merged into others: bits and whole registers, in chains, across modules"},
    {Hazard::Inverted, "inverted", "registers that hold the inverse, x_reg[3]_inv; unmatched"},
    {Hazard::Replicas, "replicas",
     "copies x_reg[4]_rep, x_reg[4]_rep__0; sometimes the copy alone is left"},
    {Hazard::ToolNets, "tool-nets", "output nets named by the tool: n_0_x_reg[7], x_reg_n_0_[7]"},
    {Hazard::FarNets, "far-nets",
     "output nets with a name from the far end: p_0_in[2], or that of other logic or of another "
     "register in the source"},
    {Hazard::PortNets, "port-nets", "registers acc whose output nets have the port's name dout[3]"},
    {Hazard::IoBuffers, "io-buffers", "buffers at the pads: nets dout_OBUF[3], din_IBUF[3]"},
    {Hazard::OneInputLuts, "one-input-luts", "look-up tables that pass or invert one input"},
    {Hazard::Latches, "latches", "latches: RTL_LATCH becomes LD, LDC, LDP, LDCE, LDPE"},
    {Hazard::FallingEdges, "falling-edges", "flip-flops of the falling edge: FDRE_1 and its kin"},
    {Hazard::StateMachines, "state-machines",
     "states coded anew: FSM_onehot_state_reg[2], at times with a net named state[2]; unmatched"},
    {Hazard::FlattenSlash, "flatten-slash",
     "modules flattened into their parents, instances named u0/x_reg[3]"},
    {Hazard::FlattenUnderscore, "flatten-underscore",
     "modules flattened into their parents, instances named u0_x_reg[3]"},
    {Hazard::FlattenCollisions, "flatten-collisions",
     "u0_echo in the parent of u0/echo, flattened with \"_\"; both unmatched"},
    {Hazard::Shells, "shells", "modules with neither ports nor contents"},
    {Hazard::LatchKinds, "latch-kinds", "latches AQ, A5Q, AQ2, AMUX; AMUX of look-up tables too"},
    {Hazard::Regions, "slr", "the location file's later revision, with the columns SLR1 2"},
    {Hazard::ForeignBlocks, "foreign-blocks",
     "location lines of memories, pads and others, with all six fields"},
    {Hazard::LogSpellings, "log-spellings",
     "log lines with and without INFO, backslashes, \"i_0/\", \":/\", the last blank; implies "
     "constants and merged"},
    {Hazard::SuppressedMessages, "suppressed",
     "the log stops naming registers of a kind after some, the rest is not to be found; implies "
     "constants and merged"},
    {Hazard::Crlf, "crlf", "lines end in CR LF"},
}};

constexpr bool isInOrder() {
  for (size_t index = 0; index < kEntries.size(); ++index) {
    if (static_cast<size_t>(kEntries[index].hazard) != index) return false;
  }
  return true;
}
static_assert(isInOrder());

Hazard findHazard(std::string_view name) {
  for (const Entry& entry : kEntries) {
    if (entry.name == name) return entry.hazard;
  }
  throw std::invalid_argument("unknown hazard: " + std::string(name));
}

}  // namespace

namespace {

Hazards parseNames(std::string_view list) {
  Hazards hazards;
  if (list == "none") return hazards;
  if (list == "all") {
    for (const Entry& entry : kEntries) hazards.insert(entry.hazard);
    return hazards;
  }
  for (;;) {
    const size_t comma = list.find(',');
    hazards.insert(findHazard(list.substr(0, comma)));
    if (comma == std::string_view::npos) return hazards;
    list.remove_prefix(comma + 1);
  }
}

}  // namespace

Hazards parseHazards(std::string_view list) {
  Hazards hazards = parseNames(list);
  if (hazards.has(Hazard::LogSpellings) || hazards.has(Hazard::SuppressedMessages)) {
    hazards.insert(Hazard::Constants);
    hazards.insert(Hazard::Merged);
  }
  return hazards;
}

void printHazards() {
  for (const Entry& entry : kEntries) {
    std::printf("%-20s%s\n", std::string(entry.name).c_str(),
                std::string(entry.description).c_str());
  }
}

}  // namespace generate
