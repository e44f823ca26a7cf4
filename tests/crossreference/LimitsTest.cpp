#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <algorithm>
#include <limits>
#include <string>

using namespace XRF_RTL2LL;
using edif::array;
using edif::cell;
using edif::input;
using edif::instance;
using edif::net;
using edif::pin;
using edif::port;
using edif::top;
using test::lineOf;
using test::repeat;

namespace {

using Limit = std::uint64_t Limits::*;

/// A file that needs a limit to be just what it is, and one that is lower refuses.
class LimitsTest : public test::ReadingTest {
 protected:
  enum Kind { Edif, Xrf };

  void readWithin(const Limits& limits, const std::string& text, Kind kind) {
    resetModel();
    Design design;
    design.setLimits(limits);
    const test::TempFile file(text, kind == Edif ? "netlist.edf" : "model.xrf");
    path = file.path();
    run([&] { kind == Edif ? design.parse_rtl(path) : design.parse_xrf(path); });
  }
  void readWithin(Limit limit, std::uint64_t most, const std::string& text, Kind kind) {
    Limits limits;
    limits.*limit = most;
    readWithin(limits, text, kind);
  }

  /// `most` reads the text; one less is refused at the line on which `place` begins.
  void expectBound(Limit limit, std::uint64_t most, const std::string& text,
                   const std::string& place, const std::string& message, Kind kind = Edif) {
    readWithin(limit, most, text, kind);
    ASSERT_FALSE(fatal) << fatal->text;
    readWithin(limit, most - 1, text, kind);
    expectRefused(message);
    expectFatalAt(lineOf(text, place));
  }
  void expectRefused(const std::string& message) const {
    ASSERT_TRUE(fatal);
    EXPECT_NE(fatal->text.find(message), std::string::npos) << fatal->text;
    EXPECT_NE(fatal->text.find(path + ":"), std::string::npos) << fatal->text;
    EXPECT_TRUE(fatal->printed);
    EXPECT_EQ(err, fatal->text);
  }

  /// The smallest value of a limit with which the text is read.
  std::uint64_t needed(Limit limit, const std::string& text, std::uint64_t most, Kind kind) {
    std::uint64_t refused = 0;
    while (refused + 1 < most) {
      const std::uint64_t middle = refused + (most - refused) / 2;
      readWithin(limit, middle, text, kind);
      (fatal ? refused : most) = middle;
    }
    return most;
  }

  /// Instances inside instances, each of a name of so many bytes.
  static std::string chain(unsigned levels, std::size_t nameLength) {
    const std::string name(nameLength, 'n');
    std::string cells = cell("c0", input("a"));
    for (unsigned level = 1; level < levels; ++level) {
      const std::string below = "c" + std::to_string(level - 1);
      cells += cell("c" + std::to_string(level), "", instance(name, below));
    }
    return top("", instance("u", "c" + std::to_string(levels - 1)), cells);
  }
};

TEST_F(LimitsTest, WordLength) {
  const std::string word(40, 'w');
  expectBound(&Limits::wordLength, 40, top(input("a"), "\n" + net(word, pin("a"))), "(net www",
              "A word is longer than 39 bytes.");
  expectBound(&Limits::wordLength, 40, top(input("a"), "\n(comment \"" + word + "\")"),
              "(comment \"www", "A word is longer than 39 bytes.");
}

TEST_F(LimitsTest, ListNesting) {
  const std::string text = top(input("a"), "\n" + repeat("(x ", 20) + repeat(")", 20));
  std::int64_t depth = 0;
  std::int64_t deepest = 0;
  for (const char byte : text) {
    if (byte == '(') deepest = std::max(deepest, ++depth);
    if (byte == ')') --depth;
  }
  const auto most = static_cast<std::uint64_t>(deepest);
  expectBound(&Limits::listNesting, most, text, "(x (x",
              "Lists are nested more than " + std::to_string(deepest - 1) + " deep.");
}

TEST_F(LimitsTest, ElaborationNesting) {
  // Around the forms: edif, design and cellref, then view and contents of the cell.
  const std::string text = top(input("a"), "\n" + repeat("(x ", 20) + repeat(")", 20));
  expectBound(&Limits::elaborationNesting, 25, text, "(x (x",
              "Lists and instances are nested more than 24 deep.");
}

TEST_F(LimitsTest, ElaborationNestingOfCopiedCells) {
  // The second instance of a cell of nothing but ports is copied, as deep as the cell would lie.
  const std::string text =
      top("", instance("u", "c") + "(x (y (z " + "\n" + instance("v", "c") + ")))",
          cell("c", input("a")));
  const std::uint64_t most = needed(&Limits::elaborationNesting, text, 100, Edif);
  expectBound(&Limits::elaborationNesting, most, text, "(interface (port a",
              "Lists and instances are nested more than " + std::to_string(most - 1) + " deep.");
}

TEST_F(LimitsTest, ModuleNesting) {
  const std::string cells = cell("b", input("a")) + cell("c", "", "\n\n" + instance("inner", "b"));
  expectBound(&Limits::moduleNesting, 3, top("", instance("u", "c"), cells), "(instance inner",
              "Modules are nested more than 2 deep.");
}

TEST_F(LimitsTest, Instances) {
  const std::string uses = instance("u", "c") + instance("v", "c") + "\n\n" + instance("w", "c");
  expectBound(&Limits::instances, 4, top("", uses, cell("c", input("a"))), "(instance w",
              "The view holds more than 3 modules.");
}

TEST_F(LimitsTest, Objects) {
  // The top, a signal of one bit, and one of five.
  expectBound(&Limits::objects, 1 + 2 + 6,
              top(input("a") + "\n" + port(array("d", "5"), "INPUT"), ""), "(array d",
              "The view holds more than 8 modules, signals and bits.");
}

TEST_F(LimitsTest, ObjectsOfCopiedCells) {
  const std::string uses = instance("u", "c") + instance("v", "c");
  const std::string cells = cell("c", "\n" + input("a"));
  expectBound(&Limits::objects, 1 + 3 + 3, top("", uses, cells), "(port a (direction INPUT))\n",
              "The view holds more than 6 modules, signals and bits.");
}

TEST_F(LimitsTest, ObjectsPerWord) {
  const auto text = [](std::uint64_t width) {
    return top("\n" + port(array("d", std::to_string(width)), "INPUT"), "");
  };
  readWithin(&Limits::objectsPerWord, 0, text(Limits::objectsBase - 2), Edif);
  ASSERT_FALSE(fatal) << fatal->text;
  readWithin(&Limits::objectsPerWord, 0, text(Limits::objectsBase - 1), Edif);
  expectRefused(" words of the netlist expand to more than 1048576 modules, signals and bits.");
  expectFatalAt(lineOf(text(1), "(port (array d"));
  readWithin(&Limits::objectsPerWord, 1, text(Limits::objectsBase - 1), Edif);
  EXPECT_FALSE(fatal);
}

TEST_F(LimitsTest, CellsThatMultiplyTenfoldEndSoon) {
  std::string cells = cell("c0", input("a"));
  for (int level = 1; level <= 12; ++level) {
    std::string uses;
    for (int at = 0; at < 10; ++at) {
      uses += instance("u" + std::to_string(at), "c" + std::to_string(level - 1));
    }
    cells += cell("c" + std::to_string(level), "", uses);
  }
  readWithin(Limits(), top("", instance("u", "c12"), cells), Edif);
  expectRefused(" words of the netlist expand to more than ");
  EXPECT_LT(Signal::getAllSignals().size(), 2 * Limits::objectsBase);
}

TEST_F(LimitsTest, PathBytes) {
  const std::string text = chain(200, 1000);
  const std::uint64_t most =
      needed(&Limits::pathBytesPerObject, text, Limits::highest().pathBytesPerObject, Edif);
  EXPECT_GT(most, Limits().pathBytesPerObject);
  readWithin(&Limits::pathBytesPerObject, most - 1, text, Edif);
  expectRefused("The paths of the modules take up more than ");
  EXPECT_GE(fatal->line, lineOf(text, "(cell c1 "));
}

TEST_F(LimitsTest, Work) {
  std::string uses;
  for (int at = 0; at < 6000; ++at) uses += "(instance u" + std::to_string(at) + " (cellref j))";
  const std::string text = top("", uses, cell("j", "", "\n" + repeat("(a (b c)) ", 2000)));
  const std::uint64_t most = needed(&Limits::workPerObject, text, Limits().workPerObject, Edif);
  EXPECT_GT(most, 0U);
  readWithin(&Limits::workPerObject, most - 1, text, Edif);
  expectRefused("The cells hold too much beside the ");
  EXPECT_GE(fatal->line, lineOf(text, "(cell j"));
}

TEST_F(LimitsTest, SignalIndex) {
  const std::string text = top(input("in"), "\n\n" + net("a[7]", pin("in")));
  expectBound(&Limits::signalIndex, 7, text, "(net a[7]",
              "Index 7 of signal a is above the highest index, 6.");
  const std::string reg = top("", "\n\n" + instance("x_reg[9]", "RTL_REG"));
  expectBound(&Limits::signalIndex, 9, reg, "(instance x_reg",
              "Index 9 of signal x is above the highest index, 8.");
}

TEST_F(LimitsTest, HighestSignalIndex) {
  readWithin(Limits(), top(input("in"), net("a[2147483646]", pin("in"))), Edif);
  EXPECT_FALSE(fatal);
  const std::string text = top(input("in"), "\n\n" + net("a[2147483647]", pin("in")));
  Limits more;
  more.signalIndex = std::numeric_limits<std::uint64_t>::max();
  readWithin(more, text, Edif);
  expectRefused("Index 2147483647 of signal a is above the highest index, 2147483646.");
  expectFatalAt(lineOf(text, "(net a["));
}

TEST_F(LimitsTest, SignalWidth) {
  expectBound(&Limits::signalWidth, 8, top("\n" + port(array("d", "8"), "INPUT"), ""), "(array d",
              "The array d has a width of 8; 1 to 7 is possible.");
  const std::string nets = net("a[3]", pin("in")) + "\n\n" + net("a[10]", pin("in"));
  expectBound(&Limits::signalWidth, 8, top(input("in"), nets), "(net a[10]",
              "Signal a from 3 to 10 is wider than 7 bits.");
}

TEST_F(LimitsTest, LimitsHoldForTheOtherViewToo) {
  resetModel();
  Design design(Matching::Extended);
  Limits limits;
  limits.signalIndex = 3;
  design.setLimits(limits);
  const test::TempFile file(top(input("in"), net("a[4]", pin("in"))), "synth.edf");
  run([&] { design.parse_synth(file.path()); });
  ASSERT_TRUE(fatal);
  EXPECT_NE(fatal->text.find("highest index, 3."), std::string::npos);
}

// Cross-reference files

const std::string crossReference =
    "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 4)\n(NETS 1)\n(BIT 0 ? z)\n(BIT 1 ? z)\n(BIT 2 ? z)\n"
    "(BIT 3 ? z)\n\n(VIEW RTL)\n\n(MOD VISIBLE t t 0\n\n   (SIG VISIBLE WIRE a 1 0 2 5 0 1 2 3)\n"
    "   (MOD VISIBLE u u 2\n      (MOD VISIBLE v v 3\n         (SIG VISIBLE WIRE b 1 0 0 0 0))))\n";

TEST_F(LimitsTest, ModuleNestingOfACrossReference) {
  expectBound(&Limits::moduleNesting, 3, crossReference, "      (MOD VISIBLE v",
              "Modules are nested more than 2 deep.", Xrf);
}

TEST_F(LimitsTest, InstancesOfACrossReference) {
  expectBound(&Limits::instances, 3, crossReference, "      (MOD VISIBLE v",
              "The view holds more than 2 modules.", Xrf);
}

TEST_F(LimitsTest, ObjectsOfACrossReference) {
  expectBound(&Limits::objects, 4 + 3 + 2, crossReference, "         (SIG VISIBLE WIRE b",
              "The view holds more than 8 modules, signals and bits.", Xrf);
}

TEST_F(LimitsTest, SignalIndexOfACrossReference) {
  expectBound(&Limits::signalIndex, 5, crossReference, "   (SIG VISIBLE WIRE a",
              "Index 5 of signal a is above the highest index, 4.", Xrf);
}

TEST_F(LimitsTest, SignalWidthOfACrossReference) {
  expectBound(&Limits::signalWidth, 4, crossReference, "   (SIG VISIBLE WIRE a",
              "Signal a from 2 to 5 is wider than 3 bits.", Xrf);
}

TEST_F(LimitsTest, PathBytesOfACrossReference) {
  const std::string name(1000, 'n');
  std::string text = "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 1)\n(NETS 1)\n(BIT 0 ? z)\n(VIEW RTL)\n";
  for (int level = 0; level < 200; ++level) text += "(MOD VISIBLE t " + name + " 0\n";
  text += "(SIG VISIBLE WIRE a 1 0 0 0 0)" + repeat(")", 200) + "\n";
  const std::uint64_t most =
      needed(&Limits::pathBytesPerObject, text, Limits::highest().pathBytesPerObject, Xrf);
  EXPECT_GT(most, Limits().pathBytesPerObject);
  readWithin(&Limits::pathBytesPerObject, most - 1, text, Xrf);
  expectRefused("The paths of the modules take up more than ");
  EXPECT_GT(fatal->line, 100U);
}

// Only bits that are there count, not those that a line at the head of the file promises.
TEST_F(LimitsTest, PathBytesAreNotBoughtWithDeclaredBits) {
  const auto chain = [](const std::string& bits) {
    std::string text = "(VERSION 1)\n(FAMILY TORVAL7)\n" + bits + "(NETS 1)\n(VIEW RTL)\n";
    const std::string name(3000, 'n');
    for (int level = 0; level < 300; ++level) text += "(MOD VISIBLE t " + name + " 0\n";
    return text;
  };
  const std::string few = chain("(BITS 1)\n(BIT 0 ? z)\n");
  const std::string many = chain("(BITS 1000000)\n(BIT 0 ? z)\n");
  readWithin(&Limits::pathBytesPerObject, Limits().pathBytesPerObject, few, Xrf);
  expectRefused("The paths of the modules take up more than ");
  const std::uint64_t line = fatal->line;
  readWithin(&Limits::pathBytesPerObject, Limits().pathBytesPerObject, many, Xrf);
  expectRefused("The paths of the modules take up more than ");
  EXPECT_EQ(fatal->line, line);
}

// How they are set

TEST_F(LimitsTest, NoneIsSetAboveTheHighest) {
  Limits all;
  all.wordLength = all.listNesting = all.elaborationNesting = all.moduleNesting = all.instances =
      all.objects = all.objectsPerWord = all.pathBytesPerObject = all.workPerObject =
          all.signalIndex = all.signalWidth = all.xmlDepth = all.xmlEntities = all.xmlExpansion =
              std::numeric_limits<std::uint64_t>::max();
  Model model;
  model.setLimits(all);
  const Limits limits = model.getLimits();
  constexpr Limits highest = Limits::highest();
  EXPECT_EQ(limits.wordLength, highest.wordLength);
  EXPECT_EQ(limits.listNesting, highest.listNesting);
  EXPECT_EQ(limits.elaborationNesting, highest.elaborationNesting);
  EXPECT_EQ(limits.moduleNesting, highest.moduleNesting);
  EXPECT_EQ(limits.instances, highest.instances);
  EXPECT_EQ(limits.objects, highest.objects);
  EXPECT_EQ(limits.objectsPerWord, highest.objectsPerWord);
  EXPECT_EQ(limits.pathBytesPerObject, highest.pathBytesPerObject);
  EXPECT_EQ(limits.workPerObject, highest.workPerObject);
  EXPECT_EQ(limits.signalIndex, highest.signalIndex);
  EXPECT_EQ(limits.signalWidth, highest.signalWidth);
  EXPECT_EQ(limits.xmlDepth, highest.xmlDepth);
  EXPECT_EQ(limits.xmlEntities, highest.xmlEntities);
  EXPECT_EQ(limits.xmlExpansion, highest.xmlExpansion);
}

TEST_F(LimitsTest, NestingAtTheHighestLimitsIsAnErrorAndNoOverflow) {
  for (const std::string open : {"(a ", "(instance u ", "(net n (joined "}) {
    readWithin(Limits::highest(), top(input("a"), repeat(open, 100'000) + repeat(")", 200'000)),
               Edif);
    ASSERT_TRUE(fatal) << open;
    EXPECT_EQ(fatal->file, path);
  }
}

TEST_F(LimitsTest, BelongToOneModelUntilItIsReset) {
  Model other;
  Limits few;
  few.instances = 1;
  other.setLimits(few);
  const test::TempFile file(top("", instance("u", "RTL_REG")), "netlist.edf");
  {
    const ModelScope scope(other);
    run([&] { Design().parse_rtl(file.path()); });
    EXPECT_TRUE(fatal);
  }
  run([&] { Design().parse_rtl(file.path()); });
  EXPECT_FALSE(fatal);
  const ModelScope scope(other);
  resetModel();
  EXPECT_EQ(other.getLimits().instances, Limits().instances);
  run([&] { Design().parse_rtl(file.path()); });
  EXPECT_FALSE(fatal);
}

}  // namespace
