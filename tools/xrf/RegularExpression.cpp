#include <tools/xrf/Failure.h>
#include <tools/xrf/RegularExpression.h>
#include <tools/xrf/Style.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fmt/format.h>

namespace xrf {

namespace {

// A backslash before a letter or digit means something in other dialects, and here the character.
std::string foreignEscape(const std::string& text) {
  for (std::size_t at = text.find('\\'); at != std::string::npos && at + 1 < text.size();
       at = text.find('\\', at + 2)) {
    if (std::isalnum(static_cast<unsigned char>(text[at + 1])) != 0) return text.substr(at, 2);
  }
  return {};
}

// The C library compiles by recursion, and writes out every repetition: what is beyond these takes
// its stack or gigabytes.
bool isTooLarge(const std::string& text) {
  constexpr std::size_t longest = 2000;
  constexpr int deepest = 50;
  constexpr double mostCopies = 1000;
  int depth = 0;
  double copies = 1;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '(' && ++depth > deepest) return true;
    if (text[at] == ')') --depth;
    if (text[at] != '{') continue;
    // The larger of both bounds; a list of digits that is no bound does no harm.
    double most = 1;
    for (const char* next = text.c_str() + at; *next == '{' || *next == ',';) {
      char* end = nullptr;
      most = std::max(most, static_cast<double>(std::strtoul(next + 1, &end, 10)));
      next = end;
    }
    copies *= most;
  }
  return text.size() > longest || copies > mostCopies;
}

}  // namespace

RegularExpression::RegularExpression(const std::string& text) : m_expression() {
  if (isTooLarge(text)) {
    throw UsageFailure(
        "the regular expression is too large: at most 2000 characters, 50 parentheses inside each "
        "other, and repetitions that come to 1000");
  }
  const std::string foreign = foreignEscape(text);
  if (!foreign.empty()) {
    throw UsageFailure(
        fmt::format("'{}' is no extended regular expression: {} has no meaning there (a digit is "
                    "[0-9], a character of a word [[:alnum:]_])",
                    printable(text), foreign));
  }
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
