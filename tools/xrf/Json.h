#pragma once

#include <tools/xrf/Failure.h>

#include <nlohmann/json.hpp>
#include <string>

namespace xrf {

/// Keys come out in the order in which they were put in.
using Json = nlohmann::ordered_json;

/// The text of a document or a part of one, on one line. Names that are not UTF-8 have the
/// offending bytes replaced.
std::string jsonText(const Json& json);

/// The document that stands in for a result: {"error":…} with file, line and column where known.
Json errorDocument(const Failure& failure);

}  // namespace xrf
