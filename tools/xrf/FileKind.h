#pragma once

#include <string>

namespace xrf {

/// What a file is for. A synthesis log may hold anything, so that only its place says that it is
/// one.
enum class FileKind { Unknown, Netlist, CrossReference, Metadata, Locations, Log, Compressed };

/// What a file begins like. Unknown for one that begins like none, for what is no regular file, and
/// for what cannot be read.
FileKind kindOf(const std::string& path);

/// "a netlist (EDIF)", and so on.
const char* nameOf(FileKind kind);

}  // namespace xrf
