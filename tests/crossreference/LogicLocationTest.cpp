#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <stdexcept>
#include <string>
#include <vector>

using namespace XRF_RTL2LL;
using edif::cell;
using edif::instance;
using edif::net;
using edif::output;
using edif::pin;
using edif::port;
using edif::renamed;
using edif::top;
using test::lineOf;

namespace {

/// The reader of logic-location files.
class LogicLocationTest : public test::ReadingTest {
 protected:
  LogicLocationTest() {
    const std::string ports = output("r_2_") + output("r_3_") + output("r_20_") + output("r");
    const std::string flat = output("u_f_2_") + output("a_b_g") + output("onlysyn");
    load(top(output("q") + output("u_r_2_") + output("onlyrtl") + output("u_rtlflat") +
                 port(renamed("h_3_", "h[3]"), "OUTPUT"),
             instance("u", "sub") + instance("v", "sub") + instance("q_reg", "RTL_REG"),
             cell("sub", ports)),
         true);
    load(top(output("q") + flat, instance("u", "sub") + instance("v", "sub"), cell("sub", ports)),
         false);
  }
  void load(const std::string& text, bool rtl) {
    const test::TempFile file(text);
    const test::Recorder quiet;
    rtl ? subject.parse_rtl(file.path()) : subject.parse_synth(file.path());
  }
  void readAny(const std::string& text) {
    const test::TempFile file(text, "design.ll");
    path = file.path();
    run([&] { EXPECT_EQ(subject.parse_ll(path), 0); });
  }
  void readLl(const std::string& text) {
    readAny(text);
    ASSERT_FALSE(fatal) << fatal->text;
    EXPECT_EQ(out, "");
  }
  static std::string line(const std::string& net, const std::string& latch = "AQ",
                          const std::string& block = "SLICE_X3Y140") {
    return "Bit 5 0x00400100 33 Block=" + block + " Latch=" + latch + " Net=" + net + "\n";
  }
  /// "frame offset region" of a located bit, else the kind.
  std::string place(const std::string& name, EdifView view = RTL) const {
    const Bit* found = bit(name, 0, view);
    if (found == nullptr) return "no bit";
    if (found->getKind() != Bit::STATE) return "kind " + std::to_string(found->getKind());
    return std::to_string(found->getStateLoc1()) + " " + std::to_string(found->getStateLoc2()) +
           " " + std::to_string(found->getStateLoc3());
  }
  std::vector<std::string> located() const {
    std::vector<std::string> names;
    for (const Signal* each : Signal::getAllSignals()) {
      const BitRef* ref = each->getBitRef(each->getMsb(), true);
      if (ref != nullptr && ref->getBit()->getKind() == Bit::STATE) {
        names.push_back(each->getFullName());
      }
    }
    return names;
  }
};
using LogicLocationDeathTest = LogicLocationTest;
using Names = std::vector<std::string>;

const char* const kPlace = "4194560 33 0";
const char* const kUnknown = "kind 1";

TEST_F(LogicLocationTest, LineIsRecordedInEachViewThatHasTheSignal) {
  readLl(line("u/r[2]"));
  EXPECT_EQ(place("/top/u/r_2_", RTL), kPlace);
  EXPECT_EQ(place("/top/u/r_2_", SYNTH), kPlace);
  EXPECT_NE(bit("/top/u/r_2_", 0, RTL), bit("/top/u/r_2_", 0, SYNTH));
  EXPECT_EQ(located(), (Names{"/top/u/r_2_", "/top/u/r_2_"})) << "and on no neighbour";
  EXPECT_EQ(err, "");
}

TEST_F(LogicLocationTest, EverySpecialCharacterOfTheNameIsNormalised) {
  readLl(line("u/r$2."));
  EXPECT_EQ(place("/top/u/r_2_"), kPlace);
}

TEST_F(LogicLocationTest, SignalOfTheRtlViewAlone) {
  readLl(line("onlyrtl"));
  EXPECT_EQ(located(), Names{"/top/onlyrtl"});
}

TEST_F(LogicLocationTest, SignalOfTheSynthesizedViewAlone) {
  readLl(line("onlysyn"));
  EXPECT_EQ(place("/top/onlysyn", SYNTH), kPlace);
}

TEST_F(LogicLocationTest, FlattenedNameIsFoundInTheSynthesizedView) {
  readLl(line("u/f[2]"));
  EXPECT_EQ(place("/top/u_f_2_", SYNTH), kPlace);
}

TEST_F(LogicLocationTest, FlattenedNameIsFoundOverSeveralLevels) {
  readLl(line("a/b/g"));
  EXPECT_EQ(place("/top/a_b_g", SYNTH), kPlace);
}

TEST_F(LogicLocationTest, FlattenedNamesAreNotSoughtInTheRtlView) {
  readLl(line("u/rtlflat"));
  EXPECT_TRUE(located().empty());
  EXPECT_EQ(subject.locationReport().unmatched, 1U);
}

TEST_F(LogicLocationTest, FlattenedNameIsNotSoughtWhereTheNameItselfIsFound) {
  readLl(line("u/r[2]"));
  EXPECT_EQ(place("/top/u_r_2_"), kUnknown);
}

TEST_F(LogicLocationTest, UnknownNetIsIgnoredSilently) {
  readLl(line("u/none") + line("none") + line("/") + line("//a//"));
  EXPECT_TRUE(located().empty());
  EXPECT_EQ(err, "");
}

TEST_F(LogicLocationTest, LaterLineOfABitWins) {
  readLl(line("q") + "Bit 6 0x2A 7 Block=SLICE_X0Y0 Latch=BQ Net=q\n");
  EXPECT_EQ(place("/top/q"), "42 7 0");
  EXPECT_EQ(place("/top/q", SYNTH), "42 7 0");
}

TEST_F(LogicLocationTest, RegionIsZeroForEverySite) {
  readLl(line("q", "AQ", "SLICE_X0Y999"));
  EXPECT_EQ(place("/top/q"), kPlace);
}

TEST_F(LogicLocationTest, SignalWithoutBitZeroIsPassedOverQuietly) {
  readLl(line("h") + line("q"));
  EXPECT_EQ(err, "");
  EXPECT_EQ(bit("/top/h", 3)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(place("/top/q"), kPlace);
  EXPECT_EQ(subject.locationReport().skippedIndices, 1U);
}

// Lines

TEST_F(LogicLocationTest, HeaderLinesChangeNothing) {
  readLl("Revision 3\n; a comment\nInfo STARTSEL0=1\n\nBits 5\nBit\n");
  EXPECT_TRUE(located().empty());
  EXPECT_EQ(subject.locationReport().lines, 0U);
}

TEST_F(LogicLocationTest, EmptyFileChangesNothing) {
  readLl("");
  EXPECT_TRUE(located().empty());
}

TEST_F(LogicLocationTest, LastLineNeedsNoLineFeed) {
  std::string text = line("q");
  text.pop_back();
  readLl(text);
  EXPECT_EQ(place("/top/q"), kPlace);
}

TEST_F(LogicLocationTest, LineEndsOfWindows) {
  std::string text = "Revision 3\n" + line("q") + line("onlyrtl");
  test::replaceAll(text, "\n", "\r\n");
  readLl(text);
  EXPECT_EQ(place("/top/q"), kPlace);
  EXPECT_EQ(place("/top/onlyrtl"), kPlace);
}

TEST_F(LogicLocationTest, ColumnsMayBePadded) {
  readLl("Bit   10503555 0x0040099f   2787 Block=SLICE_X26Y93   Latch=AQ \t Net=q  \n");
  EXPECT_EQ(place("/top/q"), "4196767 2787 0");
}

TEST_F(LogicLocationTest, EqualsSignsAreBlanksEverywhere) {
  readLl("Bit=5 0x00400100=33 Block SLICE_X3Y140 Latch = AQ Net==q=more\n");
  EXPECT_EQ(place("/top/q"), kPlace);
}

TEST_F(LogicLocationTest, LinesOfOtherColumnsAreIgnored) {
  readLl(
      "Bit 1 0x10 1 Block=RAMB36_X0Y23 Ram=B:BIT0\n"
      "Bit 2 0x10 2 Block=SLICE_X30Y90 Ram=A:1\n"
      "Bit 3 0x10 3 SLR0 0 Block=SLICE_X49Y78 Latch=AQ2 Net=q\n"
      "Bit 4 0x10 4 Block=OLOGIC_X6Y3 Type=OUTFF Net=q\n"
      "Bit 5 10 5 Block=SLICE_X49Y78 Latch=AQ Net=q\n"
      "Bit x 0x10 6 Block=SLICE_X49Y78 Latch=AQ Net=q\n"
      " Bit 7 0x10 7 Block=SLICE_X49Y78 Latch=AQ Net=q\n"
      "bit 8 0x10 8 Block=SLICE_X49Y78 Latch=AQ Net=q\n"
      "Bit 9 0x10 9 Block=SLICE_X49Y78 Latch=AQ Net=\n"
      "Bit 9 0x10 9 Block=SLICE_X49Y78 Latch= Net=q\n");
  EXPECT_TRUE(located().empty());
  EXPECT_EQ(err, "");
  EXPECT_EQ(subject.locationReport().lines, 0U);
}

// Latches

TEST_F(LogicLocationTest, MultiplexerLatchIsRecordedOnSourcesOnly) {
  readLl(line("onlyrtl", "AMUX") + line("q", "BMUX"));
  EXPECT_EQ(place("/top/onlyrtl"), kUnknown);
  EXPECT_EQ(place("/top/q", RTL), kPlace) << "the register q_reg drives it";
  EXPECT_EQ(place("/top/q", SYNTH), kUnknown) << "nothing drives it there";
  EXPECT_EQ(subject.locationReport().skippedLatches, 1U);
}

TEST_F(LogicLocationTest, MultiplexerLatchLeavesAnEarlierLocation) {
  readLl(line("onlyrtl") + "Bit 6 0x2A 7 Block=SLICE_X0Y0 Latch=AMUX Net=onlyrtl\n");
  EXPECT_EQ(place("/top/onlyrtl"), kPlace);
}

TEST_F(LogicLocationTest, OnlyTheSecondCharacterOfTheLatchDecides) {
  readLl(line("u/r[2]", "MQ") + line("u/r[3]", "A5M") + line("u/r[20]", "M") + line("u/r", "am"));
  EXPECT_EQ(place("/top/u/r_2_"), kPlace);
  EXPECT_EQ(place("/top/u/r_3_"), kPlace);
  EXPECT_EQ(place("/top/u/r_20_"), kPlace);
  EXPECT_EQ(place("/top/u/r"), kPlace);
}

// Blocks

TEST_F(LogicLocationTest, BlockThatBeginsWithAIsSkippedWithAWarning) {
  readLl(line("q", "AQ", "A12") + line("onlyrtl"));
  EXPECT_EQ(err, "Warning Skipping: Bit 5 0x00400100 33 Block A12 Latch AQ Net q\n");
  EXPECT_EQ(place("/top/q"), kUnknown);
  EXPECT_EQ(place("/top/onlyrtl"), kPlace);
  EXPECT_EQ(subject.locationReport().skippedBlocks, 1U);
}

TEST_F(LogicLocationDeathTest, OtherBlocksEndSilently) {
  for (const char* block : {"RAMB36_X0Y1", "B9", "slice_X0Y0", "OLOGIC_X6Y3", "_S"}) {
    const test::TempFile file(line("q", "AQ", block));
    EXPECT_ENDS_WITH(subject.parse_ll(file.path()), "");
    const std::string text = "Revision 3\n" + line("onlyrtl") + line("u/none", "AQ", block);
    readAny(text);
    expectSilent();
    expectFatalAt(3);
    EXPECT_EQ(place("/top/onlyrtl"), kPlace);
  }
}

TEST_F(LogicLocationDeathTest, SitesWithoutCoordinatesEndSilently) {
  for (const char* block : {"SLICE_", "SLICE_X3", "SLICE_XaYb", "SLICE_Z1Y2", "Sxxxxx"}) {
    const test::TempFile file(line("q", "AQ", block));
    EXPECT_ENDS_WITH(subject.parse_ll(file.path()), "");
    readAny("\n" + line("q", "AQ", block));
    expectSilent();
    expectFatalAt(2);
  }
}

TEST_F(LogicLocationTest, SixCharactersOfTheSiteAreDroppedWhateverTheyAre) {
  readLl(line("q", "AQ", "SITE__X1Y2") + line("onlyrtl", "AQ", "SLICE_Y3Y4"));
  EXPECT_EQ(place("/top/q"), kPlace);
  EXPECT_EQ(place("/top/onlyrtl"), kPlace);
}

TEST_F(LogicLocationTest, SiteShorterThanItsPrefixIsALengthError) {
  for (const char* block : {"S", "SLICE"}) {
    const test::TempFile file(line("q", "AQ", block));
    try {
      subject.parse_ll(file.path());
      FAIL() << block;
    } catch (const std::length_error& error) {
      EXPECT_STREQ(error.what(), "basic_string::_M_create");
    }
  }
}

// Failures

TEST_F(LogicLocationDeathTest, FileThatCannotBeOpenedEndsSilently) {
  const std::string missing = test::TempFile().missing();
  EXPECT_ENDS_WITH(subject.parse_ll(missing), "");
  run([&] { subject.parse_ll(missing); });
  expectSilent();
}

TEST_F(LogicLocationDeathTest, DesignThatReadNothingEndsSilently) {
  const test::TempFile file(line("q"));
  resetModel();
  Design empty;
  EXPECT_ENDS_WITH(empty.parse_ll(file.path()), "");
  run([&] { empty.parse_ll(file.path()); });
  expectSilent();
}

TEST_F(LogicLocationDeathTest, SynthesizedNetlistAloneIsNotEnough) {
  const test::TempFile file(line("q"));
  resetModel();
  Design half;
  const test::TempFile netlistFile(top(output("q"), ""));
  half.parse_synth(netlistFile.path());
  run([&] { half.parse_ll(file.path()); });
  expectSilent();
}

TEST_F(LogicLocationTest, CrossReferenceFileIsEnough) {
  resetModel();
  Design loaded;
  const test::TempFile xrf(
      "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 1)\n(NETS 1)\n(BIT 0 ? z)\n(VIEW RTL)\n"
      "(MOD VISIBLE d high 1\n(SIG VISIBLE OUT q 1 0 0 0 0))\n");
  const test::TempFile file(line("q"));
  run([&] {
    loaded.parse_xrf(xrf.path());
    loaded.parse_ll(file.path());
  });
  ASSERT_FALSE(fatal);
  const Bit* located = loaded.findSignal(RTL, "/high/q")->getBitRef(0)->getBit();
  EXPECT_EQ(located->getKind(), Bit::STATE);
  EXPECT_EQ(located->getStateLoc1(), 0x400100U);
}

TEST_F(LogicLocationTest, CrossReferenceFileWithoutATop) {
  resetModel();
  Design loaded;
  const test::TempFile xrf("(VERSION 1)\n");
  const test::TempFile file(line("q"));
  run([&] {
    loaded.parse_xrf(xrf.path());
    loaded.parse_ll(file.path());
  });
  EXPECT_TRUE(!fatal || !fatal->text.empty());
}

// Hostile files

TEST_F(LogicLocationTest, AbsurdLines) {
  using namespace std::string_literals;
  const std::string mega(5U << 20U, 'x');
  for (const std::string& odd :
       {mega, "Bit "s + mega, line(mega), line("a", mega), line("a", "AQ", "SLICE_X1Y2" + mega),
        line(test::repeat("a/", 5000)), std::string(100000, '\0'), line("q\0z"s), "Bit 5\0"s,
        "Bit 5 0x"s + std::string(1000, 'f') + " 33 Block=SLICE_X1Y1 Latch=AQ Net=none\n",
        "Bit 99999999999999999999 0x1 99999999999 Block=SLICE_X1Y1 Latch=AQ Net=none\n"s,
        "Bit 1 0x1 1 Block=SLICE_X99999999999Y99999999999 Latch=AQ Net=none\n"s}) {
    readAny("Revision 3\n" + odd);
    if (fatal) {
      EXPECT_EQ(fatal->line, 2U);
      EXPECT_EQ(fatal->file, path);
    }
  }
}

TEST_F(LogicLocationTest, LineAfterAnAbsurdOneCounts) {
  readLl(std::string(5U << 20U, 'x') + "\n" + std::string(1000, '\0') + "\n" + line("q"));
  EXPECT_EQ(place("/top/q"), kPlace);
}

TEST_F(LogicLocationTest, DirectoryIsAnError) {
  const test::TempFile anything;
  run([&] { subject.parse_ll(anything.folder()); });
  ASSERT_TRUE(fatal);
  EXPECT_FALSE(fatal->text.empty());
}

}  // namespace
