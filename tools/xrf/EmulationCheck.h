#pragma once

#include <tools/xrf/MetadataDocument.h>

#include <string>

namespace xrf {

/// Throws a Failure when a document read from `file` has an error, or is one from which the
/// emulation map would not come back: the map itself says nothing.
void requireMappable(const MetadataDocument& document, const std::string& file);

}  // namespace xrf
