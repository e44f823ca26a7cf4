#pragma once

#include "tests/TempFile.h"
#include <crossreference/XRF_RTL2LL.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace test {

/// A fatal error as the handler received it.
struct FatalError : std::runtime_error {
  explicit FatalError(const XRF_RTL2LL::Fatal& fatal)
      : std::runtime_error(fatal.text == nullptr ? "" : fatal.text),
        status(fatal.status),
        printed(fatal.printed),
        text(what()),
        file(fatal.file == nullptr ? "" : fatal.file),
        line(fatal.line) {}

  int status;
  bool printed;
  std::string text;
  std::string file;
  std::uint64_t line;
};

/// Collects all that the library prints and throws its fatal errors, for a scope.
class Recorder {
 public:
  std::string out;
  std::string err;

 private:
  static void onMessage(int stream, const char* text, void* context) {
    auto* self = static_cast<Recorder*>(context);
    (stream == 1 ? self->out : self->err) += text;
  }
  static void onFatal(const XRF_RTL2LL::Fatal& fatal, void*) { throw FatalError(fatal); }

  XRF_RTL2LL::MessageHandlerScope m_messages{onMessage, this};
  XRF_RTL2LL::FatalHandlerScope m_fatal{onFatal, nullptr};
};

/// Number of the line on which `needle` begins.
inline std::uint64_t lineOf(std::string_view text, std::string_view needle) {
  const std::size_t place = text.find(needle);
  if (place == std::string_view::npos) throw std::logic_error("not in the text");
  return 1 + static_cast<std::uint64_t>(
                 std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
}

inline std::string repeat(std::string_view text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

inline void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at)) {
    text.replace(at, from.size(), to);
    at += to.size();
  }
}

/// `action` ends the process with status 1, and its standard error holds exactly `text`.
template <class Action>
void expectEnds(Action action, const std::string& text) {
  EXPECT_EXIT(action(), ::testing::ExitedWithCode(1), ::testing::Matcher<const std::string&>(text));
}

/// As above, and standard output holds nothing: joined to standard error it adds nothing there.
template <class Action>
void expectNoOutput(Action action, const std::string& text) {
  const auto joined = [&] {
    std::fflush(stdout);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    action();
  };
  expectEnds(joined, text);
}

/// A test in a fresh model, with one design, `subject`, and what the last action printed.
class ReadingTest : public ::testing::Test {
 protected:
  /// Runs one action and keeps its messages and its fatal error.
  template <class Action>
  void run(Action action) {
    Recorder recorder;
    fatal.reset();
    try {
      action();
    } catch (const FatalError& error) {
      fatal = error;
    }
    out = recorder.out;
    err = recorder.err;
  }

  /// Reads EDIF text into a view of the design's netlist.
  void read(XRF_RTL2LL::EdifView view, std::string_view text) {
    const TempFile file(text, "netlist.edf");
    path = file.path();
    run([&] { view == XRF_RTL2LL::RTL ? netlist.parse_rtl(path) : netlist.parse_synth(path); });
  }
  void readRtl(std::string_view text) {
    read(XRF_RTL2LL::RTL, text);
    ASSERT_FALSE(fatal) << fatal->text;
  }
  void readSynth(std::string_view text) {
    read(XRF_RTL2LL::SYNTH, text);
    ASSERT_FALSE(fatal) << fatal->text;
  }

  /// Resets the model and reads EDIF text into a netlist of its own.
  std::unique_ptr<XRF_RTL2LL::Netlist> readAlone(XRF_RTL2LL::EdifView view, std::string_view text) {
    XRF_RTL2LL::resetModel();
    auto alone = std::make_unique<XRF_RTL2LL::Netlist>();
    const TempFile file(text, "netlist.edf");
    path = file.path();
    run([&] { view == XRF_RTL2LL::RTL ? alone->parse_rtl(path) : alone->parse_synth(path); });
    return alone;
  }

  XRF_RTL2LL::Module* module(const std::string& name,
                             XRF_RTL2LL::EdifView view = XRF_RTL2LL::RTL) const {
    return netlist.findModule(view, name);
  }
  XRF_RTL2LL::Signal* signal(const std::string& name,
                             XRF_RTL2LL::EdifView view = XRF_RTL2LL::RTL) const {
    return netlist.findSignal(view, name);
  }
  /// The bit of an index of a signal, or null when there is no such signal or index.
  XRF_RTL2LL::Bit* bit(const std::string& name, unsigned int index = 0,
                       XRF_RTL2LL::EdifView view = XRF_RTL2LL::RTL) const {
    const XRF_RTL2LL::Signal* found = signal(name, view);
    if (found == nullptr || index < found->getLsb() || index > found->getMsb()) return nullptr;
    const XRF_RTL2LL::BitRef* ref = found->getBitRef(index, true);
    return ref == nullptr ? nullptr : ref->getBit();
  }
  /// The number of that bit, or -1.
  long idOf(const std::string& name, unsigned int index = 0,
            XRF_RTL2LL::EdifView view = XRF_RTL2LL::RTL) const {
    const XRF_RTL2LL::Bit* found = bit(name, index, view);
    return found == nullptr ? -1 : static_cast<long>(found->getId());
  }
  /// Range of a signal as "lsb..msb", or "none".
  std::string range(const std::string& name, XRF_RTL2LL::EdifView view = XRF_RTL2LL::RTL) const {
    const XRF_RTL2LL::Signal* found = signal(name, view);
    if (found == nullptr) return "none";
    return std::to_string(found->getLsb()) + ".." + std::to_string(found->getMsb());
  }
  unsigned int code(const std::string& word) { return netlist.getTokenMap()->getCode(word); }

  /// The last action ended with a message that was printed on standard error.
  void expectPrinted(std::string_view text) const {
    ASSERT_TRUE(fatal);
    EXPECT_EQ(fatal->text, text);
    EXPECT_TRUE(fatal->printed);
    EXPECT_EQ(fatal->status, 1);
    EXPECT_EQ(err, text);
  }
  /// The last action ended without printing anything.
  void expectSilent() const {
    ASSERT_TRUE(fatal);
    EXPECT_FALSE(fatal->text.empty());
    EXPECT_FALSE(fatal->printed);
    EXPECT_EQ(fatal->status, 1);
    EXPECT_EQ(err, "");
    EXPECT_EQ(out, "");
  }
  /// The last action ended with some message that names the file it read and the line.
  void expectFatalAt(std::uint64_t line) const {
    ASSERT_TRUE(fatal);
    EXPECT_FALSE(fatal->text.empty());
    EXPECT_EQ(fatal->file, path);
    EXPECT_EQ(fatal->line, line);
    EXPECT_EQ(fatal->status, 1);
  }

 private:
  XRF_RTL2LL::Model m_model;
  XRF_RTL2LL::ModelScope m_scope{m_model};

 protected:
  XRF_RTL2LL::Design subject;
  XRF_RTL2LL::Netlist& netlist = *subject.getNetlist();
  std::string path;
  std::string out;
  std::string err;
  std::optional<FatalError> fatal;
};

}  // namespace test

/// `statement` ends the process with status 1 and writes exactly `text` to standard error and
/// nothing to standard output.
#define EXPECT_ENDS_WITH(statement, text)             \
  do {                                                \
    SCOPED_TRACE(#statement);                         \
    ::test::expectEnds([&] { statement; }, text);     \
    ::test::expectNoOutput([&] { statement; }, text); \
  } while (false)

/// As above, where standard output may carry progress lines.
#define EXPECT_ENDS_AFTER_PROGRESS(statement, text) \
  do {                                              \
    SCOPED_TRACE(#statement);                       \
    ::test::expectEnds([&] { statement; }, text);   \
  } while (false)
