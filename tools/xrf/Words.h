#pragma once

#include <crossreference/Bit.h>
#include <crossreference/Signal.h>

#include <string>

/// The words by which the command, its JSON and its comma-separated values know the model's
/// enumerations.
namespace xrf {

const char* kindName(XRF_RTL2LL::Bit::BitKind kind);
const char* directionName(XRF_RTL2LL::signalKind direction);

/// A bit's value: "1" or "0" of a constant, else as the model shows it.
std::string valueText(const XRF_RTL2LL::Bit& bit);

}  // namespace xrf
