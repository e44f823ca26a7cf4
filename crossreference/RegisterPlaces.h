#pragma once

#include <crossreference/NetlistState.h>

#include <vector>

namespace XRF_RTL2LL {

/// Whether a signal is one of a netlist's view. A bit of a loaded file may have references of both.
bool isOfView(const NetlistState& state, EdifView view, const Signal& signal);

/// The signal indices of a view that are registers living in a bit, as extended reading tied them,
/// in name order. A register whose name tells no signal has none.
std::vector<BitRef*> registerPlaces(const NetlistState& state, EdifView view, const Bit& bit);

/// Name order of signal indices.
bool isEarlierPlace(const BitRef* a, const BitRef* b);

}  // namespace XRF_RTL2LL
