#pragma once

#include <support/Handlers.h>

#include <cstdint>
#include <string>

/// The one way out: text, fatal errors and progress of the library all pass through here.
namespace XRF_RTL2LL {

enum Stream : int { StandardOutput = 1, StandardError = 2 };

/// Sends one piece of text, printf-style, through the message handler.
[[gnu::format(printf, 2, 3)]] void message(Stream stream, const char* format, ...);

/// Ends with a message that callers know word for word.
[[noreturn, gnu::format(printf, 1, 2)]] void fatal(const char* format, ...);

/// Ends without printing anything; the reason reaches only the fatal handler.
[[noreturn, gnu::format(printf, 1, 2)]] void fatalSilently(const char* format, ...);

/// Ends with "ERROR: ", the place being read, if any, and a reason of our own. The handler receives
/// the reason as it was printed.
[[noreturn, gnu::format(printf, 1, 2)]] void fatalHere(const char* format, ...);

/// Reports progress; a host that cancels ends the read.
void progress(const char* phase, std::uint64_t done, std::uint64_t total);

/// Names the file that a scope reads and says how far it got, so that a fatal error raised anywhere
/// below can tell where.
class ReadPlace {
 public:
  struct Position {
    std::uint64_t line = 0;
    std::uint64_t column = 0;
  };
  using Locate = Position (*)(const void* reader);

  ReadPlace(const std::string& file, const void* reader, Locate locate);
  ~ReadPlace();
  ReadPlace(const ReadPlace&) = delete;
  ReadPlace& operator=(const ReadPlace&) = delete;

  const std::string& file() const { return m_file; }
  Position position() const { return m_locate(m_reader); }
  /// The innermost place of the calling thread, or null.
  static const ReadPlace* current();

 private:
  std::string m_file;
  const void* m_reader;
  Locate m_locate;
  const ReadPlace* m_outer;
};

}  // namespace XRF_RTL2LL
