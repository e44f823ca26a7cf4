#include <python/Words.h>
#include <tools/xrf/Words.h>

#include <stdexcept>

namespace xrf::python {

using XRF_RTL2LL::Bit;
using XRF_RTL2LL::EdifView;
using XRF_RTL2LL::Matching;

EdifView viewOf(const std::string& word) {
  if (word == "rtl") return XRF_RTL2LL::RTL;
  if (word == "synth") return XRF_RTL2LL::SYNTH;
  throw std::invalid_argument("view must be 'rtl' or 'synth', not '" + word + "'");
}

const char* wordOf(EdifView view) { return view == XRF_RTL2LL::RTL ? "rtl" : "synth"; }

Matching matchingOf(const std::string& word) {
  if (word == "extended") return Matching::Extended;
  if (word == "strict") return Matching::Strict;
  throw std::invalid_argument("matching must be 'extended' or 'strict', not '" + word + "'");
}

const char* wordOf(XRF_RTL2LL::opKind kind) {
  switch (kind) {
    case XRF_RTL2LL::BUF:
      return "BUF";
    case XRF_RTL2LL::EQUAL:
      return "EQUAL";
    case XRF_RTL2LL::GND:
      return "GND";
    case XRF_RTL2LL::INV:
      return "INV";
    case XRF_RTL2LL::NOT_EQUAL:
      return "NOT_EQUAL";
    case XRF_RTL2LL::LOGIC:
      return "LOGIC";
    case XRF_RTL2LL::PWR:
      return "PWR";
    case XRF_RTL2LL::REG:
      return "REG";
    case XRF_RTL2LL::WIDE_FD:
      return "WIDE_FD";
    case XRF_RTL2LL::XOR:
      return "XOR";
    case XRF_RTL2LL::HIER:
      break;
  }
  return "HIER";
}

const char* wordOf(XRF_RTL2LL::signalKind direction) { return directionName(direction); }

const char* kindOf(const Bit* bit) { return bit == nullptr ? "NONE" : kindName(bit->getKind()); }

std::string valueOf(const Bit* bit) { return bit == nullptr ? std::string() : valueText(*bit); }

}  // namespace xrf::python
