#pragma once

#include <string>
#include <vector>

namespace xrf {

/// The names that a command line gives, with "-" replaced by the lines of standard input. Empty
/// lines are none. They cannot come from there if `file` does, too: a UsageFailure.
std::vector<std::string> withStandardInput(const std::vector<std::string>& names,
                                           const std::string& file);

}  // namespace xrf
