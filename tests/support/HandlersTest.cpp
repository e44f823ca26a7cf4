#include <support/Handlers.h>
#include <support/Report.h>
#include <tests/TestModel.h>

#include <atomic>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace XRF_RTL2LL {
namespace {

using testing_support::exactly;
using testing_support::matches;
using testing_support::Messages;
using Pieces = std::vector<Messages::Piece>;

/// The handlers are the process's own: each test finds and leaves the defaults.
class HandlersTest : public testing::Test {
 protected:
  HandlersTest() { restore(); }
  ~HandlersTest() override { restore(); }

 private:
  static void restore() {
    setFatalHandler(nullptr);
    setMessageHandler(nullptr);
    setProgressHandler(nullptr);
  }
};

/// What a throwing fatal handler was told. The texts are copied: they live only during the call.
struct Caught {
  int status;
  bool printed;
  std::string text;
  bool hasFile;
  std::string file;
  std::uint64_t line;
  std::uint64_t column;
};

void throwCaught(const Fatal& fatal, void*) {
  throw Caught{fatal.status,
               fatal.printed,
               fatal.text,
               fatal.file != nullptr,
               fatal.file == nullptr ? "" : fatal.file,
               fatal.line,
               fatal.column};
}

template <class Action>
Caught catchFatal(Action action) {
  FatalHandlerScope scope(throwCaught);
  try {
    action();
  } catch (const Caught& caught) {
    return caught;
  }
  ADD_FAILURE() << "nothing fatal happened";
  return {};
}

void append(int stream, const char* text, void* context) {
  static_cast<Pieces*>(context)->emplace_back(stream, text);
}

std::pair<std::string, std::string> captured(void (*action)()) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  action();
  std::fflush(stdout);
  std::string output = testing::internal::GetCapturedStdout();
  return {std::move(output), testing::internal::GetCapturedStderr()};
}

TEST_F(HandlersTest, ByDefaultTextGoesToTheStandardStreams) {
  const auto [output, error] = captured([] {
    message(StandardOutput, "out %d\n", 1);
    message(StandardError, "err %s\n", "2");
  });
  EXPECT_EQ(output, "out 1\n");
  EXPECT_EQ(error, "err 2\n");
}

TEST_F(HandlersTest, MessageHandlerReceivesEachTextAndStreamAndNothingIsPrinted) {
  static Pieces pieces;
  pieces.clear();
  const auto [output, error] = captured([] {
    setMessageHandler(append, &pieces);
    message(StandardOutput, "no line feed");
    message(StandardError, "%d%% of %s\n", 50, "all");
    message(StandardOutput, "%s", "a %s that is no format %n\n");
  });
  EXPECT_EQ(output + error, "");
  EXPECT_EQ(pieces,
            (Pieces{{1, "no line feed"}, {2, "50% of all\n"}, {1, "a %s that is no format %n\n"}}));
}

TEST_F(HandlersTest, TextOfAnyLengthArrivesWhole) {
  const std::string longText(3'000'000, 'x');
  Messages messages;
  message(StandardError, "[%s]", longText.c_str());
  EXPECT_EQ(messages.error(), "[" + longText + "]");
}

TEST_F(HandlersTest, NullMessageHandlerRestoresTheDefault) {
  Pieces pieces;
  setMessageHandler(append, &pieces);
  const auto [output, error] = captured([] {
    setMessageHandler(nullptr);
    message(StandardOutput, "out");
  });
  EXPECT_EQ(output, "out");
  EXPECT_TRUE(pieces.empty());
}

TEST_F(HandlersTest, MessageScopesNestAndRestoreHandlerAndContext) {
  Pieces outer;
  Pieces inner;
  setMessageHandler(append, &outer);
  {
    MessageHandlerScope scope(append, &inner);
    message(StandardOutput, "in");
  }
  message(StandardOutput, "out");
  EXPECT_EQ(inner, (Pieces{{1, "in"}}));
  EXPECT_EQ(outer, (Pieces{{1, "out"}}));
}

TEST_F(HandlersTest, NullScopeGivesTheDefaultForItsTime) {
  static Pieces pieces;
  pieces.clear();
  setMessageHandler(append, &pieces);
  const auto [output, error] = captured([] {
    MessageHandlerScope scope(nullptr);
    message(StandardOutput, "printed");
  });
  message(StandardOutput, "kept");
  EXPECT_EQ(output, "printed");
  EXPECT_EQ(pieces, (Pieces{{1, "kept"}}));
}

TEST_F(HandlersTest, ModelSpeaksThroughTheHandlerOnTheStreamPrescribed) {
  Model model;
  ModelScope scope(model);
  Signal* signal = new Signal(new Module("top", "d", 0), "q", 1, 0, 0, false);
  Bit* zero = new Bit;
  zero->setKind(Bit::CNST);
  Bit* one = new Bit;
  one->setKind(Bit::CNST);
  one->setValue(true);
  Messages messages;
  signal->getBitRef(1, true);
  one->merge(zero);
  EXPECT_EQ(messages.pieces(), (Pieces{{2, "WARNING: Illegal index (1) for Signal /top/q.\n"},
                                       {1, "ERROR: Bit conflict! 0: 1 1: 0\n"}}));
}

TEST_F(HandlersTest, ByDefaultAFatalErrorPrintsAndEndsTheProcess) {
  EXPECT_FATAL(fatal("ERROR: %s %d\n", "reason", 7), "ERROR: reason 7\n");
}

TEST_F(HandlersTest, SilentFatalErrorPrintsNothing) {
  EXPECT_SILENT_FATAL(fatalSilently("No %s.", "reason"));
}

TEST_F(HandlersTest, FatalErrorOfOurOwnWordingSaysError) {
  EXPECT_EXIT(fatalHere("no %s", "reason"), testing::ExitedWithCode(1),
              exactly("ERROR: no reason\n"));
}

TEST_F(HandlersTest, FatalHandlerIsToldEverything) {
  Messages messages;
  const Caught caught = catchFatal([] { fatal("ERROR: %d\n", 3); });
  EXPECT_EQ(caught.status, 1);
  EXPECT_TRUE(caught.printed);
  EXPECT_EQ(caught.text, "ERROR: 3\n");
  EXPECT_FALSE(caught.hasFile);
  EXPECT_EQ(caught.line, 0U);
  EXPECT_EQ(caught.column, 0U);
  EXPECT_EQ(messages.pieces(), (Pieces{{2, "ERROR: 3\n"}}));
}

TEST_F(HandlersTest, FatalHandlerIsToldTheReasonOfASilentEnd) {
  Messages messages;
  const Caught caught = catchFatal([] { fatalSilently("Nothing named %s.", "x"); });
  EXPECT_EQ(caught.status, 1);
  EXPECT_FALSE(caught.printed);
  EXPECT_EQ(caught.text, "Nothing named x.");
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(HandlersTest, FatalHandlerReceivesItsContextAfterTheTextWentOut) {
  struct Seen {
    Messages messages;
    std::size_t before = 0;
  } seen;
  setFatalHandler(
      [](const Fatal& fatal, void* context) {
        Seen& told = *static_cast<Seen*>(context);
        told.before = told.messages.pieces().size();
        throw std::runtime_error(fatal.text);
      },
      &seen);
  EXPECT_THROW(fatal("ERROR: x\n"), std::runtime_error);
  EXPECT_EQ(seen.before, 1U);
}

TEST_F(HandlersTest, FatalHandlerThatReturnsLetsTheProcessEnd) {
  EXPECT_EXIT(
      {
        setFatalHandler([](const Fatal&, void*) { std::fputs("told;", stderr); });
        fatalSilently("reason");
      },
      testing::ExitedWithCode(1), exactly("told;"));
}

TEST_F(HandlersTest, FatalHandlerMayEndTheProcessWithAStatusOfItsOwn) {
  EXPECT_EXIT(
      {
        setFatalHandler([](const Fatal&, void*) { std::_Exit(42); });
        fatal("ERROR: x\n");
      },
      testing::ExitedWithCode(42), exactly("ERROR: x\n"));
}

TEST_F(HandlersTest, NullFatalHandlerRestoresTheDefault) {
  EXPECT_EXIT(
      {
        setFatalHandler(throwCaught);
        setFatalHandler(nullptr);
        fatal("ERROR: x\n");
      },
      testing::ExitedWithCode(1), exactly("ERROR: x\n"));
}

TEST_F(HandlersTest, FatalScopesNestAndRestoreHandlerAndContext) {
  int outer = 0;
  int inner = 0;
  const FatalHandler count = [](const Fatal&, void* context) {
    ++*static_cast<int*>(context);
    throw std::runtime_error("counted");
  };
  FatalHandlerScope outerScope(count, &outer);
  {
    FatalHandlerScope innerScope(count, &inner);
    EXPECT_THROW(fatalSilently("x"), std::runtime_error);
  }
  EXPECT_THROW(fatalSilently("x"), std::runtime_error);
  EXPECT_EQ(inner, 1);
  EXPECT_EQ(outer, 1);
}

TEST_F(HandlersTest, FatalScopeEndsWhenItsOwnExceptionPasses) {
  EXPECT_EXIT(
      {
        try {
          FatalHandlerScope scope(throwCaught);
          fatalSilently("x");
        } catch (const Caught&) {
        }
        fatal("ERROR: default again\n");
      },
      testing::ExitedWithCode(1), exactly("ERROR: default again\n"));
}

TEST_F(HandlersTest, ThrowingHandlerUnwindsTheModelAndLeavesItUsable) {
  Model model;
  ModelScope scope(model);
  Module* top = new Module("top", "d", 0);
  Signal* signal = new Signal(top, "q", 1, 0, 0, false);
  Messages messages;
  const Caught index = catchFatal([&] { signal->getBitRef(9); });
  EXPECT_TRUE(index.printed);
  EXPECT_EQ(index.text, "ERROR: Illegal index (9) for Signal /top/q.\n");
  EXPECT_EQ(messages.error(), index.text);
  const Caught missing = catchFatal([&] { top->getChild(5, false); });
  EXPECT_FALSE(missing.printed);
  EXPECT_NE(missing.text, "");
  EXPECT_NE(signal->getBitRef(0)->getBit(), nullptr);
}

TEST_F(HandlersTest, PlaceBeingReadIsTold) {
  const int reader = 0;
  const ReadPlace outer("outer.edf", &reader, [](const void*) -> ReadPlace::Position {
    return {1, 0};
  });
  Messages messages;
  {
    const ReadPlace place("in.xrf", &reader, [](const void*) -> ReadPlace::Position {
      return {12, 5};
    });
    const Caught caught = catchFatal([] { fatal("ERROR: x\n"); });
    EXPECT_EQ(caught.file, "in.xrf");
    EXPECT_EQ(caught.line, 12U);
    EXPECT_EQ(caught.column, 5U);
    EXPECT_EQ(caught.text, "ERROR: x\n");
    EXPECT_EQ(catchFatal([] { fatalSilently("x"); }).file, "in.xrf");
    EXPECT_EQ(catchFatal([] { fatalHere("reason"); }).line, 12U);
    EXPECT_EQ(messages.error(), "ERROR: x\nERROR: in.xrf:12: reason\n");
  }
  EXPECT_EQ(catchFatal([] { fatalSilently("x"); }).file, "outer.edf");
}

TEST_F(HandlersTest, PlaceWithoutALineNamesTheFileAlone) {
  const ReadPlace place("in.xrf", nullptr, [](const void*) -> ReadPlace::Position { return {}; });
  Messages messages;
  EXPECT_EQ(catchFatal([] { fatalHere("reason"); }).line, 0U);
  EXPECT_EQ(messages.error(), "ERROR: in.xrf: reason\n");
}

TEST_F(HandlersTest, PlaceOfAnotherThreadIsNotTold) {
  const ReadPlace place("in.xrf", nullptr, [](const void*) -> ReadPlace::Position { return {}; });
  bool hasFile = true;
  FatalHandlerScope scope(throwCaught);
  std::thread other([&] {
    try {
      fatalSilently("x");
    } catch (const Caught& caught) {
      hasFile = caught.hasFile;
    }
  });
  other.join();
  EXPECT_FALSE(hasFile);
}

struct Progress {
  std::string phase;
  std::uint64_t done = 0;
  std::uint64_t total = 0;
  bool go = true;
};

bool note(const char* phase, std::uint64_t done, std::uint64_t total, void* context) {
  Progress& seen = *static_cast<Progress*>(context);
  seen = {phase, done, total, seen.go};
  return seen.go;
}

TEST_F(HandlersTest, ProgressIsIgnoredByDefault) {
  const auto [output, error] = captured([] { progress("Reading", 1, 2); });
  EXPECT_EQ(output + error, "");
}

TEST_F(HandlersTest, ProgressHandlerReceivesWhatIsReported) {
  Progress seen;
  setProgressHandler(note, &seen);
  progress("Reading", 5'000'000'000ULL, 9'000'000'000ULL);
  EXPECT_EQ(seen.phase, "Reading");
  EXPECT_EQ(seen.done, 5'000'000'000ULL);
  EXPECT_EQ(seen.total, 9'000'000'000ULL);
  setProgressHandler(nullptr);
  progress("Other", 1, 1);
  EXPECT_EQ(seen.phase, "Reading");
}

TEST_F(HandlersTest, ProgressScopesNestAndRestore) {
  Progress outer;
  Progress inner;
  ProgressHandlerScope scope(note, &outer);
  {
    ProgressHandlerScope innerScope(note, &inner);
    progress("in", 1, 2);
  }
  progress("out", 3, 4);
  EXPECT_EQ(inner.phase, "in");
  EXPECT_EQ(outer.phase, "out");
}

TEST_F(HandlersTest, ProgressHandlerThatReturnsFalseCancels) {
  Progress seen;
  seen.go = false;
  setProgressHandler(note, &seen);
  const Caught caught = catchFatal([] { progress("Reading", 1, 2); });
  EXPECT_EQ(caught.status, 1);
  EXPECT_NE(caught.text, "");
  EXPECT_EXIT(progress("Reading", 1, 2), testing::ExitedWithCode(1), matches("(ERROR: .+\n)?"));
}

TEST_F(HandlersTest, HandlerAndContextChangeTogether) {
  struct Side {
    char name;
    std::atomic<bool> mixed{false};
  };
  Side a{'a'};
  Side b{'b'};
  const MessageHandler forA = [](int, const char*, void* context) {
    Side& side = *static_cast<Side*>(context);
    if (side.name != 'a') side.mixed = true;
  };
  const MessageHandler forB = [](int, const char*, void* context) {
    Side& side = *static_cast<Side*>(context);
    if (side.name != 'b') side.mixed = true;
  };
  setMessageHandler(forA, &a);
  std::atomic<bool> stop{false};
  std::thread setter([&] {
    while (!stop) {
      setMessageHandler(forB, &b);
      setMessageHandler(forA, &a);
    }
  });
  for (int round = 0; round < 100'000; ++round) message(StandardOutput, "x");
  stop = true;
  setter.join();
  EXPECT_FALSE(a.mixed);
  EXPECT_FALSE(b.mixed);
}

}  // namespace
}  // namespace XRF_RTL2LL
