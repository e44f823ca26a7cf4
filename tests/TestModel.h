#pragma once

#include <crossreference/XRF_RTL2LL.h>

#include <chrono>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace XRF_RTL2LL {

// What a failing test prints of an object. Without these it would be the object's record, which
// some objects do not have. Both forms, since a conversion to const would lose against the default.
inline void printPlace(const void* object, const std::string& name, std::ostream* out) {
  *out << object << (name.empty() ? "" : " ") << name;
}
inline void PrintTo(const Bit* bit, std::ostream* out) { printPlace(bit, "", out); }
inline void PrintTo(Bit* bit, std::ostream* out) { printPlace(bit, "", out); }
inline void PrintTo(const BitRef* ref, std::ostream* out) { printPlace(ref, "", out); }
inline void PrintTo(BitRef* ref, std::ostream* out) { printPlace(ref, "", out); }
inline void PrintTo(const Net* net, std::ostream* out) { printPlace(net, "", out); }
inline void PrintTo(Net* net, std::ostream* out) { printPlace(net, "", out); }
inline void PrintTo(const Signal* signal, std::ostream* out) {
  printPlace(signal, signal == nullptr ? "" : signal->getFullName(), out);
}
inline void PrintTo(Signal* signal, std::ostream* out) {
  PrintTo(const_cast<const Signal*>(signal), out);
}
inline void PrintTo(const Module* module, std::ostream* out) {
  printPlace(module, module == nullptr ? "" : module->getPath() + "/" + module->getName(), out);
}
inline void PrintTo(Module* module, std::ostream* out) {
  PrintTo(const_cast<const Module*>(module), out);
}

namespace testing_support {

/// Each test has a model of its own, so that none sees what another left behind.
class FreshModel : public ::testing::Test {
 private:
  Model m_model;
  ModelScope m_scope{m_model};
};

/// Keeps what the library says while the object lives, piece by piece and by stream.
class Messages {
 public:
  using Piece = std::pair<int, std::string>;

  Messages() : m_scope(&Messages::record, this) {}
  const std::vector<Piece>& pieces() const { return m_pieces; }
  std::string output() const { return all(1); }
  std::string error() const { return all(2); }

 private:
  static void record(int stream, const char* text, void* context) {
    static_cast<Messages*>(context)->m_pieces.emplace_back(stream, text);
  }
  std::string all(int stream) const {
    std::string text;
    for (const Piece& piece : m_pieces) {
      if (piece.first == stream) text += piece.second;
    }
    return text;
  }

  std::vector<Piece> m_pieces;
  MessageHandlerScope m_scope;
};

/// The objects of a range in its order.
template <class T>
std::vector<T*> listed(const Range<T>& range) {
  std::vector<T*> objects;
  for (T* object : range) objects.push_back(object);
  return objects;
}

/// The names of a range of signals or modules in its order.
template <class T>
std::vector<std::string> namesOf(const Range<T>& range) {
  std::vector<std::string> names;
  for (const T* object : range) names.emplace_back(object->getName());
  return names;
}

/// A bound on the time of work that must not grow with the square of its input. Far above what the
/// work takes, far below what a quadratic one would.
class Deadline {
 public:
  explicit Deadline(int seconds)
      : m_end(std::chrono::steady_clock::now() + std::chrono::seconds(seconds)) {}
  bool passed() const { return std::chrono::steady_clock::now() > m_end; }

 private:
  std::chrono::steady_clock::time_point m_end;
};

using TextMatcher = ::testing::Matcher<const std::string&>;

inline TextMatcher exactly(const std::string& text) { return ::testing::Eq(text); }
inline TextMatcher matches(const char* regex) { return ::testing::MatchesRegex(regex); }

/// For the child process of a death test: what goes to standard output joins standard error, the
/// only stream that death tests see, and the fatal handler adds what it was told.
inline void showEverything() {
  std::fflush(stdout);
  dup2(STDERR_FILENO, STDOUT_FILENO);
  setFatalHandler([](const Fatal& fatal, void*) {
    std::fflush(stdout);
    std::fprintf(stderr, "[%d %d %s]", fatal.status, fatal.printed ? 1 : 0, fatal.text);
  });
}

inline TextMatcher shownAs(const std::string& text) {
  return ::testing::Eq(text + "[1 1 " + text + "]");
}

}  // namespace testing_support
}  // namespace XRF_RTL2LL

// Each death test sits in a function of its own, since its labels are named after the line.
#define XRF_EXPECT_EXIT(statement, plain, shown)                            \
  do {                                                                      \
    [&] { EXPECT_EXIT(statement, ::testing::ExitedWithCode(1), plain); }(); \
    [&] {                                                                   \
      EXPECT_EXIT(                                                          \
          {                                                                 \
            ::XRF_RTL2LL::testing_support::showEverything();                \
            statement;                                                      \
          },                                                                \
          ::testing::ExitedWithCode(1), shown);                             \
    }();                                                                    \
  } while (false)

/// The statement ends the process with status 1 and prints exactly `text` on standard error and
/// nothing on standard output; a fatal handler is told the same.
#define EXPECT_FATAL(statement, text)                                      \
  XRF_EXPECT_EXIT(statement, ::XRF_RTL2LL::testing_support::exactly(text), \
                  ::XRF_RTL2LL::testing_support::shownAs(text))

/// The statement ends the process with status 1 and prints nothing on either stream; a fatal
/// handler is told a reason.
#define EXPECT_SILENT_FATAL(statement)                                   \
  XRF_EXPECT_EXIT(statement, ::XRF_RTL2LL::testing_support::exactly(""), \
                  ::XRF_RTL2LL::testing_support::matches("\\[1 0 .+\\]"))

/// The statement ends the process with status 1 and one message of the library's own wording, told
/// to the fatal handler too.
#define EXPECT_EXPLAINED_FATAL(statement)                                   \
  XRF_EXPECT_EXIT(                                                          \
      statement, ::XRF_RTL2LL::testing_support::matches("ERROR: [^\n]+\n"), \
      ::XRF_RTL2LL::testing_support::matches("ERROR: [^\n]+\n\\[1 1 (ERROR: )?[^\n]+\n?\\]"))
