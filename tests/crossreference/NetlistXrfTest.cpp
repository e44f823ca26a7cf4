#include "tests/crossreference/ReadingTest.h"

#include <string>
#include <vector>

using namespace XRF_RTL2LL;
using test::lineOf;
using test::repeat;

namespace {

const std::string kSmall =
    "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 2)\n(NETS 1)\n(BIT 0 STATE z 5 6 0)\n(BIT 1 ? z)\n\n"
    "(VIEW RTL)\n\n(MOD VISIBLE top top 0\n\n   (SIG VISIBLE OUT q 0 0 0 1 0 1))\n"
    "(VIEW SYNTH)\n\n(MOD VISIBLE top top 0\n\n   (SIG VISIBLE OUT q 0 0 0 0 0))";

/// The reader of cross-reference files.
class NetlistXrfTest : public test::ReadingTest {
 protected:
  void readAny(const std::string& text) {
    const test::TempFile file(text, "design.xrf");
    path = file.path();
    run([&] { netlist.parse_xrf(path); });
  }
  void readXrf(const std::string& text) {
    readAny(text);
    ASSERT_FALSE(fatal) << fatal->text;
  }
  /// A file of five bits, of which 0 to 3 are declared, two nets and some lines in the RTL view.
  static std::string file(const std::string& lines) {
    return "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 5)\n(NETS 2)\n(BIT 0 ? z)\n(BIT 1 ? z)\n"
           "(BIT 2 ? z)\n(BIT 3 ? z)\n\n(VIEW RTL)\n\n" +
           lines;
  }
  static std::string header(const std::string& lines) {
    return "(VERSION 1)\n(BITS 5)\n(NETS 2)\n" + lines;
  }
  /// The bit that a BIT record makes.
  Bit* readBit(const std::string& record) {
    readXrf(header(record + "\n"));
    return *Bit::getAllBits().begin();
  }
  void expectErrorAt(const std::string& text, const std::string& place) {
    readAny(text);
    ASSERT_TRUE(fatal) << text;
    expectFatalAt(lineOf(text, place));
  }
  void expectPrintedAt(const std::string& text, const std::string& message,
                       const std::string& place) {
    readAny(text);
    expectPrinted(message);
    expectFatalAt(lineOf(text, place));
  }
};
using NetlistXrfDeathTest = NetlistXrfTest;

TEST_F(NetlistXrfTest, SmallFileGivesBothViews) {
  readXrf(kSmall);
  EXPECT_EQ(err, "");
  EXPECT_EQ(out,
            "Parsing xrf file: " + path + " ...\nParsing xrf file: " + path + " complete.\n\n");
  EXPECT_EQ(range("/top/q"), "0..1");
  EXPECT_EQ(range("/top/q", SYNTH), "0..0");
  EXPECT_EQ(bit("/top/q", 0), bit("/top/q", 0, SYNTH));
  EXPECT_EQ(idOf("/top/q", 0), 0);
  EXPECT_EQ(bit("/top/q", 0)->getKind(), Bit::STATE);
  EXPECT_EQ(idOf("/top/q", 1), 1);
  EXPECT_EQ(bit("/top/q", 1)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(signal("/top/q")->getKind(), OUT);
  EXPECT_EQ(signal("/top/q")->getNet(), signal("/top/q", SYNTH)->getNet());
  ASSERT_NE(netlist.getTop(RTL), nullptr);
  EXPECT_EQ(netlist.getTop(RTL), module("/top"));
  EXPECT_EQ(netlist.getTop(SYNTH), module("/top", SYNTH));
  EXPECT_NE(netlist.getTop(RTL), netlist.getTop(SYNTH));
  EXPECT_STREQ(netlist.getTop(RTL)->getDefName(), "top");
  EXPECT_EQ(netlist.getTop(RTL)->getPath(), "");
  EXPECT_EQ(netlist.getTop(RTL)->getParent(), module("/"));
  EXPECT_EQ(netlist.getFamily(), TORVAL7);
}

TEST_F(NetlistXrfTest, HighestBitIdIsNotDeclaredButIdsAreNotReused) {
  readXrf(header("(BIT 3 ? z)\n(BIT 1 ? z)\n"));
  EXPECT_EQ(Bit::getMaxBitId(), 0U);
  EXPECT_EQ(Bit::getNextId(), 4U);
}

// BIT records

TEST_F(NetlistXrfTest, BitWithThreeLocations) {
  const Bit* read = readBit("(BIT 4 STATE z 17 31 2)");
  EXPECT_EQ(read->getId(), 4U);
  EXPECT_EQ(read->getKind(), Bit::STATE);
  EXPECT_EQ(read->getStateLoc1(), 17U);
  EXPECT_EQ(read->getStateLoc2(), 31U);
  EXPECT_EQ(read->getStateLoc3(), 2U);
  EXPECT_EQ(read->getValueStr(false), "z");
}

TEST_F(NetlistXrfTest, BitWithTwoLocationsHasRegionZero) {
  const Bit* read = readBit("(BIT 0 STATE 1 17 31)");
  EXPECT_EQ(read->getKind(), Bit::STATE);
  EXPECT_EQ(read->getStateLoc1(), 17U);
  EXPECT_EQ(read->getStateLoc2(), 31U);
  EXPECT_EQ(read->getStateLoc3(), 0U);
  EXPECT_TRUE(read->getValue());
}

TEST_F(NetlistXrfTest, LocationsMakeAStateBitWhateverItsKindSays) {
  EXPECT_EQ(readBit("(BIT 0 FOO z 1 2 3)")->getKind(), Bit::STATE);
}

TEST_F(NetlistXrfTest, LargestLocations) {
  const Bit* read = readBit("(BIT 0 STATE z 4294967295 2147483648 4294967294)");
  EXPECT_EQ(read->getStateLoc1(), 4294967295U);
  EXPECT_EQ(read->getStateLoc2(), 2147483648U);
  EXPECT_EQ(read->getStateLoc3(), 4294967294U);
}

TEST_F(NetlistXrfTest, ConstantBits) {
  readXrf(header("(BIT 0 CNST 0)\n(BIT 1 CNST 1)\n(BIT 2 C 1)\n"));
  std::vector<const Bit*> bits;
  for (const Bit* each : Bit::getAllBits()) bits.push_back(each);
  ASSERT_EQ(bits.size(), 3U);
  for (const Bit* each : bits) EXPECT_EQ(each->getKind(), Bit::CNST);
  EXPECT_FALSE(bits[0]->getValue());
  EXPECT_EQ(bits[0]->getValueStr(false), "0");
  EXPECT_TRUE(bits[1]->getValue());
  EXPECT_EQ(bits[1]->getValueStr(false), "1");
  EXPECT_TRUE(bits[2]->getValue());
}

TEST_F(NetlistXrfTest, UnreadAndUnknownBits) {
  EXPECT_EQ(readBit("(BIT 0 UNREAD z)")->getKind(), Bit::UNREAD);
  resetModel();
  EXPECT_EQ(Bit::getAllBits().size(), 0U);
}

TEST_F(NetlistXrfTest, ValueIsDecodedByItsFirstCharacter) {
  const Bit* read = readBit("(BIT 0 ? 10)");
  EXPECT_TRUE(read->getValue());
  EXPECT_EQ(read->getValueStr(false), "1");
}

TEST_F(NetlistXrfDeathTest, BitWithOneLocationIsASyntaxError) {
  const test::TempFile xrf(header("  (BIT 0 STATE z 5)\n"));
  const std::string message = "Unexpected syntax encountered.\n (BIT 0 STATE z 5)\n";
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), message);
  expectPrintedAt(header("  (BIT 0 STATE z 5)\n"), message, "(BIT 0");
}

TEST_F(NetlistXrfDeathTest, KindStateNeedsLocations) {
  const test::TempFile xrf(header("(BIT 0 STATE z)\n"));
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), "Unknown bit kind: 'STATE'!\n");
  expectPrintedAt(header("\n(BIT 0 STATE z)\n"), "Unknown bit kind: 'STATE'!\n", "(BIT 0");
}

TEST_F(NetlistXrfDeathTest, UnknownBitValueIsQuotedAsScanned) {
  const test::TempFile xrf(header("(BIT 0 STATE x)\n"));
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), "Unknown bit value: 'x)'!\n");
  expectPrintedAt(header("(BIT 0 ? x)\n"), "Unknown bit value: 'x)'!\n", "(BIT 0");
}

// SIG records

TEST_F(NetlistXrfTest, OneBitSignal) {
  readXrf(file("(MOD VISIBLE d top 7\n(SIG VISIBLE IN data<3> 12 1 0 0 3))\n"));
  const Signal* data = signal("/top/data<3>");
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->getId(), 12U);
  EXPECT_EQ(data->getKind(), IN);
  EXPECT_EQ(idOf("/top/data<3>"), 3);
  EXPECT_EQ(data->getNet()->getId(), 1U);
  EXPECT_FALSE(data->isHidden());
  EXPECT_EQ(module("/top")->getSignal(12, true), data);
}

TEST_F(NetlistXrfTest, OneBitSignalOfAHighIndex) {
  readXrf(file("(MOD VISIBLE d top 7\n(SIG VISIBLE IN a 12 1 6 6 3))\n"));
  EXPECT_EQ(range("/top/a"), "6..6");
  EXPECT_EQ(idOf("/top/a", 6), 3);
}

TEST_F(NetlistXrfTest, BitsCountFromTheLsbUpward) {
  readXrf(file("(MOD VISIBLE d top 7\n(SIG VISIBLE WIRE a 12 1 4 6 3 1 2))\n"));
  EXPECT_EQ(range("/top/a"), "4..6");
  EXPECT_EQ(idOf("/top/a", 4), 3);
  EXPECT_EQ(idOf("/top/a", 5), 1);
  EXPECT_EQ(idOf("/top/a", 6), 2);
}

TEST_F(NetlistXrfTest, SignalsOfOneNetAreTogether) {
  readXrf(
      file("(MOD VISIBLE d top 7\n(SIG VISIBLE WIRE a 1 1 0 0 3)\n(SIG VISIBLE WIRE b 2 1 0 0 "
           "3)\n(SIG VISIBLE WIRE c 3 0 0 0 1))\n"));
  EXPECT_EQ(signal("/top/a")->getNet(), signal("/top/b")->getNet());
  EXPECT_NE(signal("/top/a")->getNet(), signal("/top/c")->getNet());
  EXPECT_EQ(signal("/top/c")->getNet()->getId(), 0U);
  EXPECT_EQ(Net::getAllNets().size(), 2U);
}

TEST_F(NetlistXrfTest, MissingBitOfABusBecomesBitZero) {
  readXrf(file("(MOD VISIBLE d top 7\n(SIG VISIBLE WIRE a 12 1 0 4 3 1 NULL 2 NULL))\n"));
  EXPECT_EQ(idOf("/top/a", 0), 3);
  EXPECT_EQ(idOf("/top/a", 1), 1);
  EXPECT_EQ(idOf("/top/a", 2), 0);
  EXPECT_EQ(idOf("/top/a", 3), 2);
  EXPECT_EQ(idOf("/top/a", 4), 0);
}

// The record is told from others by its first two bit numbers.

TEST_F(NetlistXrfTest, MissingFirstBitOfABusIsASyntaxError) {
  const std::string text = file("(MOD VISIBLE d top 7\n(SIG VISIBLE WIRE a 12 1 0 1 NULL 3))\n");
  expectPrintedAt(text, "Unexpected syntax encountered.\n (SIG VISIBLE WIRE a 12 1 0 1 NULL 3))\n",
                  "(SIG");
}

TEST_F(NetlistXrfTest, MissingSecondBitOfABusIsIllegal) {
  const std::string text = file("(MOD VISIBLE d top 7\n(SIG VISIBLE WIRE a 12 1 0 1 3 NULL))\n");
  expectPrintedAt(text, "Illegal signal: (SIG VISIBLE WIRE a 12 1 0 1 3 NULL))\n", "(SIG");
}

TEST_F(NetlistXrfDeathTest, MissingBitOfAOneBitSignalIsASyntaxError) {
  const std::string text = file("(MOD VISIBLE d top 7\n\t (SIG VISIBLE IN a 1 0 0 0 NULL))\n");
  const test::TempFile xrf(text);
  const std::string message = "Unexpected syntax encountered.\n (SIG VISIBLE IN a 1 0 0 0 NULL))\n";
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), message);
  expectPrintedAt(text, message, "(SIG");
}

TEST_F(NetlistXrfDeathTest, OneBitNumberForTwoBitsIsIllegal) {
  const std::string text = file("(MOD VISIBLE d top 7\n   (SIG VISIBLE IN a 1 0 0 1 2))\n");
  const test::TempFile xrf(text);
  const std::string message = "Illegal signal: (SIG VISIBLE IN a 1 0 0 1 2))\n";
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), message);
  expectPrintedAt(text, message, "(SIG");
}

TEST_F(NetlistXrfDeathTest, UnknownSignalKind) {
  const std::string text = file("(MOD VISIBLE d top 7\n(SIG VISIBLE BOTH a 1 0 0 0 2))\n");
  const test::TempFile xrf(text);
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), "Unknown signal kind: 'BOTH'!\n");
  expectPrintedAt(text, "Unknown signal kind: 'BOTH'!\n", "(SIG");
}

TEST_F(NetlistXrfTest, SignalKindsAndVisibilityGoByTheFirstCharacter) {
  readXrf(
      file("(MOD VISIBLE d top 7\n(SIG Hid Odd a 1 0 0 0 2)\n(SIG hidden Will b 2 0 0 0 2))\n"));
  EXPECT_EQ(signal("/top/a")->getKind(), OUT);
  EXPECT_TRUE(signal("/top/a")->isHidden());
  EXPECT_EQ(signal("/top/b")->getKind(), WIRE);
  EXPECT_FALSE(signal("/top/b")->isHidden());
}

TEST_F(NetlistXrfTest, FewerBitsThanTheRangeLeaveTheRestEmpty) {
  readXrf(file("(MOD VISIBLE d top 7\n(SIG VISIBLE WIRE a 12 1 0 3 3 2))\n"));
  EXPECT_EQ(range("/top/a"), "0..3");
  EXPECT_EQ(idOf("/top/a", 1), 2);
  EXPECT_EQ(bit("/top/a", 2), nullptr);
}

TEST_F(NetlistXrfDeathTest, SecondSignalOfANumberEndsSilently) {
  const std::string text =
      file("(MOD VISIBLE d top 7\n(SIG VISIBLE IN a 1 0 0 0 2)\n(SIG VISIBLE IN b 1 0 0 0 2))\n");
  const test::TempFile xrf(text);
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), "");
  readAny(text);
  ASSERT_TRUE(fatal);
  EXPECT_FALSE(fatal->printed);
  expectFatalAt(lineOf(text, "(SIG VISIBLE IN b"));
}

// Parentheses

TEST_F(NetlistXrfTest, ThreeParenthesesCloseTwoModules) {
  readXrf(
      file("(MOD VISIBLE d top 1\n\n(MOD VISIBLE d u 2\n\n(MOD VISIBLE d v 3\n\n"
           "(SIG VISIBLE IN a 1 0 0 0 2)))\n(SIG VISIBLE IN b 2 0 0 0 2)\n"));
  EXPECT_EQ(range("/top/u/v/a"), "0..0");
  EXPECT_EQ(range("/top/b"), "0..0");
  EXPECT_EQ(range("/top/u/b"), "none");
}

TEST_F(NetlistXrfTest, TwoParenthesesCloseOneModule) {
  readXrf(
      file("(MOD VISIBLE d top 1\n\n(MOD VISIBLE d u 2\n\n(SIG VISIBLE IN a 1 0 0 0 2))\n"
           "(MOD VISIBLE d v 3\n\n(SIG VISIBLE IN b 2 0 0 0 2)))\n"));
  EXPECT_EQ(range("/top/u/a"), "0..0");
  EXPECT_EQ(range("/top/v/b"), "0..0");
  EXPECT_EQ(module("/top/v")->getParent(), module("/top"));
  EXPECT_EQ(module("/top")->getChildren(false).size(), 2U);
}

TEST_F(NetlistXrfTest, ParenthesisOnAModuleLineClosesNothing) {
  readXrf(file("(MOD VISIBLE d top 1)\n(MOD VISIBLE d u 2))\n(SIG VISIBLE IN a 1 0 0 0 2)\n"));
  EXPECT_EQ(range("/top/u/a"), "0..0");
}

TEST_F(NetlistXrfTest, ParenthesisInANameCountsToo) {
  readXrf(
      file("(MOD VISIBLE d top 1\n(MOD VISIBLE d u 2\n(SIG VISIBLE IN a) 1 0 0 0 2)\n"
           "(SIG VISIBLE IN b 2 0 0 0 2)\n"));
  EXPECT_EQ(range("/top/u/a)"), "0..0");
  EXPECT_EQ(range("/top/u/b"), "none");
  EXPECT_EQ(range("/top/b"), "0..0");
}

// MOD records

TEST_F(NetlistXrfTest, ModulesHaveTheirPlaceInTheTree) {
  readXrf(
      file("(MOD VISIBLE defT top 1\n\n(MOD HIDDEN defU u 2\n\n(SIG VISIBLE IN a 1 0 0 0 2)))\n"));
  const Module* u = module("/top/u");
  ASSERT_NE(u, nullptr);
  EXPECT_STREQ(u->getDefName(), "defU");
  EXPECT_STREQ(u->getName(), "u");
  EXPECT_EQ(u->getId(), 2U);
  EXPECT_EQ(u->getPath(), "/top");
  EXPECT_EQ(u->getKind(), HIER);
  EXPECT_TRUE(u->isHidden());
  EXPECT_FALSE(module("/top")->isHidden());
  EXPECT_EQ(netlist.getTop(RTL), module("/top"));
}

TEST_F(NetlistXrfTest, VisibleSetsAreTakenInTheWholeTree) {
  readXrf(
      file("(MOD VISIBLE d top 1\n\n(MOD HIDDEN d u 2\n\n(SIG HIDDEN IN a 1 0 0 0 2)\n"
           "(SIG VISIBLE IN b 2 0 0 0 2)))\n"));
  EXPECT_TRUE(module("/top")->getChildren(true).empty());
  EXPECT_EQ(module("/top")->getChildren(false).size(), 1U);
  EXPECT_EQ(module("/top/u")->getSignals(true).size(), 1U);
  EXPECT_EQ(module("/top/u")->getSignals(false).size(), 2U);
  EXPECT_EQ(module("/")->getChildren(true).size(), 1U);
}

TEST_F(NetlistXrfDeathTest, SecondChildOfANumber) {
  const std::string text = file(
      "(MOD VISIBLE d top 1\n(MOD VISIBLE d u 2\n(SIG VISIBLE IN a 1 0 0 0 2))\n\n"
      "(MOD VISIBLE d v 2\n");
  const test::TempFile xrf(text);
  const std::string message = "ERROR: (addChild) A child with the id '2' already exists.\n";
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), message);
  expectPrintedAt(text, message, "(MOD VISIBLE d v");
}

TEST_F(NetlistXrfTest, LastTopOfAViewServes) {
  readXrf(file("(MOD VISIBLE d one 1\n(SIG VISIBLE IN a 1 0 0 0 2))\n(MOD VISIBLE d two 2\n"));
  EXPECT_STREQ(netlist.getTop(RTL)->getName(), "two");
}

// VIEW, FAMILY, VERSION

TEST_F(NetlistXrfTest, ViewGoesByItsFirstCharacter) {
  readXrf(header("(VIEW RUBBISH)\n(MOD VISIBLE d top 1\n(VIEW SOMETHING)\n(MOD VISIBLE d low 1\n"));
  EXPECT_NE(module("/top", RTL), nullptr);
  EXPECT_EQ(module("/top", SYNTH), nullptr);
  EXPECT_NE(module("/low", SYNTH), nullptr);
  EXPECT_EQ(module("/low", RTL), nullptr);
  EXPECT_NE(module("/", RTL), module("/", SYNTH));
}

TEST_F(NetlistXrfTest, ViewClosesAllModulesOfTheOneBefore) {
  readXrf(
      header("(VIEW RTL)\n(MOD VISIBLE d top 1\n(MOD VISIBLE d u 2\n(VIEW SYNTH)\n"
             "(MOD VISIBLE d top 1\n"));
  EXPECT_EQ(module("/top", SYNTH)->getParent(), module("/", SYNTH));
  EXPECT_EQ(netlist.getTop(SYNTH), module("/top", SYNTH));
}

TEST_F(NetlistXrfDeathTest, UnknownView) {
  const std::string text = header("(VIEW XRTL)\n");
  const test::TempFile xrf(text);
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), "Unknown view type: 'XRTL)'!\n");
  expectPrintedAt(text, "Unknown view type: 'XRTL)'!\n", "(VIEW");
}

TEST_F(NetlistXrfTest, FamilyGoesByItsFirstCharacter) {
  EXPECT_EQ(netlist.getFamily(), FAMILY_NONE);
  readXrf("(VERSION 1)\n(FAMILY T)\n");
  EXPECT_EQ(netlist.getFamily(), TORVAL7);
}

TEST_F(NetlistXrfTest, FileWithoutFamilySetsNone) {
  readXrf(header(""));
  EXPECT_EQ(netlist.getFamily(), FAMILY_NONE);
}

TEST_F(NetlistXrfDeathTest, UnknownFamily) {
  const std::string text = "(VERSION 1)\n(FAMILY XTORVAL7)\n";
  const test::TempFile xrf(text);
  EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), "Unknown family: 'XTORVAL7)'!\n");
  expectPrintedAt(text, "Unknown family: 'XTORVAL7)'!\n", "(FAMILY");
}

TEST_F(NetlistXrfTest, OtherVersionWarnsAndReadingGoesOn) {
  readXrf("(VERSION 2)\n(BITS 1)\n(BIT 0 ? z)\n");
  EXPECT_EQ(
      err,
      "WARNING: The .xrf file format version (2) and sofware format version (1) do not match.\n");
  EXPECT_EQ(Bit::getAllBits().size(), 1U);
}

TEST_F(NetlistXrfTest, MissingVersionWarnsWithZero) {
  readXrf("");
  EXPECT_EQ(
      err,
      "WARNING: The .xrf file format version (0) and sofware format version (1) do not match.\n");
  EXPECT_EQ(out,
            "Parsing xrf file: " + path + " ...\nParsing xrf file: " + path + " complete.\n\n");
  EXPECT_EQ(netlist.getTop(RTL), nullptr);
}

// Lines

TEST_F(NetlistXrfTest, LeadingBlanksAndEmptyLinesAreStripped) {
  readXrf("\n \t\r\n (VERSION 1)\n\t(BITS 1)\n\r(NETS 0)\n  \t (BIT 0 ? z)\n\n");
  EXPECT_EQ(err, "");
  EXPECT_EQ(Bit::getAllBits().size(), 1U);
}

TEST_F(NetlistXrfTest, LineEndsOfWindows) {
  std::string text = kSmall;
  test::replaceAll(text, "\n", "\r\n");
  readXrf(text);
  EXPECT_EQ(err, "");
  EXPECT_EQ(range("/top/q"), "0..1");
  EXPECT_EQ(bit("/top/q", 0, SYNTH)->getStateLoc1(), 5U);
}

TEST_F(NetlistXrfDeathTest, AnythingElseIsASyntaxError) {
  for (const std::string line : {"rubbish here", "(BLT 0 ? z)", "(VERSION x)", ")", "(NETS )",
                                 "(MOD VISIBLE d u)", "(BIT x ? z)"}) {
    const std::string text = header("\n   " + line + "\n");
    const test::TempFile xrf(text);
    const std::string message = "Unexpected syntax encountered.\n " + line + "\n";
    EXPECT_ENDS_AFTER_PROGRESS(netlist.parse_xrf(xrf.path()), message);
    expectPrintedAt(text, message, "   " + line);
  }
}

TEST_F(NetlistXrfDeathTest, FileThatCannotBeOpened) {
  const std::string missing = test::TempFile().missing();
  EXPECT_ENDS_WITH(netlist.parse_xrf(missing), "Can't open file " + missing + "\n");
  run([&] { netlist.parse_xrf(missing); });
  expectPrinted("Can't open file " + missing + "\n");
  EXPECT_EQ(out, "");
}

TEST_F(NetlistXrfTest, NamesLongerThanAThousandBytes) {
  const std::string name(5000, 'n');
  readXrf(file("(MOD VISIBLE d top 7\n(SIG VISIBLE WIRE " + name + " 12 1 0 0 3))\n"));
  EXPECT_EQ(range("/top/" + name), "0..0");
}

// Lines that follow one another are looked at together, but each has its turn.
TEST_F(NetlistXrfTest, FaultInARowOfSignalsIsToldAtItsLine) {
  std::string row = "(MOD VISIBLE top top 0\n";
  for (int number = 0; number < 30; ++number) {
    const std::string digits = std::to_string(number);
    row += number % 7 == 3 ? "\n   \n" : "";
    row += "   (SIG VISIBLE WIRE s" + digits + " 1" + digits + " 0 0 0 " +
           std::to_string(number % 4) + ")\n";
  }
  for (int number = 0; number < 30; ++number) {
    SCOPED_TRACE(number);
    const std::string text = file(row);
    const std::string name = "s" + std::to_string(number) + " ";
    const std::size_t at = text.find(" 0 0 0 ", text.find(name));
    std::string broken = text;
    broken.replace(at, 3, " 9 ");
    expectErrorAt(broken, name);
  }
  readXrf(file(row));
  for (int number = 0; number < 30; ++number) {
    EXPECT_EQ(idOf("/top/s" + std::to_string(number), 0), number % 4);
  }
}

TEST_F(NetlistXrfTest, RepeatedBitTakesThePlaceOfTheFirst) {
  readXrf(
      file("(BIT 1 CNST 1)\n(MOD VISIBLE top top 0\n(SIG VISIBLE WIRE a 1 0 0 0 1)\n"
           "(BIT 1 CNST 0)\n(SIG VISIBLE WIRE b 2 0 0 0 1)\n"));
  EXPECT_EQ(bit("/top/a", 0)->getValueStr(false), "1");
  EXPECT_EQ(bit("/top/b", 0)->getValueStr(false), "0");
  EXPECT_EQ(Bit::getAllBits().size(), 6U);
}

TEST_F(NetlistXrfTest, BitsBelowASmallerCountOutliveALargerOne) {
  const std::string counts = "(BITS 2)\n(BITS 9)\n(BIT 1 CNST 0)\n(BIT 3 CNST 1)\n";
  const std::string top = "(MOD VISIBLE top top 0\n";
  readXrf(file(counts + top + "(SIG VISIBLE WIRE a 1 0 0 0 0)\n(SIG VISIBLE WIRE b 2 0 0 0 1)\n" +
               "(SIG VISIBLE WIRE c 3 0 0 0 3)\n"));
  EXPECT_EQ(bit("/top/a", 0), *Bit::getAllBits().begin());
  EXPECT_EQ(bit("/top/b", 0)->getValueStr(false), "0");
  EXPECT_EQ(bit("/top/c", 0)->getValueStr(false), "1");
  resetModel();
  Netlist fresh;
  const test::TempFile forgotten(file(counts + top + "(SIG VISIBLE WIRE a 1 0 0 0 2)\n"));
  path = forgotten.path();
  run([&] { fresh.parse_xrf(path); });
  EXPECT_TRUE(fatal);
}

// Hostile files

class XrfHostileTest : public NetlistXrfTest {};

TEST_F(XrfHostileTest, FileCutAtAnyByte) {
  for (std::size_t size = 0; size <= kSmall.size(); ++size) {
    resetModel();
    Netlist fresh;
    const std::string cut = kSmall.substr(0, size);
    const test::TempFile xrf(cut);
    path = xrf.path();
    run([&] { fresh.parse_xrf(path); });
    if (!fatal) continue;
    EXPECT_FALSE(fatal->text.empty()) << cut;
    EXPECT_EQ(fatal->file, path) << cut;
    EXPECT_EQ(fatal->line, lineOf(cut + '$', "$")) << cut;
  }
}

TEST_F(XrfHostileTest, BitBeyondTheDeclaredCount) {
  expectErrorAt(header("(BIT 4 ? z)\n(BIT 5 ? z)\n"), "(BIT 5");
}

TEST_F(XrfHostileTest, BitBeforeAnyCount) {
  expectErrorAt("(VERSION 1)\n(BIT 0 STATE z 1 2 3)\n(BITS 1)\n", "(BIT 0");
}

TEST_F(XrfHostileTest, SignalOfABitBeyondTheCount) {
  expectErrorAt(file("(MOD VISIBLE d top 7\n(SIG VISIBLE IN a 1 0 0 0 5))\n"), "(SIG");
  expectErrorAt(file("(MOD VISIBLE d top 8\n(SIG VISIBLE IN a 1 0 0 1 0 4000000000))\n"), "(SIG");
}

TEST_F(XrfHostileTest, SignalOfAnUndeclaredBit) {
  expectErrorAt(file("(MOD VISIBLE d top 7\n(SIG VISIBLE IN a 1 0 0 0 4))\n"), "(SIG");
  expectErrorAt(file("(MOD VISIBLE d top 8\n(SIG VISIBLE IN a 1 0 0 1 0 4))\n"), "(SIG");
}

TEST_F(XrfHostileTest, MissingBitWhereBitZeroIsUndeclared) {
  expectErrorAt(
      "(VERSION 1)\n(BITS 2)\n(NETS 1)\n(BIT 1 ? z)\n(VIEW RTL)\n(MOD VISIBLE d top 7\n"
      "(SIG VISIBLE IN a 1 0 0 2 1 1 NULL))\n",
      "(SIG");
}

TEST_F(XrfHostileTest, NetBeyondTheDeclaredCount) {
  expectErrorAt(file("(MOD VISIBLE d top 7\n(SIG VISIBLE IN a 1 2 0 0 3))\n"), "(SIG");
  expectErrorAt(file("(MOD VISIBLE d top 8\n(SIG VISIBLE IN a 1 4294967295 0 0 3))\n"), "(SIG");
}

TEST_F(XrfHostileTest, SignalBeforeAnyView) {
  expectErrorAt(header("(BIT 0 ? z)\n\n(SIG VISIBLE IN a 1 0 0 0 0)\n"), "(SIG");
}

TEST_F(XrfHostileTest, ModuleBeforeAnyView) {
  expectErrorAt(header("(BIT 0 ? z)\n\n(MOD VISIBLE d top 1\n"), "(MOD");
}

TEST_F(XrfHostileTest, MoreBitNumbersThanTheRangeHas) {
  expectErrorAt(file("(MOD VISIBLE d top 7\n(SIG VISIBLE IN a 1 0 0 1 0 1 2))\n"), "(SIG");
  expectErrorAt(file("(MOD VISIBLE d top 8\n(SIG VISIBLE IN a 1 0 0 0 0 1))\n"), "(SIG");
  expectErrorAt(file("(MOD VISIBLE d top 9\n(SIG VISIBLE IN a 1 0 3 2 0 1))\n"), "(SIG");
}

TEST_F(XrfHostileTest, TooManyClosingParentheses) {
  expectErrorAt(file("(MOD VISIBLE d top 7\n(SIG VISIBLE IN a 1 0 0 0 2)))))\n"), "(SIG");
  expectErrorAt(file("(MOD VISIBLE d top 8\n(SIG VISIBLE IN a 1 0 0 0 2)))\n"
                     "(SIG VISIBLE IN b 2 0 0 0 2)\n"),
                "(SIG VISIBLE IN b");
}

TEST_F(XrfHostileTest, AbsurdCounts) {
  for (const char* record :
       {"(BITS 4294967295)", "(NETS 4294967295)", "(BITS 99999999999999999999)",
        "(NETS 2147483647)", "(BITS -1)", "(NETS -1)"}) {
    const std::string text = std::string("(VERSION 1)\n\n") + record + "\n";
    expectErrorAt(text, record);
  }
}

TEST_F(XrfHostileTest, NegativeNumbers) {
  for (const char* record :
       {"(BIT -1 ? z)", "(SIG VISIBLE IN a 1 -1 0 0 0)", "(SIG VISIBLE IN a 1 0 -1 -1 0)",
        "(SIG VISIBLE IN a 1 0 -1 1 0 0 0)", "(SIG VISIBLE IN a 1 0 0 0 -1)",
        "(SIG VISIBLE IN a 1 0 0 -1 0 0)", "(SIG VISIBLE IN a 1 0 0 1 0 -1)"}) {
    resetModel();
    Netlist fresh;
    const std::string text = file(std::string("(MOD VISIBLE d top 7\n") + record + "\n");
    const test::TempFile xrf(text);
    path = xrf.path();
    run([&] { fresh.parse_xrf(path); });
    ASSERT_TRUE(fatal) << record;
    expectFatalAt(lineOf(text, record));
  }
}

TEST_F(XrfHostileTest, AbsurdRanges) {
  for (const char* record :
       {"(SIG VISIBLE IN a 1 0 0 4294967295 0 1)", "(SIG VISIBLE IN a 1 0 4294967295 4294967295 0)",
        "(SIG VISIBLE IN a 1 0 0 4294967296 0 1)",
        "(SIG VISIBLE IN a 1 0 2147483648 2147483649 0 1)"}) {
    resetModel();
    Netlist fresh;
    const std::string text = file(std::string("(MOD VISIBLE d top 7\n") + record + "\n");
    const test::TempFile xrf(text);
    path = xrf.path();
    run([&] { fresh.parse_xrf(path); });
    if (fatal) expectFatalAt(lineOf(text, record));
  }
}

TEST_F(XrfHostileTest, ModulesNestedWithoutEnd) {
  readAny(file(repeat("(MOD VISIBLE d m 1\n", 100000)));
  ASSERT_TRUE(fatal);
  EXPECT_FALSE(fatal->text.empty());
  EXPECT_EQ(fatal->file, path);
  EXPECT_GT(fatal->line, lineOf(file("$"), "$"));
}

TEST_F(XrfHostileTest, SecondDeclarationsAndSecondBits) {
  readAny(header("(BIT 0 ? z)\n(BIT 0 CNST 1)\n(BITS 1)\n(NETS 0)\n(BITS 5)\n(NETS 5)\n"));
  if (!fatal) return;
  EXPECT_EQ(fatal->file, path);
}

TEST_F(XrfHostileTest, BitsForgottenByASecondCount) {
  readAny(
      header("(BIT 4 ? z)\n(BITS 1)\n(BITS 5)\n(VIEW RTL)\n(MOD VISIBLE d top 1\n"
             "(SIG VISIBLE IN a 1 0 0 0 4))\n"));
  if (fatal) expectFatalAt(9);
}

TEST_F(XrfHostileTest, LongLinesAndNulBytes) {
  using namespace std::string_literals;
  const std::string mega(5U << 20U, 'x');
  for (const std::string& record :
       {mega, "(SIG "s + mega, "(MOD VISIBLE d "s + mega + " 3", "(VIEW R"s + mega,
        "(FAMILY T"s + mega, "(BIT 0 ? z\0)"s, "\0\0\0"s, "(MOD VISIBLE d a\0b 3"s,
        "(SIG VISIBLE IN a 1 0 0 0 0"s + std::string(5U << 20U, ')'),
        "(SIG VISIBLE IN a 1 0 0 0 "s + repeat("0 ", 1U << 20U) + ")"}) {
    resetModel();
    Netlist fresh;
    const std::string text = file("(MOD VISIBLE d top 7\n" + record + "\n");
    const test::TempFile xrf(text);
    path = xrf.path();
    run([&] { fresh.parse_xrf(path); });
    if (fatal) expectFatalAt(lineOf(text, record));
  }
}

TEST_F(XrfHostileTest, DirectoryIsAnError) {
  const test::TempFile anything;
  run([&] { netlist.parse_xrf(anything.folder()); });
  ASSERT_TRUE(fatal);
  EXPECT_FALSE(fatal->text.empty());
}

TEST_F(XrfHostileTest, NetlistInsteadOfACrossReferenceFile) {
  expectErrorAt("\n(edif netlist (edifversion 2 0 0)\n", "(edif");
}

}  // namespace
