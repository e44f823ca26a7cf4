#include <tools/xrf/Failure.h>
#include <tools/xrf/RegularExpression.h>
#include <tools/xrf/Style.h>

#include <fmt/format.h>

namespace xrf {

RegularExpression::RegularExpression(const std::string& text) : m_expression() {
  const int error = regcomp(&m_expression, text.c_str(), REG_EXTENDED | REG_NOSUB);
  if (error == 0) return;
  std::string reason(256, '\0');
  reason.resize(regerror(error, &m_expression, reason.data(), reason.size()) - 1);
  throw UsageFailure(fmt::format("'{}' is no regular expression: {}", printable(text), reason));
}

RegularExpression::~RegularExpression() { regfree(&m_expression); }

bool RegularExpression::matches(const std::string& text) const {
  return regexec(&m_expression, text.c_str(), 0, nullptr, 0) == 0;
}

}  // namespace xrf
