#include "HazardPorts.h"

#include "OutputFile.h"
#include "Random.h"
#include "RegisterNames.h"

namespace generate {

namespace {

Subscript range(Hazards hazards, uint64_t lot, uint32_t width) {
  const auto last = static_cast<int32_t>(width) - 1;
  if (!hazards.has(Hazard::PortRanges)) return {"", last, 0};
  switch (lot % 4) {
    case 0:
      return {"", 0, last};
    case 1:
      return {"", last + 8, 8};
    case 2:
      return {"", 3, last + 3};
    default:
      return {"", last, 0};
  }
}

BusPort bus(Hazards hazards, std::string_view name, uint64_t lot, uint32_t width) {
  BusPort port{std::string(name), {}, false};
  if (hazards.has(Hazard::RecordPorts) && lot % 3 != 0) {
    const auto element = static_cast<int32_t>(lot % 7);
    if (lot % 2 == 0) port.subscripts.push_back({"", element, element});
    port.subscripts.push_back({"tag", 0, 0});
  }
  port.subscripts.push_back(range(hazards, lot >> 8, width));
  port.isBits = hazards.has(Hazard::BitPorts) && (lot >> 16) % 3 != 0;
  return port;
}

}  // namespace

Ports hazardPorts(Hazards hazards, uint64_t seed, uint32_t width) {
  Ports ports{bus(hazards, "din", scramble(seed, 22), width),
              bus(hazards, "dout", scramble(seed, 23), width),
              {},
              "valid"};
  ports.source = ports.dout;
  if (hazards.has(Hazard::PortNets)) {
    ports.source.base = "acc_q";
    ports.source.subscripts = {{"", static_cast<int32_t>(width) - 1, 0}};
  }
  const uint64_t lot = scramble(seed, 24);
  if (hazards.has(Hazard::NegativePorts) && lot % 2 == 0) {
    ports.din.subscripts.back() = {"", static_cast<int32_t>(width) - 5, -4};
    ports.din.isBits = false;
  }
  if (hazards.has(Hazard::EscapedPorts) && (lot >> 8) % 2 == 0) ports.valid = "valid.o";
  return ports;
}

std::string portBitName(const BusPort& port, uint32_t place) {
  std::string name = port.base;
  appendSubscripts(name, port.subscripts, place);
  return name;
}

std::string portArrayName(const BusPort& port) {
  std::string name = port.base;
  std::vector<Subscript> outer = port.subscripts;
  const Subscript range = outer.back();
  outer.pop_back();
  appendSubscripts(name, outer, 0);
  return name + '[' + std::to_string(range.left) + ':' + std::to_string(range.right) + ']';
}

}  // namespace generate
