#pragma once

#include <crossreference/XRF_RTL2LL.h>

#include <string>

/// The words by which Python knows the model's enumerations: those of the command.
namespace xrf::python {

/// "rtl" and "synth"; another word is a std::invalid_argument.
XRF_RTL2LL::EdifView viewOf(const std::string& word);
const char* wordOf(XRF_RTL2LL::EdifView view);

/// "extended" and "strict"; another word is a std::invalid_argument.
XRF_RTL2LL::Matching matchingOf(const std::string& word);

const char* wordOf(XRF_RTL2LL::opKind kind);
const char* wordOf(XRF_RTL2LL::signalKind direction);
/// "NONE" stands for an index without a bit.
const char* kindOf(const XRF_RTL2LL::Bit* bit);
/// The value's text; "" for an index without a bit.
std::string valueOf(const XRF_RTL2LL::Bit* bit);

}  // namespace xrf::python
