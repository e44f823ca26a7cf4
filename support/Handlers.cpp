#include <support/Handlers.h>
#include <support/Report.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace XRF_RTL2LL {

namespace {

template <class Function>
struct Handler {
  Function function = nullptr;
  void* context = nullptr;
};

// A handler and its context change together, so both are read under one lock.
template <class Function>
class HandlerSlot {
 public:
  Handler<Function> get() {
    std::lock_guard lock(m_mutex);
    return m_handler;
  }
  Handler<Function> exchange(Function function, void* context) {
    std::lock_guard lock(m_mutex);
    const Handler<Function> before = m_handler;
    m_handler = {function, context};
    return before;
  }

 private:
  std::mutex m_mutex;
  Handler<Function> m_handler;
};

struct Handlers {
  HandlerSlot<FatalHandler> fatal;
  HandlerSlot<MessageHandler> message;
  HandlerSlot<ProgressHandler> progress;
};

Handlers& handlers() {
  static Handlers instance;
  return instance;
}

const ReadPlace*& currentPlace() {
  thread_local const ReadPlace* place = nullptr;
  return place;
}

std::string compose(const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

void send(Stream stream, const std::string& text) {
  const Handler<MessageHandler> handler = handlers().message.get();
  if (handler.function != nullptr) {
    handler.function(stream, text.c_str(), handler.context);
    return;
  }
  std::FILE* file = stream == StandardOutput ? stdout : stderr;
  std::fwrite(text.data(), 1, text.size(), file);
}

[[noreturn]] void end(const std::string& text, bool printed, const char* file,
                      ReadPlace::Position at) {
  constexpr int status = 1;
  const Handler<FatalHandler> handler = handlers().fatal.get();
  if (handler.function != nullptr) {
    handler.function(Fatal{status, printed, text.c_str(), file, at.line, at.column},
                     handler.context);
  }
  std::exit(status);
}

[[noreturn]] void end(const std::string& text, bool printed) {
  const ReadPlace* place = ReadPlace::current();
  if (place == nullptr) end(text, printed, nullptr, {});
  end(text, printed, place->file().c_str(), place->position());
}

std::string placed(const ReadPlace& place, const std::string& reason) {
  const ReadPlace::Position at = place.position();
  std::string text = "ERROR: " + place.file();
  if (at.line != 0) text += ":" + std::to_string(at.line);
  return text + ": " + reason + "\n";
}

}  // namespace

void setFatalHandler(FatalHandler handler, void* context) {
  handlers().fatal.exchange(handler, context);
}

void setMessageHandler(MessageHandler handler, void* context) {
  handlers().message.exchange(handler, context);
}

void setProgressHandler(ProgressHandler handler, void* context) {
  handlers().progress.exchange(handler, context);
}

FatalHandlerScope::FatalHandlerScope(FatalHandler handler, void* context) {
  const auto before = handlers().fatal.exchange(handler, context);
  m_handler = before.function;
  m_context = before.context;
}

FatalHandlerScope::~FatalHandlerScope() { setFatalHandler(m_handler, m_context); }

MessageHandlerScope::MessageHandlerScope(MessageHandler handler, void* context) {
  const auto before = handlers().message.exchange(handler, context);
  m_handler = before.function;
  m_context = before.context;
}

MessageHandlerScope::~MessageHandlerScope() { setMessageHandler(m_handler, m_context); }

ProgressHandlerScope::ProgressHandlerScope(ProgressHandler handler, void* context) {
  const auto before = handlers().progress.exchange(handler, context);
  m_handler = before.function;
  m_context = before.context;
}

ProgressHandlerScope::~ProgressHandlerScope() { setProgressHandler(m_handler, m_context); }

void message(Stream stream, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string text = compose(format, arguments);
  va_end(arguments);
  send(stream, text);
}

void fatal(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string text = compose(format, arguments);
  va_end(arguments);
  send(StandardError, text);
  end(text, true);
}

void fatalSilently(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string text = compose(format, arguments);
  va_end(arguments);
  end(text, false);
}

void fatalHere(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string reason = compose(format, arguments);
  va_end(arguments);
  const ReadPlace* place = ReadPlace::current();
  const std::string text = place == nullptr ? "ERROR: " + reason + "\n" : placed(*place, reason);
  send(StandardError, text);
  end(text, true);
}

void progress(const char* phase, std::uint64_t done, std::uint64_t total) {
  const Handler<ProgressHandler> handler = handlers().progress.get();
  if (handler.function == nullptr) return;
  if (!handler.function(phase, done, total, handler.context)) {
    fatalSilently("Reading was cancelled.");
  }
}

ReadPlace::ReadPlace(const std::string& file, const void* reader, Locate locate)
    : m_file(file), m_reader(reader), m_locate(locate), m_outer(currentPlace()) {
  currentPlace() = this;
}

ReadPlace::~ReadPlace() { currentPlace() = m_outer; }

const ReadPlace* ReadPlace::current() { return currentPlace(); }

}  // namespace XRF_RTL2LL
