#include <tools/xrf/Json.h>

namespace xrf {

std::string jsonText(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json errorDocument(const Failure& failure) {
  Json document{{"error", failure.what()}};
  if (!failure.file.empty()) document["file"] = failure.file;
  if (failure.line != 0) document["line"] = failure.line;
  if (failure.column != 0) document["column"] = failure.column;
  return document;
}

}  // namespace xrf
