#ifndef BENCH_GENERATE_CELLS_H
#define BENCH_GENERATE_CELLS_H

#include "Design.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace generate {

/// Names of ports, of primitive cells and of modules alike.
enum class Pin : uint8_t {
  I0,
  I1,
  I2,
  I3,
  I4,
  I5,
  I,
  O,
  S,
  C,
  CE,
  D,
  Q,
  R,
  RST,
  SET,
  CLR,
  PRE,
  G,
  P,
  CI,
  CYINIT,
  DI,
  CO,
  Clk,
  Rst,
  En,
  Sel0,
  Sel1,
  Din,
  Dout,
  Valid,
  GE,
  DOA,
  DOB,
  DIA,
  DIB,
  ADDRA,
  ADDRB,
  WE,
  A,
  B,
  MODE,
};

std::string_view pinName(Pin pin);

struct Port {
  Pin pin;
  bool isOutput;
  uint32_t width = 0;  ///< 0 for a single port, else an array
};

/// Kinds of primitive cells. The operators and registers of an elaborated netlist come in many
/// numbered variants, which is why a cell is a kind and a number.
enum class CellKind : uint8_t {
  Lut,
  Fdre,
  Fdse,
  Fdce,
  Fdpe,
  Carry,
  InputBuffer,
  ClockBuffer,
  Ground,
  Power,
  RtlGround,
  RtlPower,
  RtlRegister,
  RtlRegisterReset,
  RtlRegisterSet,
  RtlRegisterClear,
  RtlRegisterPreset,
  RtlAdd,
  RtlSubtract,
  RtlAnd,
  RtlOr,
  RtlXor,
  RtlMultiplexer,
  FdreFalling,
  FdseFalling,
  FdceFalling,
  FdpeFalling,
  Latch,
  LatchClear,
  LatchPreset,
  LatchClearEnable,
  LatchPresetEnable,
  OutputBuffer,
  BufferLut,    ///< LUT1 with the contents of a buffer
  InverterLut,  ///< LUT1 with the contents of an inverter
  RtlLatch,
  RtlInverter,
  RtlWideRegister,
  BlockMemory,
  Multiplier,
};

struct Cell {
  CellKind kind;
  uint16_t number = 0;
};

constexpr uint32_t kCellKinds = static_cast<uint32_t>(CellKind::Multiplier) + 1;
constexpr uint32_t kCellNumbers = 512;

std::string cellName(Cell cell);
std::vector<Port> cellPorts(Cell cell);

/// The look-up table with so many inputs, 1 to 6.
Cell lutCell(uint32_t inputs);
/// The flip-flop that implements a bank's registers, and the pin of its control input.
Cell flipFlopCell(Control control);
Cell storageCell(const Bank& bank);
bool isLatch(CellKind kind);
bool isFlipFlop(CellKind kind);
Pin flipFlopControlPin(Control control);
/// The register cell of a bank in the elaborated netlist.
Cell rtlRegisterCell(const Module& module, const Bank& bank);
Pin rtlControlPin(Control control);
/// The register cell that holds so many bits at once.
Cell rtlWideRegisterCell(uint32_t width);
/// The operator that computes one row of a bank in the elaborated netlist; not for copies.
Cell rtlOperatorCell(const Module& module, const Bank& bank);

}  // namespace generate

#endif
