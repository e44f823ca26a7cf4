#pragma once

#include <string>

namespace xrf {

/// Raises a Failure when `path` is no file that can be read. Spares the user a long read of the
/// first input before a misspelt second one is noticed.
void requireReadable(const std::string& path);

/// Whether both paths exist and lead to one file.
bool isSameFile(const std::string& a, const std::string& b);

}  // namespace xrf
