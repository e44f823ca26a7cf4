#pragma once

#include <array>
#include <string_view>

namespace XRF {

/// Words that the hardware description languages keep for themselves, as the kernel compiler knows
/// them when it names RTL ports. Both lists are the compiler's to the letter, slips and words of
/// the other language included: a name is a port's only if it is altered just where the compiler
/// alters it.
extern const std::array<std::string_view, 127> verilog_key_words;
extern const std::array<std::string_view, 149> vhdl_key_words;

}  // namespace XRF
