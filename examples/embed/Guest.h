#pragma once

#include <support/Handlers.h>

#include <atomic>
#include <cstdint>
#include <stdexcept>
#include <string>

/// A file that the library cannot use, with the place where it gave up.
struct BadFile : std::runtime_error {
  BadFile(const std::string& reason, const std::string& inFile, std::uint64_t atLine);

  std::string file;    ///< empty when no file was being read
  std::uint64_t line;  ///< counted from 1; 0 when unknown
};

/// Makes libxrf a guest of this program for as long as it lives: what would have ended the process
/// is thrown as a BadFile, what would have been printed becomes a line of ours, and long reads show
/// how far they are and can be cancelled.
class Guest {
 public:
  Guest();

  /// Ends the read under way, which then throws BadFile. Safe in a signal handler.
  static void cancel() { s_cancelled = true; }
  static void start() { s_cancelled = false; }

 private:
  static void onFatal(const XRF_RTL2LL::Fatal& fatal, void* guest);
  static void onMessage(int stream, const char* text, void* guest);
  static bool onProgress(const char* phase, std::uint64_t done, std::uint64_t total, void* guest);

  static std::atomic<bool> s_cancelled;
  XRF_RTL2LL::FatalHandlerScope m_fatal;
  XRF_RTL2LL::MessageHandlerScope m_message;
  XRF_RTL2LL::ProgressHandlerScope m_progress;
};
