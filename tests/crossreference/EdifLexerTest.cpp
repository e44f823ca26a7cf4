#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <string>
#include <vector>

using namespace XRF_RTL2LL;
using test::lineOf;

namespace {

class EdifLexerTest : public test::ReadingTest {
 protected:
  using Words = std::vector<std::string>;

  /// The words of a text that no netlist is seeded with, in order of first appearance.
  Words wordsOf(const std::string& text) {
    readRtl(text);
    const unsigned int end = code("end of the words");
    Words words;
    for (unsigned int i = token::Count; i < end; ++i)
      words.push_back(netlist.getTokenMap()->getToken(i));
    return words;
  }
};
using EdifLexerDeathTest = EdifLexerTest;

TEST_F(EdifLexerTest, WordEndsAtClosingParenthesis) {
  EXPECT_EQ(wordsOf("(x (y abc)def)"), (Words{"x", "y", "abc", "def"}));
}

TEST_F(EdifLexerTest, FirstNewWordReceivesCode51) {
  readRtl("(first second)");
  EXPECT_EQ(code("first"), 51U);
  EXPECT_EQ(code("second"), 52U);
}

TEST_F(EdifLexerTest, RepeatedWordKeepsItsCode) {
  EXPECT_EQ(wordsOf("(x a b a x b c)"), (Words{"x", "a", "b", "c"}));
}

TEST_F(EdifLexerTest, WordsDifferByCase) {
  EXPECT_EQ(wordsOf("(x Cell cell CELL)"), (Words{"x", "Cell", "CELL"}));
}

TEST_F(EdifLexerTest, LeadingAmpersandIsDropped) {
  EXPECT_EQ(wordsOf("(x &12 12)"), (Words{"x", "12"}));
}

TEST_F(EdifLexerTest, AmpersandInsideWordStays) {
  EXPECT_EQ(wordsOf("(x a&b &a&b)"), (Words{"x", "a&b"}));
}

TEST_F(EdifLexerTest, EmptyQuotedStringLeavesNoToken) {
  EXPECT_EQ(wordsOf("(x \"\" y)"), (Words{"x", "y"}));
  EXPECT_EQ(code(""), code("y") + 2) << "the empty word had been entered";
}

TEST_F(EdifLexerTest, QuotedStringWithBlankIsOneToken) {
  EXPECT_EQ(wordsOf("(x \"x y\")"), (Words{"x", "x y"}));
}

TEST_F(EdifLexerTest, QuotedStringHoldsParenthesesAndLineFeeds) {
  EXPECT_EQ(wordsOf("(x \"a (b)\nc)\" d)"), (Words{"x", "a (b)\nc)", "d"}));
}

TEST_F(EdifLexerTest, QuotedStringKeepsLeadingAmpersandAndBlanks) {
  EXPECT_EQ(wordsOf("(x \"&a\" \" b \")"), (Words{"x", "&a", " b "}));
}

TEST_F(EdifLexerTest, QuotedStringKeepsBackslashAndTheByteAfterIt) {
  EXPECT_EQ(wordsOf(R"((x "a\"b" "c\\" d))"), (Words{"x", R"(a\"b)", R"(c\\)", "d"}));
}

TEST_F(EdifLexerTest, QuotedStringEndsItsToken) {
  EXPECT_EQ(wordsOf("(x \"a\"\"b\" \"c\"d)"), (Words{"x", "a", "b", "c", "d"}));
}

TEST_F(EdifLexerTest, BackslashProtectsTheByteAfterItInWords) {
  EXPECT_EQ(wordsOf(R"((x a\(b a\)b a\"b a\ b \\ c))"),
            (Words{"x", R"(a\(b)", R"(a\)b)", R"(a\"b)", R"(a\ b)", R"(\\)", "c"}));
}

TEST_F(EdifLexerTest, SixBytesAreWhiteSpace) {
  EXPECT_EQ(wordsOf("(x\ta\nb\vc\fd\re f)"), (Words{"x", "a", "b", "c", "d", "e", "f"}));
}

TEST_F(EdifLexerTest, BytesAbove127BelongToWords) {
  EXPECT_EQ(wordsOf("(x \xc3\xa4\xff)"), (Words{"x", "\xc3\xa4\xff"}));
}

TEST_F(EdifLexerTest, TokenOf32767BytesIsReadWhole) {
  const std::string word(32767, 'w');
  const std::string quoted(32767, ' ');
  EXPECT_EQ(wordsOf("(x " + word + " \"" + quoted + "\")"), (Words{"x", word, quoted}));
}

TEST_F(EdifLexerTest, PartialWordAtEndOfFileIsDropped) {
  EXPECT_EQ(wordsOf("(x) abc"), (Words{"x"}));
}

TEST_F(EdifLexerTest, FinishedWordAtEndOfFileIsKept) {
  EXPECT_EQ(wordsOf("(x) abc "), (Words{"x", "abc"}));
}

TEST_F(EdifLexerTest, LineOfAnErrorCountsLineFeedsInStringsAndAfterBackslashes) {
  const std::string text = "(x \"a\n\nb\" c\\\nd\r\n  e(f)";
  read(RTL, text);
  expectPrinted("ERROR: Illegal character '(' inside token.\n");
  expectFatalAt(lineOf(text, "e(f"));
}

TEST_F(EdifLexerTest, ParenthesisInsideWordNamesItsPlace) {
  read(SYNTH, "(x\n\n a(b)");
  expectPrinted("ERROR: Illegal character '(' inside token.\n");
  expectFatalAt(3);
}

TEST_F(EdifLexerTest, QuoteInsideWordNamesItsPlace) {
  read(RTL, "(x\n a\"b\")");
  expectPrinted("ERROR: Illegal character '\"' inside token.\n");
  expectFatalAt(2);
}

TEST_F(EdifLexerTest, ParenthesisAfterQuotedStringOpensAForm) {
  EXPECT_EQ(wordsOf("(x \"a\"(b c))"), (Words{"x", "a", "b", "c"}));
}

TEST_F(EdifLexerDeathTest, ParenthesisInsideWord) {
  const test::TempFile file("(x a(b))");
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR: Illegal character '(' inside token.\n");
  EXPECT_ENDS_WITH(netlist.parse_synth(file.path()),
                   "ERROR: Illegal character '(' inside token.\n");
}

TEST_F(EdifLexerDeathTest, QuoteInsideWord) {
  const test::TempFile file("(x a\"b\")");
  EXPECT_ENDS_WITH(netlist.parse_rtl(file.path()), "ERROR: Illegal character '\"' inside token.\n");
}

TEST_F(EdifLexerDeathTest, FileThatCannotBeOpened) {
  const std::string missing = test::TempFile().missing();
  const std::string text = "Can't open file " + missing + "\n";
  EXPECT_ENDS_WITH(netlist.parse_rtl(missing), text);
  EXPECT_ENDS_WITH(netlist.parse_synth(missing), text);
  run([&] { netlist.parse_rtl(missing); });
  expectPrinted(text);
}

// A quoted parenthesis has the code of the real one, yet opens and closes nothing.

TEST_F(EdifLexerTest, QuotedClosingParenthesisIsTextInAnyForm) {
  readRtl(edif::top(edif::input("a"),
                    "(comment \")\") (note \")\" \"(\")" + edif::net("n", edif::pin("a"))));
  EXPECT_EQ(bit("/top/n"), bit("/top/a"));
  ASSERT_NE(bit("/top/n"), nullptr);
}

TEST_F(EdifLexerTest, QuotedParenthesisIsTextInForms) {
  readRtl(
      edif::top(edif::input("a"), "(property note (string \")\")) (property part (string \"(\"))" +
                                      edif::net(edif::renamed("p", ")"), edif::pin("a")) +
                                      edif::net("n", edif::pin("a"))));
  EXPECT_EQ(range("/top/)"), "0..0");
  ASSERT_NE(bit("/top/n"), nullptr);
  EXPECT_EQ(bit("/top/n"), bit("/top/)"));
}

TEST_F(EdifLexerTest, QuotedParenthesisInSkippedFormIsText) {
  readSynth(edif::top(edif::input("a"),
                      "(property note \")\" (owner \"(\"))" + edif::net("n", edif::pin("a"))));
  ASSERT_NE(bit("/top/n", 0, SYNTH), nullptr);
}

// "" leaves no token, so a form that wants a text may meet its own closing parenthesis.

TEST_F(EdifLexerTest, EmptyStringFormKeepsTheStructure) {
  readSynth(edif::top(edif::input("a"), edif::instance("r", "FDRE", edif::property("INIT", "")) +
                                            "(property part (string \"\"))" +
                                            edif::net("n", edif::pin("a"))));
  ASSERT_NE(module("/top/r", SYNTH), nullptr);
  EXPECT_EQ(module("/top/r", SYNTH)->getInit(), 0U);
  EXPECT_EQ(range("/top/n", SYNTH), "0..0");
  EXPECT_EQ(range("/top/r/n", SYNTH), "none");
}

TEST_F(EdifLexerTest, EmptyPrintableNameKeepsTheStructure) {
  readRtl(edif::top(edif::input("a"), edif::instance(edif::renamed("r", ""), "FDRE") +
                                          edif::net("n", edif::pin("a"))));
  EXPECT_NE(module("/top/"), nullptr);
  EXPECT_EQ(range("/top/n"), "0..0");
}

TEST_F(EdifLexerTest, EmptyProgramNameIsUnknown) {
  readRtl(edif::top(edif::input("a"), "", "", ""));
  EXPECT_EQ(err, "ERROR: Unknown program ''\n");
  EXPECT_EQ(range("/top/a"), "0..0");
}

}  // namespace
