#pragma once

#include <optional>
#include <string>

namespace XRF_RTL2LL {

/// The descriptor of this process that a path names, as /dev/stdout, /dev/fd/3 and links to such
/// do. To open the path anew would start a file from its beginning, past what its descriptor's
/// other users wrote.
std::optional<int> openDescriptor(const std::string& path);

/// Another number for the descriptor that a path names, to write through and to close; -1 with
/// errno where it is not open for writing.
int duplicateForWriting(int descriptor);

/// Whether a path names a descriptor of any process instead of a file.
bool namesDescriptor(const std::string& path);

/// Follows the link at `path` by one step; false when there is none.
bool followLink(std::string& path);

/// The folder's name with its slash, or nothing for the current folder.
std::string folderOf(const std::string& path);

/// As many links as the system itself follows.
inline constexpr int mostLinks = 40;

}  // namespace XRF_RTL2LL
