#include <tools/xrf/Console.h>
#include <tools/xrf/FatalReason.h>
#include <tools/xrf/Style.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fmt/format.h>
#include <unistd.h>

namespace xrf {

namespace {

constexpr int errorStream = 2;
constexpr auto progressInterval = std::chrono::milliseconds(100);
constexpr std::size_t progressWidth = 79;

bool isSmartTerminal() {
  const char* terminal = std::getenv("TERM");
  return isatty(STDERR_FILENO) == 1 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

// Behind what was printed before, also where both streams go to one place.
void put(std::string_view text) {
  if (text.empty()) return;
  std::fflush(stdout);
  std::fwrite(text.data(), 1, text.size(), stderr);
}

std::string place(const Failure& failure) {
  if (failure.file.empty()) return {};
  std::string text = printable(failure.file);
  if (failure.line != 0) text += fmt::format(":{}", failure.line);
  if (failure.line != 0 && failure.column != 0) text += fmt::format(":{}", failure.column);
  return text + ": ";
}

}  // namespace

Console::Console()
    : m_showProgress(isSmartTerminal()),
      m_fatalScope(onFatal, this),
      m_messageScope(onMessage, this),
      m_progressScope(onProgress, this) {}

Console::~Console() { finish(); }

void Console::setQuiet(bool quiet) {
  m_quiet = quiet;
  m_showProgress = !quiet && isSmartTerminal();
}

void Console::warn(std::string_view text) {
  finish();
  put(fmt::format("xrf: {} {}\n", painted("warning:", Color::Yellow, m_color), text));
}

void Console::error(const Failure& failure) {
  finish();
  put(fmt::format("xrf: {} {}{}\n", painted("error:", Color::Red, m_color), place(failure),
                  failure.what()));
}

void Console::finish() {
  eraseProgress();
  showHeldMessage();
}

void Console::onFatal(const XRF_RTL2LL::Fatal& fatal, void* console) {
  auto& self = *static_cast<Console*>(console);
  if (fatal.printed && fatal.text != nullptr && self.m_heldMessage == fatal.text) {
    self.m_heldMessage.clear();
  }
  const std::string file = fatal.file == nullptr ? "" : fatal.file;
  throw Failure(reasonOf(fatal), file, fatal.line, fatal.column);
}

void Console::onMessage(int stream, const char* text, void* console) {
  auto& self = *static_cast<Console*>(console);
  self.finish();
  if (stream == errorStream) {
    self.m_heldMessage = text;
  } else if (!self.m_quiet) {
    put(printableLines(text));
  }
}

bool Console::onProgress(const char* phase, std::uint64_t done, std::uint64_t total,
                         void* console) {
  auto& self = *static_cast<Console*>(console);
  if (self.m_showProgress) self.drawProgress(phase, done, total);
  return true;
}

void Console::drawProgress(std::string_view phase, std::uint64_t done, std::uint64_t total) {
  const auto now = std::chrono::steady_clock::now();
  if (m_progressDrawn && now - m_lastDrawn < progressInterval) return;
  std::string line = printable(phase);
  if (total != 0) {
    const double share = static_cast<double>(std::min(done, total)) / static_cast<double>(total);
    line += fmt::format(" {:.0f} %", 100.0 * share);
  }
  if (line.size() > progressWidth) line.resize(progressWidth);
  put("\r" + line + "\033[K");
  std::fflush(stderr);
  m_progressDrawn = true;
  m_lastDrawn = now;
}

void Console::eraseProgress() {
  if (!m_progressDrawn) return;
  put("\r\033[K");
  m_progressDrawn = false;
}

void Console::showHeldMessage() {
  put(printableLines(m_heldMessage));
  m_heldMessage.clear();
}

}  // namespace xrf
