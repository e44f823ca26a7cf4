#include <python/Guest.h>
#include <support/Handlers.h>
#include <tools/xrf/Failure.h>
#include <tools/xrf/FatalReason.h>

#include <cstdio>
#include <string_view>
#include <utility>

namespace xrf::python {

struct Handlers {
  static void onFatal(const XRF_RTL2LL::Fatal& fatal, void*);
  static void onMessage(int stream, const char* text, void*);
  static bool onProgress(const char* phase, std::uint64_t done, std::uint64_t total, void*);
};

namespace {

constexpr int standardError = 2;

std::string trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \r\n");
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(" \r\n") + 1 - first));
}

}  // namespace

// An exception of the caller's own, which only cancels while it must pass through the library, goes
// on from here.
void Handlers::onFatal(const XRF_RTL2LL::Fatal& fatal, void*) {
  const Read* read = Read::current();
  if (read != nullptr && read->m_thrown) std::rethrow_exception(read->m_thrown);
  throw Failure(reasonOf(fatal), fatal.file == nullptr ? "" : fatal.file, fatal.line, fatal.column);
}

// Standard output carries the library's chatter, which a caller of functions has no use for.
void Handlers::onMessage(int stream, const char* text, void*) {
  if (stream != standardError) return;
  Read* read = Read::current();
  if (read == nullptr) {
    std::fputs(text, stderr);
    return;
  }
  std::string line = trimmed(text);
  if (!line.empty()) read->m_warnings.push_back(std::move(line));
}

bool Handlers::onProgress(const char* phase, std::uint64_t done, std::uint64_t total, void*) {
  Read* read = Read::current();
  if (read == nullptr || !read->m_progress) return true;
  try {
    read->m_progress(phase, done, total);
  } catch (...) {
    read->m_thrown = std::current_exception();
    return false;
  }
  return true;
}

void installHandlers() {
  XRF_RTL2LL::setFatalHandler(Handlers::onFatal);
  XRF_RTL2LL::setMessageHandler(Handlers::onMessage);
  XRF_RTL2LL::setProgressHandler(Handlers::onProgress);
}

Read::Read(Progress progress) : m_progress(std::move(progress)), m_outer(current()) {
  current() = this;
}

Read::~Read() { current() = m_outer; }

Read*& Read::current() {
  thread_local Read* read = nullptr;
  return read;
}

}  // namespace xrf::python
