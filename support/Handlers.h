#pragma once

#include <support/Api.h>

#include <cstdint>

/// How the library speaks to its host: it prints, ends the process and reports progress only
/// through these three handlers. Unset, they give the plain behaviour: text goes to the standard
/// streams and a fatal error ends the process.
///
///     void onFatal(const Fatal& fatal, void*) { throw std::runtime_error(fatal.text); }
///     FatalHandlerScope scope(onFatal);      // a bad file no longer ends this process
///
/// Handlers are process-wide; setting them while another thread reads is safe, and that reader
/// sees either the old or the new pair. Scopes nest; those of two threads must not overlap in time.
///
/// A read that a throwing handler gives up leaves part of a design in its model: free it with
/// `resetModel`, or keep each design in a Model of its own.
namespace XRF_RTL2LL {

/// Why the library cannot go on. All pointers live only during the call of the handler.
struct Fatal {
  int status;            ///< exit status the process would end with
  bool printed;          ///< `text` has gone out through the message handler already
  const char* text;      ///< the message as printed, or, for a silent exit, a sentence saying why
  const char* file;      ///< file that was being read, or null
  std::uint64_t line;    ///< line in that file, counted from 1; 0 when unknown
  std::uint64_t column;  ///< column in bytes, counted from 1; 0 when unknown
};

/// Called on a fatal error. May throw, which unwinds the reader; when it returns the process exits
/// with `Fatal::status`.
using FatalHandler = void (*)(const Fatal& fatal, void* context);

/// Called for each piece of text. `stream` is 1 for standard output, 2 for standard error; `text`
/// carries its own line feeds.
using MessageHandler = void (*)(int stream, const char* text, void* context);

/// Called now and then during long work. `done` and `total` count bytes; where the end is not known
/// beforehand `total` is 0 and `done` counts steps. Returning false cancels, which is a fatal
/// error.
using ProgressHandler = bool (*)(const char* phase, std::uint64_t done, std::uint64_t total,
                                 void* context);

/// Each setter takes the handler and the pointer handed to it; a null handler restores the default.
XRF_API void setFatalHandler(FatalHandler handler, void* context = nullptr);
XRF_API void setMessageHandler(MessageHandler handler, void* context = nullptr);
XRF_API void setProgressHandler(ProgressHandler handler, void* context = nullptr);

/// Sets the fatal handler for a scope and restores the earlier one at its end.
class XRF_API FatalHandlerScope {
 public:
  explicit FatalHandlerScope(FatalHandler handler, void* context = nullptr);
  ~FatalHandlerScope();
  FatalHandlerScope(const FatalHandlerScope&) = delete;
  FatalHandlerScope& operator=(const FatalHandlerScope&) = delete;

 private:
  FatalHandler m_handler;
  void* m_context;
};

/// Sets the message handler for a scope and restores the earlier one at its end.
class XRF_API MessageHandlerScope {
 public:
  explicit MessageHandlerScope(MessageHandler handler, void* context = nullptr);
  ~MessageHandlerScope();
  MessageHandlerScope(const MessageHandlerScope&) = delete;
  MessageHandlerScope& operator=(const MessageHandlerScope&) = delete;

 private:
  MessageHandler m_handler;
  void* m_context;
};

/// Sets the progress handler for a scope and restores the earlier one at its end.
class XRF_API ProgressHandlerScope {
 public:
  explicit ProgressHandlerScope(ProgressHandler handler, void* context = nullptr);
  ~ProgressHandlerScope();
  ProgressHandlerScope(const ProgressHandlerScope&) = delete;
  ProgressHandlerScope& operator=(const ProgressHandlerScope&) = delete;

 private:
  ProgressHandler m_handler;
  void* m_context;
};

}  // namespace XRF_RTL2LL
