#pragma once

#include <tools/xrf/FileKind.h>

#include <string>

namespace xrf {

/// Raises a Failure when `path` is no file that can be read, or plainly one of another kind than
/// what is `wanted`. Spares the user a long read of the first input before a misspelt second one is
/// noticed.
void requireReadable(const std::string& path, FileKind wanted);

/// Whether both paths exist and lead to one file.
bool isSameFile(const std::string& a, const std::string& b);

}  // namespace xrf
