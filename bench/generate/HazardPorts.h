#ifndef BENCH_GENERATE_HAZARDPORTS_H
#define BENCH_GENERATE_HAZARDPORTS_H

#include "Design.h"

#include <cstdint>
#include <string>

namespace generate {

/// The ports of a module whose buses are `width` wide.
Ports hazardPorts(Hazards hazards, uint64_t seed, uint32_t width);

/// The name of a bus port's bit, counted from the right end: dout[3].
std::string portBitName(const BusPort& port, uint32_t place);

/// A bus port as an array names itself: dout[7:0].
std::string portArrayName(const BusPort& port);

}  // namespace generate

#endif
