#pragma once

#include <support/Handlers.h>
#include <tools/xrf/Failure.h>

#include <chrono>
#include <string>
#include <string_view>

namespace xrf {

/// Standard error as the user sees it: the library's own lines, warnings, the progress line and
/// the error that ended the command. While a console lives, a fatal error of the library is thrown
/// as a Failure.
///
/// The library announces a fatal error as a message first. So the latest message on its error
/// stream is held back until the next one, and dropped when the error that follows says the same:
/// the user reads each error once.
class Console {
 public:
  Console();
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  /// Leaves out the library's chatter and the progress line.
  void setQuiet(bool quiet);
  void setColor(bool color) { m_color = color; }
  /// The file that is to blame for an exception that names none.
  void setCurrentInput(const std::string& path) { m_currentInput = path; }
  const std::string& currentInput() const { return m_currentInput; }

  void warn(std::string_view text);
  void error(const Failure& failure);
  /// Shows what is held back and erases the progress line.
  void finish();

 private:
  static void onFatal(const XRF_RTL2LL::Fatal& fatal, void* console);
  static void onMessage(int stream, const char* text, void* console);
  static bool onProgress(const char* phase, std::uint64_t done, std::uint64_t total, void* console);

  void drawProgress(std::string_view phase, std::uint64_t done, std::uint64_t total);
  void eraseProgress();
  void showHeldMessage();

  bool m_quiet = false;
  bool m_color = false;
  bool m_showProgress;
  bool m_progressDrawn = false;
  std::chrono::steady_clock::time_point m_lastDrawn;
  std::string m_heldMessage;
  std::string m_currentInput;
  XRF_RTL2LL::FatalHandlerScope m_fatalScope;
  XRF_RTL2LL::MessageHandlerScope m_messageScope;
  XRF_RTL2LL::ProgressHandlerScope m_progressScope;
};

}  // namespace xrf
