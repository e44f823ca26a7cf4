#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <string>

using namespace XRF_RTL2LL;
using edif::cell;
using edif::instance;
using edif::net;
using edif::output;
using edif::pin;
using edif::port;
using edif::renamed;
using edif::top;

namespace {

/// The reader of synthesis logs.
class SynthesisLogTest : public test::ReadingTest {
 protected:
  explicit SynthesisLogTest(const std::string& program = "Tarvona") {
    const std::string sub = cell("sub", output("cnt_reg_2_") + output("cnt_reg_3_") + output("x") +
                                            output("a$b") + output("c_d"));
    const std::string text =
        top(output("v") + output("w") + output("part") + output("part_x") +
                port(renamed("h_3_", "h[3]"), "OUTPUT"),
            instance("u0", "sub") + instance("u1", "sub") + instance("part", "sub"), sub, program);
    const test::TempFile file(text);
    const test::Recorder quiet;
    subject.parse_rtl(file.path());
  }
  void readLog(const std::string& text) {
    const test::TempFile file(text, "synth.log");
    path = file.path();
    run([&] { EXPECT_EQ(subject.parse_log(path), 0); });
    ASSERT_FALSE(fatal) << fatal->text;
    EXPECT_EQ(err, "");
  }
  static std::string line(const std::string& element, const std::string& value = "1") {
    return "INFO: [Synth 8-3333] propagating constant " + value + " across sequential element (" +
           element + ")\n";
  }
  std::string complete() const { return "Parsing log file: " + path + " complete.\n"; }
  static std::string warning(const std::string& name) {
    return "WARNING: Unable to locate signal " + name + "\n";
  }
  /// "0" or "1" for a constant bit, else the kind.
  std::string constant(const std::string& name) const {
    const Bit* found = bit(name);
    if (found == nullptr) return "no bit";
    if (found->getKind() != Bit::CNST) return "kind " + std::to_string(found->getKind());
    EXPECT_EQ(found->getValueStr(false), "z") << name;
    return found->getValue() ? "1" : "0";
  }
  std::size_t constants() const {
    std::size_t count = 0;
    for (const Bit* each : Bit::getAllBits()) count += each->getKind() == Bit::CNST ? 1U : 0U;
    return count;
  }
};
using SynthesisLogDeathTest = SynthesisLogTest;

class OtherFamilyLogTest : public SynthesisLogTest {
 protected:
  OtherFamilyLogTest() : SynthesisLogTest("Drumlane") {}
};

TEST_F(SynthesisLogTest, ReportedRegisterBecomesAConstant) {
  readLog(line("u0/cnt_reg[2] "));
  EXPECT_EQ(constant("/top/u0/cnt_reg_2_"), "1");
  EXPECT_EQ(constants(), 1U) << "neither another bit nor another instance";
  EXPECT_EQ(out, complete());
}

TEST_F(SynthesisLogTest, ElementIsLookedUpBelowTheTop) {
  readLog(line("u0/none_reg[2] "));
  EXPECT_EQ(out, warning("/top/u0/none_reg_2_") + complete());
  EXPECT_EQ(constants(), 0U);
}

TEST_F(SynthesisLogTest, AnyNumberButZeroIsTheValueTrue) {
  readLog(line("v", "5") + line("w", "0") + line("u0/x", "-1") + line("u1/x", "00"));
  EXPECT_EQ(constant("/top/v"), "1");
  EXPECT_EQ(constant("/top/w"), "0");
  EXPECT_EQ(constant("/top/u0/x"), "1");
  EXPECT_EQ(constant("/top/u1/x"), "0");
}

TEST_F(SynthesisLogTest, LaterLineOverwritesTheValue) {
  readLog(line("v", "1") + line("v", "0"));
  EXPECT_EQ(constant("/top/v"), "0");
}

TEST_F(SynthesisLogTest, BackslashesAreDropped) {
  readLog(line("u0/\\cnt_reg[2] ") + line("\\u1/cnt_re\\g[3] ") + "INFO: [Synth 8-3333] propag\\" +
          line("w").substr(27));
  EXPECT_EQ(constant("/top/u0/cnt_reg_2_"), "1");
  EXPECT_EQ(constant("/top/u1/cnt_reg_3_"), "1");
  EXPECT_EQ(constant("/top/w"), "1");
}

TEST_F(SynthesisLogTest, BlanksDoNotMatter) {
  readLog("INFO: [Synth 8-3333]\tpropagating    constant  0 across sequential element(v)  \r\n" +
          std::string("INFO:[Synth 8-3333] propagating constant1 across sequential element (w)\n"));
  EXPECT_EQ(constant("/top/v"), "0");
  EXPECT_EQ(constant("/top/w"), "1");
}

TEST_F(SynthesisLogTest, DotsBecomeUnderscoresButDollarsStay) {
  readLog(line("u0/c.d") + line("u0/a$b"));
  EXPECT_EQ(constant("/top/u0/c_d"), "1");
  EXPECT_EQ(constant("/top/u0/a$b"), "1");
}

TEST_F(SynthesisLogTest, SecondWordIsAppendedToTheName) {
  readLog(line("part:/\\x ") + line("u0/cnt_reg [2] "));
  EXPECT_EQ(constant("/top/part/x"), "1");
  EXPECT_EQ(constant("/top/u0/cnt_reg_2_"), "1");
  EXPECT_EQ(constant("/top/part"), "kind 1");
}

TEST_F(SynthesisLogTest, ThirdWordIsNotRead) {
  readLog(line("u0/cnt_reg [2] tail"));
  EXPECT_EQ(constant("/top/u0/cnt_reg_2_"), "1");
}

TEST_F(SynthesisLogTest, LevelsThatNameNoModuleAreDropped) {
  readLog(line("u0/gen[1]/x"));
  EXPECT_EQ(constant("/top/u0/x"), "1");
  EXPECT_EQ(constants(), 1U);
  EXPECT_EQ(out, complete());
}

TEST_F(SynthesisLogTest, PartitionLevelAtTheTopIsDropped) {
  readLog(line("i_0/u1/x") + line("i_0/v"));
  EXPECT_EQ(constant("/top/u1/x"), "1");
  EXPECT_EQ(constant("/top/v"), "1");
}

TEST_F(SynthesisLogTest, OnlyTheLastSlashIsTried) {
  readLog(line("u0/part_x"));
  EXPECT_EQ(out, warning("/top/u0/part_x") + complete());
  EXPECT_EQ(constant("/top/part_x"), "kind 1") << "a signal of a module further up is another one";
}

TEST_F(SynthesisLogTest, SignalWithoutBitZeroIsPassedOverQuietly) {
  readLog(line("h") + line("v"));
  EXPECT_EQ(out, complete());
  EXPECT_EQ(bit("/top/h", 3)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(constant("/top/v"), "1");
}

TEST_F(SynthesisLogTest, LocatedBitBecomesAConstantAndKeepsItsLocation) {
  signal("/top/v")->addState(0, 7, 8, 9);
  readLog(line("v"));
  EXPECT_EQ(constant("/top/v"), "1");
  EXPECT_EQ(bit("/top/v")->getStateLoc1(), 7U);
  EXPECT_EQ(bit("/top/v")->getStateLoc3(), 9U);
}

// Lines

TEST_F(SynthesisLogTest, LastLineWithoutALineFeedIsIgnored) {
  std::string text = line("v");
  text.pop_back();
  readLog(text);
  EXPECT_EQ(constant("/top/v"), "kind 1");
  EXPECT_EQ(out, complete());
}

TEST_F(SynthesisLogTest, OtherLinesAreIgnored) {
  readLog(
      "[Synth 8-3333] propagating constant 1 across sequential element (v)\n"
      "INFO: [Synth 8-3334] propagating constant 1 across sequential element (v)\n"
      " INFO: [Synth 8-3333] propagating constant 1 across sequential element (v)\n"
      "WARNING: [Synth 8-3333] propagating constant 1 across sequential element (v)\n"
      "INFO: [Synth 8-3333] propagating constant x across sequential element (v)\n"
      "INFO: [Synth 8-3333] propagating constant 1 across sequential element ()\n"
      "INFO: [Synth 8-3886] merging instance 'v' (FD) to 'w'\n\n");
  EXPECT_EQ(constants(), 0U);
  EXPECT_EQ(out, complete());
  EXPECT_EQ(subject.logReport().lines, 0U);
}

TEST_F(SynthesisLogTest, LineEndsOfWindows) {
  std::string text = "start\n" + line("v") + line("w");
  test::replaceAll(text, "\n", "\r\n");
  readLog(text);
  EXPECT_EQ(constant("/top/v"), "1");
  EXPECT_EQ(constant("/top/w"), "1");
}

TEST_F(SynthesisLogTest, EmptyLogStillEndsTheReading) {
  bit("/top/v")->setValueStr("1");
  readLog("");
  EXPECT_EQ(out, complete());
  EXPECT_EQ(bit("/top/v")->getValueStr(false), "z");
}

// What follows the log

TEST_F(SynthesisLogTest, RtlViewIsCompletedFromTheSynthesizedOne) {
  const test::TempFile synth(top(output("v") + output("w"), ""));
  run([&] { subject.parse_synth(synth.path()); });
  signal("/top/v", SYNTH)->addState(0, 7, 8, 9);
  signal("/top/u0/x")->setSrcState();
  readLog(line("w", "0"));
  EXPECT_EQ(bit("/top/v")->getKind(), Bit::STATE);
  EXPECT_EQ(bit("/top/v")->getStateLoc1(), 7U);
  EXPECT_EQ(bit("/top/v")->getStateLoc2(), 8U);
  EXPECT_EQ(bit("/top/v")->getStateLoc3(), 9U);
  EXPECT_EQ(constant("/top/w"), "0");
  EXPECT_EQ(bit("/top/w", 0, SYNTH)->getKind(), Bit::UNKNOWN) << "nothing is copied back";
  EXPECT_EQ(bit("/top/u0/x")->getKind(), Bit::UNREAD);
  EXPECT_EQ(bit("/top/u1/x")->getKind(), Bit::UNKNOWN);
}

// Families and failures

TEST_F(OtherFamilyLogTest, NothingIsReadOrCompleted) {
  signal("/top/u0/x")->setSrcState();
  bit("/top/w")->setValueStr("1");
  readLog(line("v"));
  EXPECT_EQ(out, "");
  EXPECT_EQ(constants(), 0U);
  EXPECT_EQ(bit("/top/u0/x")->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bit("/top/w")->getValueStr(false), "1");
}

TEST_F(OtherFamilyLogTest, FileIsNotEvenOpened) {
  run([&] { EXPECT_EQ(subject.parse_log(test::TempFile().missing()), 0); });
  EXPECT_FALSE(fatal);
  EXPECT_EQ(out + err, "");
}

TEST_F(OtherFamilyLogTest, ReaderItselfAsksForNoFamily) {
  const test::TempFile file(line("v"));
  run([&] { EXPECT_EQ(subject.parse_log_tarvona(file.path()), 0); });
  ASSERT_FALSE(fatal);
  EXPECT_EQ(constant("/top/v"), "1");
}

TEST_F(SynthesisLogDeathTest, FileThatCannotBeOpened) {
  const std::string missing = test::TempFile().missing();
  EXPECT_ENDS_WITH(subject.parse_log(missing), "Can't open file " + missing + "\n");
  run([&] { subject.parse_log(missing); });
  expectPrinted("Can't open file " + missing + "\n");
  EXPECT_EQ(out, "");
}

TEST_F(SynthesisLogTest, DesignWithoutATop) {
  resetModel();
  Design empty;
  const test::TempFile file(line("v"));
  run([&] { empty.parse_log_tarvona(file.path()); });
  EXPECT_TRUE(!fatal || !fatal->text.empty());
}

// Hostile files

TEST_F(SynthesisLogTest, AbsurdLines) {
  using namespace std::string_literals;
  const std::string mega(5U << 20U, 'x');
  for (const std::string& odd :
       {mega + "\n", line(mega), line("a " + mega), line(test::repeat("a/", 20000)),
        std::string(100000, '\0') + "\n", line("v\0z"s), "INFO\0\n"s,
        line("none", "99999999999999"), line("/"), line("//"), std::string(5U << 20U, '\\')}) {
    const test::TempFile file(odd + line("w"));
    path = file.path();
    run([&] { subject.parse_log(path); });
    ASSERT_FALSE(fatal) << fatal->text;
  }
  EXPECT_EQ(constant("/top/w"), "1");
}

TEST_F(SynthesisLogTest, DirectoryIsAnError) {
  const test::TempFile anything;
  run([&] { subject.parse_log(anything.folder()); });
  ASSERT_TRUE(fatal);
  EXPECT_FALSE(fatal->text.empty());
}

}  // namespace
