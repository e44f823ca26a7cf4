#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <string>

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
using edif::renamed;
using edif::top;
using test::lineOf;
using test::repeat;

namespace {

/// Netlists that no tool writes: each gives a model or an error that names its place.
class EdifHostileTest : public test::ReadingTest {
 protected:
  /// The last read gave a model, or an error in its file.
  void expectModelOrError() const {
    if (!fatal) return;
    EXPECT_FALSE(fatal->text.empty());
    EXPECT_EQ(fatal->file, path);
    EXPECT_GE(fatal->line, 1U);
  }
  void expectError(const std::string& text, const std::string& place, EdifView view = RTL) {
    read(view, text);
    expectFatalAt(lineOf(text, place));
  }
};

TEST_F(EdifHostileTest, NetlistCutAtAnyByteIsAnError) {
  const std::string whole = edif::netlist(
      library("cells", cell("FDRE", input("C") + input("D") + output("Q"))) +
      library("work",
              cell("top", port(array(renamed("d_", "d[1:0]"), "2"), "INPUT") + output("q"),
                   instance("q_reg", "FDRE", edif::property("INIT", "1'b1")) +
                       net(renamed("&1n", "n[3]"), pin(member("d_", "1")) + pin("Q", "q_reg")))) +
      design("top", "top", "(comment \"a \\\" )\")"));
  const std::size_t end = whole.rfind(')');
  for (std::size_t size = 0; size <= end; ++size) {
    const std::string cut = whole.substr(0, size);
    readAlone(SYNTH, cut);
    ASSERT_TRUE(fatal) << cut;
    EXPECT_FALSE(fatal->text.empty()) << cut;
    EXPECT_EQ(fatal->file, path) << cut;
    EXPECT_LE(fatal->line, lineOf(cut + '$', "$")) << cut;
    EXPECT_GE(fatal->line, size == 0 ? 0U : 1U) << cut;
  }
  readAlone(SYNTH, whole);
  EXPECT_FALSE(fatal);
}

TEST_F(EdifHostileTest, EmptyFileIsAnError) {
  for (const char* text : {"", "\n", " \r\n\t"}) {
    read(RTL, text);
    ASSERT_TRUE(fatal);
    EXPECT_FALSE(fatal->text.empty());
    EXPECT_EQ(fatal->file, path);
  }
}

TEST_F(EdifHostileTest, DirectoryIsAnError) {
  const test::TempFile file;
  path = file.folder();
  for (const EdifView view : {RTL, SYNTH}) {
    run([&] { view == RTL ? netlist.parse_rtl(path) : netlist.parse_synth(path); });
    ASSERT_TRUE(fatal);
    EXPECT_FALSE(fatal->text.empty());
    EXPECT_TRUE(fatal->file == path || fatal->text.find(path) != std::string::npos);
  }
}

TEST_F(EdifHostileTest, FormsNestedWithoutEnd) {
  const std::size_t depth = 100000;
  for (const std::string open : {"(a ", "(", "(Library a ", "(portref ", "(member ", "(rename a ",
                                 "(joined ", "(net n ", "(string ", "(design d ", "(port ",
                                 "(property INIT ", "(property note ", "(property (a "}) {
    readAlone(SYNTH, repeat(open, depth) + repeat(")", depth));
    expectModelOrError();
  }
}

TEST_F(EdifHostileTest, FormsNestedWithoutEndInsideACell) {
  const std::size_t depth = 100000;
  for (const std::string open :
       {"(a ", "(instance u ", "(port p ", "(net n (joined ", "(portref a (instanceref ",
        "(property INIT (string ", "(property note (", "(cell c "}) {
    const auto fresh =
        readAlone(SYNTH, top(input("a"), repeat(open, depth) + repeat(")", depth * 2)));
    expectModelOrError();
  }
}

TEST_F(EdifHostileTest, TwoMegabyteWords) {
  const std::string word(2U << 20U, 'w');
  read(RTL, top(input("a"), "\n" + net(word, pin("a"))));
  expectModelOrError();
  EXPECT_EQ(range("/top/" + word), fatal ? "none" : "0..0");
}

TEST_F(EdifHostileTest, TwoMegabyteString) {
  const std::string text(2U << 20U, ' ');
  read(SYNTH, top(input("a"), "(comment \"" + text + "\")" + net("n", pin("a"))));
  expectModelOrError();
}

TEST_F(EdifHostileTest, NulBytes) {
  using namespace std::string_literals;
  for (const std::string& text :
       {"\0"s, "(x a\0b)"s, "(x \"a\0b\")"s, "\0\0(x)"s, "(x)\0"s, std::string(5000, '\0'),
        top(input("a\0b"s), instance("r\0_reg"s, "RTL_REG") + net("d\0[3]"s, pin("a\0b"s)))}) {
    readAlone(RTL, text);
    expectModelOrError();
  }
}

TEST_F(EdifHostileTest, LineEndsOfEitherKindGiveTheSameModel) {
  const std::string interface = port(array(renamed("d_", "d[3:0]"), "4"), "INPUT") + output("q");
  std::string text = top(interface, instance("q_reg", "RTL_REG") +
                                        net("n[2]", pin(member("d_", "1")) + pin("D", "q_reg")));
  const test::TempFile unixFile;
  const test::TempFile dosFile;
  readRtl(text);
  subject.exportDesign(unixFile.path(), true);
  test::replaceAll(text, "\n", "\r\n");
  Model second;
  const ModelScope scope(second);
  Design other;
  const test::TempFile netlistFile(text);
  other.parse_rtl(netlistFile.path());
  other.exportDesign(dosFile.path(), true);
  EXPECT_EQ(unixFile.content(), dosFile.content());
  EXPECT_NE(unixFile.content().find("WIRE n "), std::string::npos);
}

// Numbers

TEST_F(EdifHostileTest, ArrayWidthsThatNoBusHas) {
  for (const std::string width : {"0", "-1", "-2147483648", "4294967295", "4294967296",
                                  "2147483647", "99999999999999999999", "-0"}) {
    const std::string text = top(input("a") + "\n\n" + port(array("d", width), "INPUT"), "");
    const auto fresh = readAlone(RTL, text);
    ASSERT_TRUE(fatal) << width;
    expectFatalAt(lineOf(text, "(array d"));
  }
}

TEST_F(EdifHostileTest, WideBusesAreNoError) {
  readRtl(top(port(array("d", "100000"), "INPUT"), net("n", pin(member("d", "0")))));
  EXPECT_EQ(bit("/top/n"), bit("/top/d", 99999));
}

TEST_F(EdifHostileTest, IndexOfFourBillion) {
  for (const std::string& form :
       {net("a[4000000000]", pin("in")), net("a[4294967295]", pin("in")),
        net("a[2147483648]", pin("in")), instance("a_reg[4000000000]", "RTL_REG"),
        instance("a_reg[3][4294967295]", "RTL_REG"), instance("a_reg[4000000000][3]", "RTL_REG"),
        port(renamed("x", "a[4000000000]"), "INPUT")}) {
    const std::string text = top(input("in"), "\n" + form);
    const auto fresh = readAlone(RTL, text);
    if (fatal) {
      expectFatalAt(lineOf(text, form));
      continue;
    }
    EXPECT_EQ(fresh->findSignal(RTL, "/top/a"), nullptr) << form;
    EXPECT_LT(Bit::getAllBits().size(), 100U) << form;
  }
}

TEST_F(EdifHostileTest, SmallAndLargeIndexOfOneBus) {
  const std::string text =
      top(input("in"), net("a[0]", pin("in")) + "\n" + net("a[3999999999]", pin("in")));
  read(RTL, text);
  if (fatal)
    expectFatalAt(lineOf(text, "(net a[3999999999]"));
  else
    EXPECT_EQ(range("/top/a"), "0..0");
}

TEST_F(EdifHostileTest, MemberIndicesOutsideEverySignal) {
  for (const std::string index : {"-1", "4", "4000000000", "-4000000000", "99999999999999999999"}) {
    const std::string text =
        top(port(array("d", "4"), "INPUT"), "\n" + net("n", pin(member("d", index))));
    const auto fresh = readAlone(RTL, text);
    if (fatal)
      expectFatalAt(lineOf(text, "(member"));
    else
      EXPECT_EQ(fresh->findSignal(RTL, "/top/n"), nullptr) << index;
  }
}

// Cells that never end

TEST_F(EdifHostileTest, CellThatInstantiatesItself) {
  const std::string self = cell("a", input("i"), "\n\n" + instance("again", "a"));
  expectError(top("", instance("u", "a"), self), "(instance again");
}

TEST_F(EdifHostileTest, TopThatInstantiatesItself) {
  expectError(top("", "\n" + instance("u", "top")), "(instance u");
}

TEST_F(EdifHostileTest, CellsThatInstantiateEachOther) {
  const std::string cells = cell("a", "", instance("ua", "b")) +
                            cell("b", "", instance("ub", "c")) +
                            cell("c", "", "\n\n" + instance("uc", "a"));
  expectError(top("", instance("u", "a"), cells), "(instance uc", SYNTH);
}

TEST_F(EdifHostileTest, RecursiveCellThatNobodyUsesIsNoError) {
  readRtl(top(input("a"), "", cell("self", "", instance("u", "self"))));
  EXPECT_EQ(range("/top/a"), "0..0");
}

TEST_F(EdifHostileTest, CellUsedOftenIsNoRecursion) {
  std::string uses;
  for (int i = 0; i < 1000; ++i) uses += instance("u" + std::to_string(i), "sub");
  readRtl(top("", uses, cell("sub", input("a"))));
  EXPECT_EQ(range("/top/u999/a"), "0..0");
}

TEST_F(EdifHostileTest, CellsThatMultiplyTenfoldOverTwelveLevels) {
  std::string cells = cell("c0", input("a"));
  for (int level = 1; level <= 12; ++level) {
    std::string uses;
    for (int i = 0; i < 10; ++i)
      uses += instance("u" + std::to_string(i), "c" + std::to_string(level - 1));
    cells += cell("c" + std::to_string(level), "", uses);
  }
  const std::string text = top("", instance("u", "c12"), cells);
  read(RTL, text);
  ASSERT_TRUE(fatal);
  EXPECT_FALSE(fatal->text.empty());
  EXPECT_EQ(fatal->file, path);
  EXPECT_GE(fatal->line, 1U);
}

TEST_F(EdifHostileTest, EmptyCellsThatMultiplyTwofoldOverFortyLevels) {
  std::string cells = cell("c0", "");
  for (int level = 1; level <= 40; ++level) {
    const std::string below = "c" + std::to_string(level - 1);
    cells += cell("c" + std::to_string(level), "", instance("u", below) + instance("v", below));
  }
  read(RTL, top("", instance("u", "c40"), cells));
  ASSERT_TRUE(fatal);
  EXPECT_EQ(fatal->file, path);
}

// Forms in the wrong place

TEST_F(EdifHostileTest, FormsThatNeedAModuleOutsideAny) {
  for (const std::string& form :
       {input("a"), port(array("d", "4"), "INPUT"), array("d", "4"), instance("u", "FDRE"),
        net("n", pin("a")), net("n[3]", pin("a")), pin("a"), pin("a", "u"), pin(member("d", "1")),
        member("d", "1"), std::string("(instanceref u)"),
        std::string("(cellref top (libraryref work))"), edif::property("INIT", "1'b1"),
        edif::property("IS_D_INVERTED", "1'b1")}) {
    const std::string text =
        edif::netlist(edif::primitives() + library("work", cell("top", "")) + "\n\n" + form);
    const auto fresh = readAlone(SYNTH, text);
    if (fatal) expectFatalAt(lineOf(text, "\n\n" + form) + 2);
  }
}

TEST_F(EdifHostileTest, PortOutsideAnyModuleIsAnError) {
  const std::string text = edif::netlist("\n" + input("a"));
  expectError(text, "(port a");
  expectError(edif::netlist(library("w", "\n" + port(array("d", "4"), "INPUT"))), "(port (array",
              SYNTH);
}

TEST_F(EdifHostileTest, InstanceOutsideAnyModuleIsAnError) {
  const std::string text = edif::netlist(edif::primitives() + "\n" + instance("u", "FDRE"));
  expectError(text, "(instance u");
}

TEST_F(EdifHostileTest, TwoInstancesOfOneIdentifier) {
  const std::string text =
      top("", instance("u", "FDRE") + "\n" + instance(renamed("u", "v"), "FDRE"));
  read(RTL, text);
  expectPrinted("ERROR: (addChild) A child with the id '" + std::to_string(code("u")) +
                "' already exists.\n");
  expectFatalAt(lineOf(text, "(instance (rename"));
}

TEST_F(EdifHostileTest, DesignWithoutACellIsReadStrictlyAndRefusedOtherwise) {
  for (const std::string form : {"(design d\n)", "(design d (property part (string \"p\"))\n)"}) {
    const std::string text = edif::netlist(edif::library("work", cell("top", input("a"))) + form);
    const auto strict = readAlone(RTL, text);
    ASSERT_FALSE(fatal) << fatal->text;
    EXPECT_STREQ(strict->getTop(RTL)->getDefName(), "");
    const test::TempFile file(text, "netlist.edf");
    path = file.path();
    for (const EdifView view : {RTL, SYNTH}) {
      Model model;
      const ModelScope scope(model);
      Design design(Matching::Extended);
      run([&] { view == RTL ? design.parse_rtl(path) : design.parse_synth(path); });
      expectFatalAt(lineOf(text, form) + 1);
      EXPECT_NE(fatal->text.find("The design d names no cell."), std::string::npos);
    }
  }
}

TEST_F(EdifHostileTest, InstanceWithoutACellReadsBackInExtendedReading) {
  const std::string text =
      top(input("a"), "(instance u (comment \"no cell\"))" + net("n", pin("a")));
  const test::TempFile file(text, "netlist.edf");
  const test::TempFile written;
  Model model;
  const ModelScope scope(model);
  Design design(Matching::Extended);
  Design again(Matching::Extended);
  run([&] {
    design.parse_rtl(file.path());
    design.exportDesign(written.path(), true);
    again.parse_xrf(written.path());
  });
  ASSERT_FALSE(fatal) << fatal->text;
  EXPECT_STREQ(design.findModule(RTL, "/top/u")->getDefName(), "_");
  EXPECT_STREQ(again.findModule(RTL, "/top/u")->getDefName(), "_");
}

TEST_F(EdifHostileTest, DesignInsideADesign) {
  read(RTL, top("", design("inner", "FDRE")));
  expectModelOrError();
}

TEST_F(EdifHostileTest, FormsWithoutTheirParts) {
  for (const char* form : {"(array)",
                           "(array d)",
                           "(cell)",
                           "(cellref)",
                           "(cellref FDRE)",
                           "(design)",
                           "(instance)",
                           "(instance u)",
                           "(direction)",
                           "(joined)",
                           "(instanceref)",
                           "(Library)",
                           "(libraryref)",
                           "(member)",
                           "(member a)",
                           "(net)",
                           "(net n)",
                           "(net n a)",
                           "(net n (foo))",
                           "(port)",
                           "(port (array))",
                           "(port (direction INPUT))",
                           "(portref)",
                           "(portref (instanceref u))",
                           "(program)",
                           "(property)",
                           "(property INIT)",
                           "(property INIT 5)",
                           "(property INIT (integer 5))",
                           "(property part)",
                           "(rename)",
                           "(rename a)",
                           "(string)",
                           "()",
                           "(())",
                           "((a) b)",
                           "(instance (rename))",
                           "(portref (foo))",
                           "(portref (member a))",
                           "(instance u (cellref (FDRE)))",
                           "(cell (foo))",
                           "(net (foo) (joined (portref a)))"}) {
    for (const EdifView view : {RTL, SYNTH}) {
      const auto fresh = readAlone(view, top(input("a"), form));
      expectModelOrError();
    }
  }
}

TEST_F(EdifHostileTest, MoreClosingParenthesesThanOpen) {
  read(RTL, edif::netlist("") + ")))))");
  EXPECT_FALSE(fatal);
  read(RTL, "))))");
  expectModelOrError();
}

TEST_F(EdifHostileTest, AnErrorWhileACellIsElaboratedNamesTheLineOfTheCell) {
  const std::string broken = cell("broken", input("a"), "\n\n" + net("n", pin("a") + "label"));
  expectError(top("", "\n\n\n" + instance("u", "broken"), broken), "(net n", RTL);
  expectPrinted("ERROR: unreachable (4)\n");
}

TEST_F(EdifHostileTest, ModelServesAgainAfterAnError) {
  read(RTL, "(x a(b)");
  ASSERT_TRUE(fatal);
  const auto fresh = readAlone(RTL, top(input("a"), ""));
  EXPECT_FALSE(fatal);
  EXPECT_NE(fresh->findSignal(RTL, "/top/a"), nullptr);
}

bool cancel(const char*, std::uint64_t, std::uint64_t, void*) { return false; }

TEST_F(EdifHostileTest, CancelledReadIsFatal) {
  const ProgressHandlerScope scope(cancel);
  std::string nets;
  for (int i = 0; i < 100000; ++i) nets += net("n" + std::to_string(i), pin("a"));
  read(RTL, top(input("a"), nets));
  ASSERT_TRUE(fatal);
  EXPECT_FALSE(fatal->text.empty());
}

}  // namespace
