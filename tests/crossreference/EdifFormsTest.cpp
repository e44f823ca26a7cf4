#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <string>
#include <utility>
#include <vector>

using namespace XRF_RTL2LL;
using edif::array;
using edif::cell;
using edif::design;
using edif::input;
using edif::instance;
using edif::library;
using edif::member;
using edif::net;
using edif::output;
using edif::pin;
using edif::port;
using edif::primitives;
using edif::property;
using edif::renamed;
using edif::top;
using test::lineOf;

namespace {

/// Forms that shape the hierarchy: programs, libraries, cells, designs, instances, properties.
class EdifFormsTest : public test::ReadingTest {
 protected:
  void readWithHeader(const std::string& body) { readRtl(edif::netlist(body)); }
};
using EdifFormsDeathTest = EdifFormsTest;

// Header

TEST_F(EdifFormsTest, ProgramTarvonaSetsTheFamily) {
  EXPECT_EQ(netlist.getFamily(), FAMILY_NONE);
  readRtl(top(input("a"), ""));
  EXPECT_EQ(netlist.getFamily(), TORVAL7);
  EXPECT_EQ(err, "");
  EXPECT_EQ(out, "");
}

TEST_F(EdifFormsTest, ProgramDrumlaneIsUnknownAndReadingGoesOn) {
  readRtl(top(input("a"), "", "", "Drumlane"));
  EXPECT_EQ(err, "ERROR: Unknown program 'Drumlane'\n");
  EXPECT_EQ(out, "");
  EXPECT_EQ(netlist.getFamily(), FAMILY_NONE);
  EXPECT_EQ(range("/top/a"), "0..0");
}

TEST_F(EdifFormsTest, ProgramNameIsMatchedWholeAndByCase) {
  readRtl(top(input("a"), "", "", "tarvona"));
  EXPECT_EQ(err, "ERROR: Unknown program 'tarvona'\n");
  readRtl(edif::netlist("", "Tarvona2"));
  EXPECT_EQ(err, "ERROR: Unknown program 'Tarvona2'\n");
  EXPECT_EQ(netlist.getFamily(), FAMILY_NONE);
}

// Forms of no meaning

TEST_F(EdifFormsTest, UnlistedFormsAreDescendedInto) {
  readRtl(top("(wrapper a (wrapper b " + input("c") + "))",
              "(wrapper (page " + net("n", pin("c")) + "))"));
  EXPECT_EQ(range("/top/c"), "0..0");
  ASSERT_NE(bit("/top/n"), nullptr);
  EXPECT_EQ(bit("/top/n"), bit("/top/c"));
  EXPECT_EQ(range("/top/a"), "none");
}

TEST_F(EdifFormsTest, KeywordsAreMatchedByCase) {
  readRtl(top(input("a") + input("b") + "(Port c (direction INPUT))",
              "(Net n (joined " + pin("a") + pin("b") + "))"));
  EXPECT_EQ(range("/top/c"), "none");
  EXPECT_EQ(range("/top/n"), "none");
  EXPECT_EQ(bit("/top/a"), bit("/top/b")) << "the joined form inside still acts";
}

TEST_F(EdifFormsTest, LowerCaseLibraryIsReadLikeAnyForm) {
  readWithHeader("(library work " + cell("top", input("a")) + ")" + design("top", "top"));
  EXPECT_EQ(range("/top/a"), "0..0");
}

TEST_F(EdifFormsTest, OnlyTheFirstExpressionIsRead) {
  readRtl(edif::netlist(library("work", cell("top", input("a")))) + design("top", "top") +
          " words )");
  EXPECT_EQ(netlist.getTop(RTL), nullptr);
  EXPECT_EQ(module("/top"), nullptr);
}

// Design

TEST_F(EdifFormsTest, DesignMakesAnUnnamedRootAndTheTop) {
  readRtl(top(input("a"), ""));
  Module* root = module("/");
  Module* topModule = netlist.getTop(RTL);
  ASSERT_NE(root, nullptr);
  ASSERT_NE(topModule, nullptr);
  EXPECT_STREQ(root->getName(), "");
  EXPECT_STREQ(root->getDefName(), "");
  EXPECT_EQ(root->getId(), 0U);
  EXPECT_EQ(topModule, module("/top"));
  EXPECT_EQ(topModule->getParent(), root);
  EXPECT_EQ(topModule->getPath(), "");
  EXPECT_EQ(topModule->getId(), code("top"));
  EXPECT_EQ(topModule->getKind(), HIER);
  EXPECT_FALSE(topModule->isHidden());
  EXPECT_EQ(netlist.getTop(SYNTH), nullptr);
}

TEST_F(EdifFormsTest, DesignTakesThePrintableNameAndTheIdentifiersCode) {
  readWithHeader(library("work", cell("c", input("a"))) + design(renamed("d_", "d.x"), "c"));
  Module* topModule = netlist.getTop(RTL);
  ASSERT_NE(topModule, nullptr);
  EXPECT_STREQ(topModule->getName(), "d.x");
  EXPECT_STREQ(topModule->getDefName(), "c");
  EXPECT_EQ(topModule->getId(), code("d_"));
  EXPECT_EQ(range("/d.x/a"), "0..0");
}

TEST_F(EdifFormsTest, TheViewsHaveTheirOwnObjects) {
  const std::string text = top(input("a"), "");
  readRtl(text);
  readSynth(text);
  ASSERT_NE(netlist.getTop(SYNTH), nullptr);
  EXPECT_NE(netlist.getTop(SYNTH), netlist.getTop(RTL));
  EXPECT_NE(signal("/top/a", SYNTH), signal("/top/a", RTL));
  EXPECT_NE(bit("/top/a", 0, SYNTH), bit("/top/a", 0, RTL));
}

// Cells and instances

const char* const kInner = "(port i (direction INPUT)) (port o (direction OUTPUT))";

TEST_F(EdifFormsTest, InstanceHasPrintableNameIdentifiersCodeAndCell) {
  readRtl(top(input("a"), instance(renamed("u_2_", "u[2]"), "inner"), cell("inner", kInner)));
  Module* inner = module("/top/u[2]");
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(inner->getId(), code("u_2_"));
  EXPECT_STREQ(inner->getName(), "u[2]");
  EXPECT_STREQ(inner->getDefName(), "inner");
  EXPECT_EQ(inner->getPath(), "/top");
  EXPECT_EQ(inner->getParent(), netlist.getTop(RTL));
  EXPECT_EQ(inner->getKind(), HIER);
  EXPECT_FALSE(inner->isHidden());
  EXPECT_EQ(range("/top/u[2]/i"), "0..0");
  EXPECT_EQ(module("/top/u_2_"), nullptr);
}

TEST_F(EdifFormsTest, PrimitiveInstancesAreHiddenAndHaveTheirKind) {
  readSynth(top("", instance("r", "FDRE") + instance("l", "LUT2") + instance("g", "GND")));
  EXPECT_EQ(module("/top/r", SYNTH)->getKind(), REG);
  EXPECT_EQ(module("/top/l", SYNTH)->getKind(), LOGIC);
  EXPECT_EQ(module("/top/g", SYNTH)->getKind(), GND);
  EXPECT_TRUE(module("/top/r", SYNTH)->isHidden());
  EXPECT_TRUE(module("/top/l", SYNTH)->isHidden());
  EXPECT_TRUE(module("/top/g", SYNTH)->isHidden());
  EXPECT_TRUE(netlist.getTop(SYNTH)->getChildren(true).empty());
  EXPECT_EQ(netlist.getTop(SYNTH)->getChildren(false).size(), 3U);
}

TEST_F(EdifFormsTest, OneInputTableIsABufferInRtlAndLogicInSynth) {
  const std::string text = top("", instance("l", "LUT1"));
  readRtl(text);
  readSynth(text);
  EXPECT_EQ(module("/top/l", RTL)->getKind(), BUF);
  EXPECT_EQ(module("/top/l", SYNTH)->getKind(), LOGIC);
}

TEST_F(EdifFormsTest, UserCellOfUnknownNameIsHierarchical) {
  readSynth(top("", instance("m", "MUXF7"), cell("MUXF7", kInner)));
  EXPECT_EQ(module("/top/m", SYNTH)->getKind(), HIER);
  EXPECT_FALSE(module("/top/m", SYNTH)->isHidden());
}

TEST_F(EdifFormsTest, EachInstanceHasItsOwnContents) {
  const std::string mid = cell("inner", kInner) + cell("mid", kInner, instance("v", "inner"));
  readRtl(top("", instance("u1", "mid") + instance("u2", "mid"), mid));
  ASSERT_NE(signal("/top/u1/v/i"), nullptr);
  ASSERT_NE(signal("/top/u2/v/i"), nullptr);
  EXPECT_NE(signal("/top/u1/v/i"), signal("/top/u2/v/i"));
  EXPECT_NE(bit("/top/u1/v/i"), bit("/top/u2/v/i"));
  EXPECT_EQ(module("/top/u2/v")->getParent(), module("/top/u2"));
  EXPECT_EQ(module("/top/u2/v")->getPath(), "/top/u2");
}

TEST_F(EdifFormsTest, CellMayBeDefinedAfterTheCellThatUsesIt) {
  readWithHeader(library("work", cell("top", "", instance("u", "later")) + cell("later", kInner)) +
                 design("top", "top"));
  EXPECT_EQ(range("/top/u/i"), "0..0");
}

TEST_F(EdifFormsTest, FirstCellOfANameWins) {
  readWithHeader(library("one", cell("c", input("first"))) +
                 library("two", cell("c", input("second"))) +
                 "(design top (cellref c (libraryref two)))");
  EXPECT_EQ(range("/top/first"), "0..0");
  EXPECT_EQ(range("/top/second"), "none");
}

TEST_F(EdifFormsTest, RenamedCellIsRecordedUnderItsIdentifier) {
  readWithHeader(library("work", cell(renamed("c_", "c(1)"), input("a"))) + design("top", "c_"));
  EXPECT_EQ(range("/top/a"), "0..0");
  EXPECT_STREQ(netlist.getTop(RTL)->getDefName(), "c_");
}

TEST_F(EdifFormsTest, CellOutsideAnyLibraryIsRecorded) {
  readWithHeader(cell("c", input("a")) + design("top", "c"));
  EXPECT_EQ(range("/top/a"), "0..0");
}

TEST_F(EdifFormsTest, WhatFollowsTheCellReferenceBelongsToTheInstance) {
  readSynth(top("", instance("r1", "FDRE") + instance("r2", "FDRE", property("INIT", "1'b1"))));
  EXPECT_EQ(module("/top/r1", SYNTH)->getInit(), 0U);
  EXPECT_EQ(module("/top/r2", SYNTH)->getInit(), 1U);
}

TEST_F(EdifFormsTest, InstanceIndexHoldsEveryInstanceByDefinition) {
  using Instance = InstanceRange::value_type;
  const std::string text =
      top("", instance("z", "inner") + instance("r", "FDRE") + instance("a", "inner"),
          cell("inner", kInner));
  readSynth(text);
  std::vector<Instance> all;
  for (const Instance& each : netlist.getInstances(SYNTH)) all.push_back(each);
  const std::vector<Instance> expected{
      {"FDRE", "/top/r"}, {"inner", "/top/z"}, {"inner", "/top/a"}, {"top", "/top"}};
  EXPECT_EQ(all, expected);
  EXPECT_TRUE(netlist.getInstances(SYNTH).contains({"inner", "/top/a"}));
  EXPECT_FALSE(netlist.getInstances(SYNTH).contains({"FDRE", "/top/a"}));
  EXPECT_TRUE(netlist.getInstances(RTL).empty());
}

TEST_F(EdifFormsTest, SecondNetlistDoesNotSeeTheCellsOfTheFirst) {
  readRtl(top("", instance("r", "RTL_REG")));
  read(SYNTH, edif::netlist(library("work", cell("top", "", instance("r", "RTL_REG"))) +
                            design("top", "top")));
  expectPrinted("ERROR: Cell not found 'RTL_REG'\n");
}

TEST_F(EdifFormsTest, SecondNetlistsCellReplacesTheFirstsOfThatName) {
  readRtl(edif::netlist(library("w", cell("top", input("a"))) + design("top", "top")));
  readSynth(edif::netlist(library("w", cell("top", input("b"))) + design("top", "top")));
  EXPECT_EQ(range("/top/a", SYNTH), "none");
  EXPECT_EQ(range("/top/b", SYNTH), "0..0");
  EXPECT_EQ(range("/top/b", RTL), "none");
}

// Properties

struct InitCase {
  const char* text;
  unsigned long value;
};

class EdifInitTest : public EdifFormsTest, public ::testing::WithParamInterface<InitCase> {};

TEST_P(EdifInitTest, ValueIsWidthAndHexadecimalDigits) {
  readSynth(top("", instance("r", "FDRE", property("INIT", GetParam().text))));
  EXPECT_EQ(module("/top/r", SYNTH)->getInit(), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Literals, EdifInitTest,
    ::testing::Values(InitCase{"1'b1", 1}, InitCase{"1'b0", 0},
                      InitCase{"64'h0123456789ABCDEF", 0x0123456789ABCDEF},
                      InitCase{"64'hFFFFFFFFFFFFFFFF", 0xFFFFFFFFFFFFFFFF}, InitCase{"8'hfe", 0xfe},
                      InitCase{"4'b1010", 0x1010},   // binary digits count as hexadecimal ones
                      InitCase{"16'hab12", 0xa},     // "b" separates, wherever it stands
                      InitCase{"16'hAB12", 0xAB12},  // "B" does not
                      InitCase{"12'h0b1", 0}, InitCase{"8 1F", 0x1F}, InitCase{"none", 0},
                      InitCase{"'h12", 0},  // the only number is the width
                      InitCase{"17", 0}));

TEST_F(EdifFormsTest, InitCountsInTheSynthesizedViewOnly) {
  readRtl(top("", instance("r", "FDRE",
                           property("INIT", "1'b1") + property("IS_D_INVERTED", "1'b1") +
                               property("IS_R_INVERTED", "1'b1"))));
  EXPECT_EQ(module("/top/r")->getInit(), 0U);
  EXPECT_FALSE(module("/top/r")->getDInverted());
  EXPECT_FALSE(module("/top/r")->getRSTInverted());
}

TEST_F(EdifFormsTest, InversionOfTheDataInput) {
  readSynth(
      top("", instance("r", "FDRE", property("IS_D_INVERTED", "1'b1")) + instance("s", "FDRE")));
  EXPECT_TRUE(module("/top/r", SYNTH)->getDInverted());
  EXPECT_FALSE(module("/top/r", SYNTH)->getRSTInverted());
  EXPECT_EQ(module("/top/r", SYNTH)->getInit(), 0U);
  EXPECT_FALSE(module("/top/s", SYNTH)->getDInverted());
}

TEST_F(EdifFormsTest, InversionOfClearPresetResetAndSet) {
  for (const char* name :
       {"IS_CLR_INVERTED", "IS_PRE_INVERTED", "IS_R_INVERTED", "IS_S_INVERTED"}) {
    const auto fresh = readAlone(SYNTH, top("", instance("r", "FDRE", property(name, "1'b1"))));
    EXPECT_TRUE(fresh->findModule(SYNTH, "/top/r")->getRSTInverted()) << name;
    EXPECT_FALSE(fresh->findModule(SYNTH, "/top/r")->getDInverted()) << name;
  }
}

TEST_F(EdifFormsTest, InversionNeedsTheValueOne) {
  readSynth(
      top("", instance("r", "FDRE",
                       property("IS_D_INVERTED", "1'b0") + property("IS_R_INVERTED", "2'b11") +
                           property("IS_S_INVERTED", "1"))));
  EXPECT_FALSE(module("/top/r", SYNTH)->getDInverted());
  EXPECT_FALSE(module("/top/r", SYNTH)->getRSTInverted());
}

TEST_F(EdifFormsTest, InversionOfTheClockIsNotRecorded) {
  readSynth(top("", instance("r", "FDRE", property("IS_C_INVERTED", "1'b1"))));
  EXPECT_FALSE(module("/top/r", SYNTH)->getDInverted());
  EXPECT_FALSE(module("/top/r", SYNTH)->getRSTInverted());
}

TEST_F(EdifFormsTest, PartCountsInTheRtlView) {
  readRtl(edif::netlist(library("w", cell("top", input("a"))) +
                        design("top", "top", property("part", "t7-325"))));
  EXPECT_EQ(netlist.getPart(), Part(4));
}

TEST_F(EdifFormsTest, PartIsIgnoredInTheSynthesizedView) {
  readSynth(edif::netlist(library("w", cell("top", input("a"))) +
                          design("top", "top", property("part", "t7-325"))));
  EXPECT_EQ(netlist.getPart(), PART_NONE);
}

TEST_F(EdifFormsTest, OtherPropertiesAreSkippedWhole) {
  const std::string evil = "(property note " + instance("evil", "FDRE") + input("p") +
                           net("n", pin("a")) + "(string \"x\") (owner \"y\"))";
  readSynth(top(input("a"), evil + instance("good", "FDRE")));
  EXPECT_EQ(module("/top/evil", SYNTH), nullptr);
  EXPECT_EQ(range("/top/p", SYNTH), "none");
  EXPECT_EQ(range("/top/n", SYNTH), "none");
  EXPECT_NE(module("/top/good", SYNTH), nullptr);
}

TEST_F(EdifFormsTest, PropertiesOfTheOtherViewAreSkippedWhole) {
  readRtl(top("", "(property INIT " + instance("evil", "FDRE") + ")" + instance("good", "FDRE")));
  EXPECT_EQ(module("/top/evil"), nullptr);
  EXPECT_NE(module("/top/good"), nullptr);
  readSynth(top("", "(property part " + instance("evil", "FDRE") + ")" + instance("good", "FDRE")));
  EXPECT_EQ(module("/top/evil", SYNTH), nullptr);
  EXPECT_NE(module("/top/good", SYNTH), nullptr);
}

TEST_F(EdifFormsTest, PropertyMayCarryMoreThanItsValue) {
  readSynth(top("", instance("r", "FDRE",
                             "(property INIT (string \"1'b1\") (owner \"me\"))" +
                                 property("IS_D_INVERTED", "1'b1")) +
                        instance("s", "FDRE")));
  EXPECT_EQ(module("/top/r", SYNTH)->getInit(), 1U);
  EXPECT_TRUE(module("/top/r", SYNTH)->getDInverted());
  EXPECT_NE(module("/top/s", SYNTH), nullptr);
}

// Fatal errors

TEST_F(EdifFormsDeathTest, CellNotFound) {
  const std::string text = top("", "\n\n" + instance("u", "missing"));
  const test::TempFile file(text);
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR: Cell not found 'missing'\n");
  read(RTL, text);
  expectPrinted("ERROR: Cell not found 'missing'\n");
  expectFatalAt(lineOf(text, "(cellref missing"));
}

TEST_F(EdifFormsDeathTest, DesignBeforeItsCellIsNotFound) {
  const test::TempFile file(
      edif::netlist(design("top", "late") + library("work", cell("late", input("a")))));
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR: Cell not found 'late'\n");
}

TEST_F(EdifFormsDeathTest, InstanceNameIsNoLabel) {
  const std::string text = top("", "\n(instance (array x 2) (cellref FDRE (libraryref cells)))");
  const test::TempFile file(text);
  const std::string message = "Illegal design or instance name. Got type: 2 .\n";
  EXPECT_ENDS_WITH(netlist.parse_synth(file.path()), message);
  read(SYNTH, text);
  expectPrinted(message);
  expectFatalAt(lineOf(text, "(instance (array"));
}

TEST_F(EdifFormsDeathTest, DesignNameIsNoLabel) {
  const test::TempFile file(edif::netlist("(design (property x) (cellref top (libraryref w)))"));
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()),
                   "Illegal design or instance name. Got type: 6 .\n");
}

TEST_F(EdifFormsDeathTest, NumberExpected) {
  const std::string text = top("\n\n\n" + port(array("d", "x8"), "INPUT"), "");
  const test::TempFile file(text);
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR:Token 'x8' is not a number!\n");
  read(RTL, text);
  expectPrinted("ERROR:Token 'x8' is not a number!\n");
  expectFatalAt(lineOf(text, "(port (array d x8"));
}

TEST_F(EdifFormsDeathTest, ParenthesisIsNoNumber) {
  const test::TempFile file(top(port("(array d (integer 8))", "INPUT"), ""));
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR:Token '(' is not a number!\n");
  const test::TempFile closed(top(port("(array d)", "INPUT"), ""));
  EXPECT_ENDS_WITH(netlist.parse_rtl(closed.path()), "ERROR:Token ')' is not a number!\n");
}

TEST_F(EdifFormsDeathTest, MemberIndexIsNoNumber) {
  const test::TempFile file(top(port(array("d", "4"), "INPUT"), net("n", pin(member("d", "one")))));
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR:Token 'one' is not a number!\n");
}

TEST_F(EdifFormsDeathTest, MemberIndexOfMissingSignalIsNoNumber) {
  const test::TempFile file(top("", net("n", pin(member("none", "one")))));
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR:Token 'one' is not a number!\n");
}

TEST_F(EdifFormsTest, NumberMayHaveTrailingTextAndSign) {
  readRtl(top(port(array("d", "8abc"), "INPUT") + port(array("e", "+4"), "INPUT") +
                  port(array("f", "\" 2\""), "INPUT"),
              ""));
  EXPECT_EQ(range("/top/d"), "0..7");
  EXPECT_EQ(range("/top/e"), "0..3");
  EXPECT_EQ(range("/top/f"), "0..1");
}

TEST_F(EdifFormsDeathTest, JoinedElementIsALabel) {
  const std::string text = top(input("a"), "\n(net n (joined " + pin("a") + " a))");
  const test::TempFile file(text);
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR: unreachable (4)\n");
  read(RTL, text);
  expectPrinted("ERROR: unreachable (4)\n");
  expectFatalAt(lineOf(text, "(net n"));
}

TEST_F(EdifFormsDeathTest, JoinedElementIsAnInstance) {
  const test::TempFile file(top("", instance("u", "FDRE") + "(net n (joined (instanceref u)))"));
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR: unreachable (1)\n");
}

TEST_F(EdifFormsDeathTest, JoinedElementIsASignal) {
  const test::TempFile file(top("", "(net n (joined (array x 3)))"));
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR: unreachable (2)\n");
}

TEST_F(EdifFormsDeathTest, NetNameIsNoLabel) {
  const std::string text = top(input("a"), "\n" + net(array("x", "2"), pin("a")));
  const test::TempFile file(text);
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR: Net name is not a LBL\n.");
  read(RTL, text);
  expectPrinted("ERROR: Net name is not a LBL\n.");
  expectFatalAt(lineOf(text, "(net (array"));
}

TEST_F(EdifFormsTest, NetNameIsNotAskedForWithoutReferences) {
  readRtl(top(input("a"), net(array("x", "2"), "") + net("n", pin("a"))));
  EXPECT_EQ(range("/top/n"), "0..0");
}

}  // namespace
