#include <crossreference/NetlistState.h>
#include <support/Report.h>
#include <support/Scan.h>

#include <algorithm>
#include <array>

namespace XRF_RTL2LL {

namespace {

constexpr std::array<const char*, token::Count> fixedWords = {"(",
                                                              ")",
                                                              "array",
                                                              "cell",
                                                              "cellref",
                                                              "design",
                                                              "direction",
                                                              "instance",
                                                              "instanceref",
                                                              "INIT",
                                                              "joined",
                                                              "Library",
                                                              "libraryref",
                                                              "LUT1",
                                                              "LUT2",
                                                              "LUT3",
                                                              "LUT4",
                                                              "LUT5",
                                                              "LUT6",
                                                              "member",
                                                              "net",
                                                              "port",
                                                              "portref",
                                                              "property",
                                                              "Q",
                                                              "q",
                                                              "rename",
                                                              "string",
                                                              "program",
                                                              "_const0_",
                                                              "_const1_",
                                                              "FD",
                                                              "FDC",
                                                              "FDCE",
                                                              "FDE",
                                                              "FDP",
                                                              "FDPE",
                                                              "FDR",
                                                              "FDRE",
                                                              "FDS",
                                                              "FDSE",
                                                              "INPUT",
                                                              "OUTPUT",
                                                              "Tarvona",
                                                              "Drumlane",
                                                              "part",
                                                              "IS_CLR_INVERTED",
                                                              "IS_D_INVERTED",
                                                              "IS_PRE_INVERTED",
                                                              "IS_R_INVERTED",
                                                              "IS_S_INVERTED"};

struct CellRule {
  std::string_view name;
  std::size_t compared;  // bytes of the cell's name that take part; 0 for all
  opKind kind;
};

// First match wins. "RTL_equal" is compared over thirteen bytes, so only the exact name matches and
// numbered ones are plain logic.
constexpr std::array<CellRule, 17> cellRules = {{{"GND", 0, GND},
                                                 {"RTL_GND", 0, GND},
                                                 {"VCC", 0, PWR},
                                                 {"RTL_PWR", 0, PWR},
                                                 {"INV", 0, INV},
                                                 {"RTL_INV", 0, INV},
                                                 {"RTL_INV0", 0, INV},
                                                 {"BUFG", 0, BUF},
                                                 {"RTL_BUF", 0, BUF},
                                                 {"RTL_REG", 7, REG},
                                                 {"RTL_FD", 6, REG},
                                                 {"RTL_wide_fd", 11, WIDE_FD},
                                                 {"RTL_xor", 7, XOR},
                                                 {"RTL_not_equal", 13, NOT_EQUAL},
                                                 {"RTL_equal", 13, EQUAL},
                                                 {"RTL", 3, LOGIC},
                                                 {"LUT", 3, LOGIC}}};

opKind kindOfName(std::string_view cell) {
  for (const CellRule& rule : cellRules) {
    const std::size_t compared = rule.compared == 0 ? cell.size() : rule.compared;
    if (cell.substr(0, compared) == rule.name) return rule.kind;
  }
  return HIER;
}

// A decimal number in brackets at the start of a text; what follows it stays in `text`.
bool takeIndex(std::string_view& text, std::uint32_t& index) {
  if (text.empty() || text.front() != '[') return false;
  std::size_t at = 1;
  std::uint64_t number = 0;
  while (at < text.size() && isDigit(text[at])) {
    // Beyond any index a signal can have, where its exact value no longer matters.
    number = std::min<std::uint64_t>(number * 10 + static_cast<std::uint64_t>(text[at++] - '0'),
                                     0xffffffffU);
  }
  if (at == 1 || at == text.size() || text[at] != ']') return false;
  index = static_cast<std::uint32_t>(number);
  text.remove_prefix(at + 1);
  return true;
}

std::string_view takeBase(std::string_view& text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  std::size_t at = 0;
  while (at < text.size() && !isBlank(text[at]) && text[at] != '[' && text[at] != ']') ++at;
  const std::string_view base = text.substr(0, at);
  text.remove_prefix(at);
  return base;
}

bool allBlank(std::string_view text) {
  for (const char byte : text) {
    if (!isBlank(byte)) return false;
  }
  return true;
}

// A register's name has something before its ending.
std::string_view withoutEnding(std::string_view word) {
  constexpr std::string_view ending = "_reg";
  if (word.size() <= ending.size() || !word.ends_with(ending)) return {};
  word.remove_suffix(ending.size());
  return word;
}

}  // namespace

void Netlist::initializeMap() {
  m_state->tokens->clear();
  m_state->kinds.clear();
  for (std::uint32_t code = 0; code < fixedWords.size(); ++code) {
    m_state->tokens->seed(fixedWords.at(code), code);
  }
}

opKind Netlist::getKind(unsigned int cellCode, unsigned int /*libraryCode*/, unsigned int lutMode) {
  return m_state->kindOf(cellCode, lutMode);
}

bool Netlist::isPrimitive(unsigned int cellCode, unsigned int libraryCode, unsigned int lutMode) {
  return getKind(cellCode, libraryCode, lutMode) != HIER;
}

opKind NetlistState::kindOf(unsigned int cellCode, unsigned int lutMode) {
  if (cellCode == token::Lut1 && lutMode == 2) return BUF;
  if (cellCode == token::Lut1 && lutMode == 1) return INV;
  if (cellCode < kinds.size() && kinds[cellCode] != 0) {
    return static_cast<opKind>(kinds[cellCode] - 1);
  }
  const bool seeded = cellCode >= token::Fd && cellCode <= token::Fdse;
  const opKind kind = seeded ? REG : kindOfName(*word(cellCode));
  if (cellCode >= kinds.size()) kinds.resize(cellCode + 1);
  kinds[cellCode] = static_cast<std::uint8_t>(kind + 1);
  return kind;
}

BusBit BusBit::ofName(std::string_view name) {
  BusBit bit;
  bit.base = takeBase(name);
  bit.valid =
      !bit.base.empty() && takeIndex(name, bit.index) && (name.empty() || isBlank(name.front()));
  return bit;
}

RegisterName RegisterName::decode(std::string_view instance) {
  RegisterName result;
  std::string_view text = instance;
  const std::string_view base = withoutEnding(takeBase(text));
  std::uint32_t first = 0;
  if (!base.empty() && takeIndex(text, first)) {
    if (allBlank(text)) {
      result.signal = base;
      result.index = first;
      result.valid = true;
      return result;
    }
    if (takeIndex(text, result.index)) {
      result.signal = std::string(base) + "<" + std::to_string(first) + ">";
      result.valid = true;
      return result;
    }
  }
  const std::string_view whole = withoutEnding(instance);
  result.signal = whole;
  result.index = 0;
  result.valid = !whole.empty();
  return result;
}

bool isDInverted(unsigned int propertyCode) { return propertyCode == token::IsDInverted; }

bool isRSTInverted(unsigned int propertyCode) {
  return propertyCode == token::IsClrInverted ||
         (propertyCode >= token::IsPreInverted && propertyCode <= token::IsSInverted);
}

void setKind(Bit* bit, const char* text) {
  switch (text[0]) {
    case 'C':
      return bit->setKind(Bit::CNST);
    case 'U':
      return bit->setKind(Bit::UNREAD);
    case '?':
      return bit->setKind(Bit::UNKNOWN);
    default:
      fatal("Unknown bit kind: '%s'!\n", text);
  }
}

void setKind(Signal* signal, const char* text) {
  switch (text[0]) {
    case 'I':
      return signal->setKind(IN);
    case 'O':
      return signal->setKind(OUT);
    case 'W':
      return signal->setKind(WIRE);
    default:
      fatal("Unknown signal kind: '%s'!\n", text);
  }
}

void setValue(Bit* bit, const char* text) {
  switch (text[0]) {
    case '1':
      return bit->setValue(true);
    case '0':
      return bit->setValue(false);
    case 'z':
      return bit->setValueStr("z");
    default:
      fatal("Unknown bit value: '%s'!\n", text);
  }
}

}  // namespace XRF_RTL2LL
