#pragma once

#include <cstdint>

/// Enumerations shared by the whole cross-reference half.
namespace XRF_RTL2LL {

/// The two views of a design; registries are indexed by it.
enum EdifView : std::uint32_t { RTL = 0, SYNTH = 1 };

/// Device family; only a design of a known family can be exported or have its log read.
enum Family : std::uint32_t { FAMILY_NONE = 0, TORVAL7 = 1 };

/// Device part; `utils::getPart` yields Part(4) for every device text.
enum Part : std::uint32_t { PART_NONE = 0 };

/// What a module does. Every module starts as HIER: not a primitive.
enum opKind : std::uint32_t {
  BUF,
  EQUAL,
  GND,
  INV,
  NOT_EQUAL,
  LOGIC,
  PWR,
  REG,
  WIDE_FD,
  HIER,
  XOR
};

/// Direction of a signal.
enum signalKind : std::uint32_t { IN, OUT, WIRE };

}  // namespace XRF_RTL2LL
