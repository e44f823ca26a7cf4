#pragma once

#include <string_view>

namespace xrf {

/// How many characters must be put in, left out or replaced, or neighbours exchanged, to make `b`
/// of `a`; anything above `most` for more than that.
unsigned editDistance(std::string_view a, std::string_view b, unsigned most);

}  // namespace xrf
