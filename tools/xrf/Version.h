#pragma once

#include <string>

namespace xrf {

/// What `xrf --version` prints: the version, and on lines of their own how the command was built.
std::string versionText();

}  // namespace xrf
