#include <tools/xrf/Words.h>

namespace xrf {

using XRF_RTL2LL::Bit;

const char* kindName(Bit::BitKind kind) {
  switch (kind) {
    case Bit::STATE:
      return "STATE";
    case Bit::CNST:
      return "CNST";
    case Bit::UNREAD:
      return "UNREAD";
    case Bit::UNKNOWN:
      break;
  }
  return "UNKNOWN";
}

const char* directionName(XRF_RTL2LL::signalKind direction) {
  switch (direction) {
    case XRF_RTL2LL::IN:
      return "IN";
    case XRF_RTL2LL::OUT:
      return "OUT";
    case XRF_RTL2LL::WIRE:
      break;
  }
  return "WIRE";
}

std::string valueText(const Bit& bit) {
  if (bit.getKind() != Bit::CNST) return bit.getValueStr(false);
  return bit.getValue() ? "1" : "0";
}

}  // namespace xrf
