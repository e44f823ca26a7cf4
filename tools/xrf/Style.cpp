#include <tools/xrf/Style.h>

#include <algorithm>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace xrf {

namespace {

std::string_view escapeSequence(Color color) {
  switch (color) {
    case Color::Bold:
      return "\033[1m";
    case Color::Dim:
      return "\033[2m";
    case Color::Red:
      return "\033[1;31m";
    case Color::Green:
      return "\033[32m";
    case Color::Yellow:
      return "\033[33m";
    case Color::Cyan:
      return "\033[36m";
    case Color::Plain:
      break;
  }
  return {};
}

bool environmentForbidsColor() {
  const char* noColor = std::getenv("NO_COLOR");
  if (noColor != nullptr && *noColor != '\0') return true;
  const char* terminal = std::getenv("TERM");
  return terminal != nullptr && std::string_view(terminal) == "dumb";
}

}  // namespace

bool wantsColor(ColorMode mode, std::FILE* stream) {
  if (mode == ColorMode::Always) return true;
  if (mode == ColorMode::Never) return false;
  return isatty(fileno(stream)) == 1 && !environmentForbidsColor();
}

std::size_t outputWidth() {
  winsize size{};
  const bool known = isatty(STDOUT_FILENO) == 1 && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0;
  return known ? size.ws_col : 0;
}

std::string painted(std::string_view text, Color color, bool enabled) {
  if (!enabled || color == Color::Plain || text.empty()) return std::string(text);
  std::string result(escapeSequence(color));
  result += text;
  result += "\033[0m";
  return result;
}

std::string printable(std::string_view text) {
  std::string result = printableLines(text);
  const auto isLeft = [](char c) { return c == '\n' || c == '\r' || c == '\t'; };
  std::replace_if(result.begin(), result.end(), isLeft, '?');
  return result;
}

std::string printableLines(std::string_view text) {
  std::string result(text);
  for (std::size_t at = 0; at < result.size(); ++at) {
    const auto byte = static_cast<unsigned char>(result[at]);
    const bool endsLine = byte == '\r' && at + 1 < result.size() && result[at + 1] == '\n';
    if (byte == '\n' || byte == '\t' || endsLine) continue;
    if (byte < 0x20 || byte == 0x7f) result[at] = '?';
    // The control characters that UTF-8 writes as two bytes, which some terminals obey, too.
    if (at == 0 || byte < 0x80 || byte >= 0xa0 || result[at - 1] != '\xc2') continue;
    result[at - 1] = result[at] = '?';
  }
  return result;
}

}  // namespace xrf
