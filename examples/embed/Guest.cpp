#include "Guest.h"

#include <cstdio>
#include <string_view>

std::atomic<bool> Guest::s_cancelled = false;

BadFile::BadFile(const std::string& reason, const std::string& inFile, std::uint64_t atLine)
    : std::runtime_error(reason), file(inFile), line(atLine) {}

Guest::Guest() : m_fatal(onFatal, this), m_message(onMessage, this), m_progress(onProgress, this) {}

namespace {

// A message may go over several lines; a status bar has one.
std::string onOneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const bool blank = c == ' ' || c == '\n';
    if (!blank || (!line.empty() && line.back() != ' ')) line += blank ? ' ' : c;
  }
  if (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

}  // namespace

// All pointers of `fatal` end with this call, so what is thrown holds copies.
void Guest::onFatal(const XRF_RTL2LL::Fatal& fatal, void*) {
  throw BadFile(onOneLine(fatal.text), fatal.file == nullptr ? "" : fatal.file, fatal.line);
}

// A debugger with windows would put this into its log.
void Guest::onMessage(int, const char* text, void*) {
  const std::string line = onOneLine(text);
  if (!line.empty()) std::fprintf(stderr, "xrf| %s\n", line.c_str());
}

bool Guest::onProgress(const char* phase, std::uint64_t done, std::uint64_t total, void*) {
  if (total != 0) {
    std::fprintf(stderr, "... %s: %.0f %%\n", phase,
                 100.0 * static_cast<double>(done) / static_cast<double>(total));
  }
  return !s_cancelled;
}
