#include "Cells.h"

#include "OutputFile.h"
#include "Random.h"

#include <array>

namespace generate {

namespace {

constexpr uint32_t kMaxOperatorWidth = 32;
constexpr uint32_t kVariants = kCellNumbers / kMaxOperatorWidth;

/// The width of a numbered operator follows from its number.
uint32_t operatorWidth(uint16_t number) { return number % kMaxOperatorWidth + 1; }

std::vector<Port> lutPorts(uint32_t inputs) {
  std::vector<Port> ports{{Pin::O, true}};
  for (uint32_t input = 0; input < inputs; ++input) {
    ports.push_back({static_cast<Pin>(static_cast<uint32_t>(Pin::I0) + input), false});
  }
  return ports;
}

std::vector<Port> operatorPorts(Cell cell) {
  const uint32_t width = operatorWidth(cell.number);
  const uint32_t declared = width == 1 ? 0 : width;
  std::vector<Port> ports{
      {Pin::O, true, declared}, {Pin::I0, false, declared}, {Pin::I1, false, declared}};
  if (cell.kind == CellKind::RtlMultiplexer) ports.push_back({Pin::S, false});
  return ports;
}

std::vector<Port> registerPorts(Pin control) {
  return {{Pin::Q, true}, {Pin::C, false}, {Pin::CE, false}, {Pin::D, false}, {control, false}};
}

std::string_view cellPrefix(CellKind kind) {
  static constexpr std::array<std::string_view, kCellKinds> kNames = {"LUT",
                                                                      "FDRE",
                                                                      "FDSE",
                                                                      "FDCE",
                                                                      "FDPE",
                                                                      "CARRY4",
                                                                      "IBUF",
                                                                      "BUFG",
                                                                      "GND",
                                                                      "VCC",
                                                                      "RTL_GND",
                                                                      "RTL_PWR",
                                                                      "RTL_REG__BREG_",
                                                                      "RTL_REG_SYNC__BREG_",
                                                                      "RTL_REG_SYNC_S__BREG_",
                                                                      "RTL_REG_ASYNC__BREG_",
                                                                      "RTL_REG_ASYNC_P__BREG_",
                                                                      "RTL_ADD",
                                                                      "RTL_SUB",
                                                                      "RTL_AND",
                                                                      "RTL_OR",
                                                                      "RTL_XOR",
                                                                      "RTL_MUX",
                                                                      "FDRE_1",
                                                                      "FDSE_1",
                                                                      "FDCE_1",
                                                                      "FDPE_1",
                                                                      "LD",
                                                                      "LDC",
                                                                      "LDP",
                                                                      "LDCE",
                                                                      "LDPE",
                                                                      "OBUF",
                                                                      "LUT1",
                                                                      "LUT1",
                                                                      "RTL_LATCH__",
                                                                      "RTL_INV",
                                                                      "RTL_wide_fd",
                                                                      "RAMB36",
                                                                      "MULT"};
  return kNames[static_cast<size_t>(kind)];
}

}  // namespace

std::string_view pinName(Pin pin) {
  static constexpr std::array<std::string_view, 43> kNames = {
      "I0",  "I1",  "I2",  "I3",  "I4",    "I5",     "I",      "O",   "S",    "C",     "CE",
      "D",   "Q",   "R",   "RST", "SET",   "CLR",    "PRE",    "G",   "P",    "CI",    "CYINIT",
      "DI",  "CO",  "clk", "rst", "en",    "sel[0]", "sel[1]", "din", "dout", "valid", "GE",
      "DOA", "DOB", "DIA", "DIB", "ADDRA", "ADDRB",  "WE",     "A",   "B",    "MODE"};
  static_assert(kNames.size() == static_cast<size_t>(Pin::MODE) + 1);
  return kNames[static_cast<size_t>(pin)];
}

std::string cellName(Cell cell) {
  std::string name(cellPrefix(cell.kind));
  const bool isNumbered =
      (cell.kind >= CellKind::RtlRegister && cell.kind <= CellKind::RtlMultiplexer) ||
      cell.kind == CellKind::RtlLatch || cell.kind == CellKind::RtlWideRegister;
  if (cell.kind == CellKind::Lut || isNumbered) {
    appendNumber(name, cell.number);
  }
  return name;
}

std::vector<Port> cellPorts(Cell cell) {
  switch (cell.kind) {
    case CellKind::Lut:
      return lutPorts(cell.number);
    case CellKind::Fdre:
    case CellKind::FdreFalling:
      return registerPorts(Pin::R);
    case CellKind::Fdse:
    case CellKind::FdseFalling:
      return registerPorts(Pin::S);
    case CellKind::Fdce:
    case CellKind::FdceFalling:
    case CellKind::RtlRegisterClear:
      return registerPorts(Pin::CLR);
    case CellKind::Fdpe:
    case CellKind::FdpeFalling:
    case CellKind::RtlRegisterPreset:
      return registerPorts(Pin::PRE);
    case CellKind::RtlRegisterReset:
      return registerPorts(Pin::RST);
    case CellKind::RtlRegisterSet:
      return registerPorts(Pin::SET);
    case CellKind::RtlRegister:
      return {{Pin::Q, true}, {Pin::C, false}, {Pin::CE, false}, {Pin::D, false}};
    case CellKind::Carry:
      return {{Pin::O, true, 4},  {Pin::CO, true, 4},   {Pin::DI, false, 4},
              {Pin::S, false, 4}, {Pin::CYINIT, false}, {Pin::CI, false}};
    case CellKind::Latch:
    case CellKind::RtlLatch:
      return {{Pin::Q, true}, {Pin::D, false}, {Pin::G, false}};
    case CellKind::LatchClear:
      return {{Pin::Q, true}, {Pin::CLR, false}, {Pin::D, false}, {Pin::G, false}};
    case CellKind::LatchPreset:
      return {{Pin::Q, true}, {Pin::D, false}, {Pin::G, false}, {Pin::PRE, false}};
    case CellKind::LatchClearEnable:
      return {
          {Pin::Q, true}, {Pin::CLR, false}, {Pin::D, false}, {Pin::G, false}, {Pin::GE, false}};
    case CellKind::LatchPresetEnable:
      return {
          {Pin::Q, true}, {Pin::D, false}, {Pin::G, false}, {Pin::GE, false}, {Pin::PRE, false}};
    case CellKind::BufferLut:
    case CellKind::InverterLut:
      return lutPorts(1);
    case CellKind::RtlInverter:
      return {{Pin::O, true}, {Pin::I0, false}};
    case CellKind::RtlWideRegister:
      return {{Pin::Q, true, cell.number},
              {Pin::C, false},
              {Pin::CE, false},
              {Pin::D, false, cell.number}};
    case CellKind::BlockMemory:
      return {{Pin::DOA, true, 32},  {Pin::DOB, true, 16},    {Pin::DIA, false, 32},
              {Pin::DIB, false, 32}, {Pin::ADDRA, false, 16}, {Pin::ADDRB, false, 16},
              {Pin::WE, false, 8},   {Pin::C, false},         {Pin::CE, false},
              {Pin::R, false}};
    case CellKind::Multiplier:
      return {{Pin::P, true, 48}, {Pin::A, false, 30},   {Pin::B, false, 18}, {Pin::DI, false, 48},
              {Pin::C, false},    {Pin::MODE, false, 7}, {Pin::CE, false},    {Pin::R, false}};
    case CellKind::OutputBuffer:
    case CellKind::InputBuffer:
    case CellKind::ClockBuffer:
      return {{Pin::O, true}, {Pin::I, false}};
    case CellKind::Ground:
    case CellKind::RtlGround:
      return {{Pin::G, true}};
    case CellKind::Power:
    case CellKind::RtlPower:
      return {{Pin::P, true}};
    case CellKind::RtlAdd:
    case CellKind::RtlSubtract:
    case CellKind::RtlAnd:
    case CellKind::RtlOr:
    case CellKind::RtlXor:
    case CellKind::RtlMultiplexer:
      return operatorPorts(cell);
  }
  return {};
}

Cell lutCell(uint32_t inputs) { return {CellKind::Lut, static_cast<uint16_t>(inputs)}; }

Cell flipFlopCell(Control control) {
  switch (control) {
    case Control::Set:
      return {CellKind::Fdse};
    case Control::Clear:
      return {CellKind::Fdce};
    case Control::Preset:
      return {CellKind::Fdpe};
    case Control::None:
    case Control::Reset:
      break;
  }
  return {CellKind::Fdre};
}

namespace {

Cell latchCell(const Bank& bank) {
  switch (bank.control) {
    case Control::Clear:
      return {bank.enabled ? CellKind::LatchClearEnable : CellKind::LatchClear};
    case Control::Preset:
      return {bank.enabled ? CellKind::LatchPresetEnable : CellKind::LatchPreset};
    case Control::Reset:
      return {CellKind::LatchClearEnable};
    case Control::None:
    case Control::Set:
      break;
  }
  return {CellKind::Latch};
}

}  // namespace

Cell storageCell(const Bank& bank) {
  if (bank.storage == Storage::Latch) return latchCell(bank);
  const Cell cell = flipFlopCell(bank.control);
  if (bank.storage != Storage::FallingEdge) return cell;
  const auto distance =
      static_cast<uint8_t>(CellKind::FdreFalling) - static_cast<uint8_t>(CellKind::Fdre);
  return {static_cast<CellKind>(static_cast<uint8_t>(cell.kind) + distance)};
}

bool isLatch(CellKind kind) {
  return kind >= CellKind::Latch && kind <= CellKind::LatchPresetEnable;
}

bool isFlipFlop(CellKind kind) {
  return (kind >= CellKind::Fdre && kind <= CellKind::Fdpe) ||
         (kind >= CellKind::FdreFalling && kind <= CellKind::FdpeFalling);
}

Pin flipFlopControlPin(Control control) {
  switch (control) {
    case Control::Set:
      return Pin::S;
    case Control::Clear:
      return Pin::CLR;
    case Control::Preset:
      return Pin::PRE;
    case Control::None:
    case Control::Reset:
      break;
  }
  return Pin::R;
}

Cell rtlWideRegisterCell(uint32_t width) {
  return {CellKind::RtlWideRegister, static_cast<uint16_t>(width)};
}

Cell rtlRegisterCell(const Module& module, const Bank& bank) {
  if (bank.storage == Storage::Latch) {
    return {CellKind::RtlLatch,
            static_cast<uint16_t>(scramble(module.seed, 6, bank.index) % kCellNumbers)};
  }
  const auto kind = static_cast<CellKind>(static_cast<uint32_t>(CellKind::RtlRegister) +
                                          static_cast<uint32_t>(bank.control));
  return {kind, static_cast<uint16_t>(scramble(module.seed, 6, bank.index) % kCellNumbers)};
}

Pin rtlControlPin(Control control) {
  switch (control) {
    case Control::Set:
      return Pin::SET;
    case Control::Clear:
      return Pin::CLR;
    case Control::Preset:
      return Pin::PRE;
    case Control::None:
    case Control::Reset:
      break;
  }
  return Pin::RST;
}

Cell rtlOperatorCell(const Module& module, const Bank& bank) {
  const auto kind = static_cast<CellKind>(static_cast<uint32_t>(CellKind::RtlAdd) +
                                          static_cast<uint32_t>(bank.operation) -
                                          static_cast<uint32_t>(Operation::Add));
  const uint64_t variant = scramble(module.seed, 7, bank.index) % kVariants;
  return {kind, static_cast<uint16_t>(variant * kMaxOperatorWidth + bank.width - 1)};
}

}  // namespace generate
