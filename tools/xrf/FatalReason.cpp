#include <tools/xrf/FatalReason.h>
#include <tools/xrf/Style.h>

#include <fmt/format.h>
#include <string_view>

namespace xrf {

namespace {

constexpr std::size_t longestErrorText = 600;

void dropPrefix(std::string& text, const std::string& prefix) {
  if (text.compare(0, prefix.size(), prefix) == 0) text.erase(0, prefix.size());
}

// Runs of blanks and line feeds become one blank; what a terminal might act on is masked.
std::string oneLine(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const bool blank = c == ' ' || c == '\n' || c == '\r' || c == '\t';
    if (!blank) {
      result += c;
    } else if (!result.empty() && result.back() != ' ') {
      result += ' ';
    }
  }
  while (!result.empty() && result.back() == ' ') result.pop_back();
  if (result.size() > longestErrorText) {
    result.resize(longestErrorText);
    result += "...";
  }
  return printable(result);
}

}  // namespace

std::string reasonOf(const XRF_RTL2LL::Fatal& fatal) {
  std::string text = fatal.text == nullptr ? "" : fatal.text;
  dropPrefix(text, "ERROR:");
  dropPrefix(text, " ");
  if (fatal.file != nullptr) {
    dropPrefix(text, fmt::format("{}:{}: ", fatal.file, fatal.line));
    dropPrefix(text, fmt::format("{}: ", fatal.file));
  }
  text = oneLine(text);
  return text.empty() ? "the library gave up without a reason" : text;
}

}  // namespace xrf
