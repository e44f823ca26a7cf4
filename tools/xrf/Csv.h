#pragma once

#include <string>
#include <vector>

namespace xrf {

/// A row of comma-separated values with its line feed. Fields that hold a comma, a quote or a line
/// break are quoted.
std::string csvLine(const std::vector<std::string>& fields);

}  // namespace xrf
