#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace xrf {

enum class ColorMode { Auto, Always, Never };
enum class Color { Plain, Bold, Dim, Red, Green, Yellow, Cyan };

/// Whether text on `stream` is to be coloured. `Auto` colours a terminal, unless the environment
/// asks for none.
bool wantsColor(ColorMode mode, std::FILE* stream);

/// Columns of the terminal that standard output goes to; 0 where it goes to a file or a pipe.
std::size_t outputWidth();

/// `text` in a colour, or as it is when `enabled` is false.
std::string painted(std::string_view text, Color color, bool enabled);

/// `text` with every control byte shown as "?", so that a name read from a file cannot drive the
/// terminal it is printed on.
std::string printable(std::string_view text);
/// The same of a text of several lines, whose line ends and tabs stay.
std::string printableLines(std::string_view text);

}  // namespace xrf
