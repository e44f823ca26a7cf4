#include <tools/xrf/Csv.h>

namespace xrf {

namespace {

std::string quoted(const std::string& field) {
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string result = "\"";
  for (const char c : field) {
    if (c == '"') result += '"';
    result += c;
  }
  return result + '"';
}

}  // namespace

std::string csvLine(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (&field != &fields.front()) line += ',';
    line += quoted(field);
  }
  return line + '\n';
}

}  // namespace xrf
