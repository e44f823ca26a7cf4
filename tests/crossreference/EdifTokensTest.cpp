#include "tests/TempFile.h"
#include "tests/TestModel.h"
#include <crossreference/EdifLexer.h>
#include <crossreference/EdifTokens.h>
#include <crossreference/Netlist.h>
#include <support/Limits.h>
#include <support/Scan.h>

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace XRF_RTL2LL {
namespace {

using State = EdifLexer::State;

struct Lexeme {
  char kind;  // of ( ) w s
  std::string text;
  std::uint64_t offset;
  bool operator==(const Lexeme&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Lexeme& lexeme) {
  return out << lexeme.kind << '"' << lexeme.text << "\"@" << lexeme.offset;
}

struct Outcome {
  std::vector<Lexeme> lexemes;
  State state = State::Ended;
  std::uint64_t place = 0;  // of a fault

  void add(char kind, std::string_view text, std::uint64_t offset) {
    lexemes.push_back({kind, std::string(text), offset});
  }
  bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  for (const Lexeme& lexeme : outcome.lexemes) out << lexeme << ' ';
  return out << "state " << static_cast<int>(outcome.state) << " at " << outcome.place;
}

/// The rules, one byte at a time.
class PlainLexer {
 public:
  explicit PlainLexer(std::string_view text) : m_text(text) {}

  Outcome run() {
    while (m_outcome.state == State::Ended && m_at < m_text.size()) {
      const char byte = m_text[m_at];
      if (isBlank(byte)) {
        ++m_at;
      } else if (byte == '(' || byte == ')') {
        m_outcome.add(byte, m_text.substr(m_at, 1), m_at);
        ++m_at;
      } else if (byte == '"') {
        string();
      } else {
        word();
      }
    }
    return m_outcome;
  }

 private:
  void word() {
    const std::size_t from = m_at;
    if (m_text[m_at] == '&') ++m_at;
    const std::size_t start = m_at;
    for (; m_at < m_text.size(); ++m_at) {
      const char byte = m_text[m_at];
      if (byte == '\\') {
        ++m_at;
      } else if (isBlank(byte) || byte == ')') {
        return finish('w', from, start);
      } else if (byte == '(' || byte == '"') {
        return fail(byte == '(' ? State::ParenthesisInWord : State::QuoteInWord);
      }
    }
  }

  void string() {
    const std::size_t from = m_at++;
    for (; m_at < m_text.size(); ++m_at) {
      if (m_text[m_at] == '\\') {
        ++m_at;
      } else if (m_text[m_at] == '"') {
        finish('s', from, from + 1);
        ++m_at;
        return;
      }
    }
  }

  void finish(char kind, std::size_t from, std::size_t start) {
    const std::string_view text = m_text.substr(start, m_at - start);
    if (text.size() > Limits().wordLength) return fail(State::WordTooLong);
    if (!text.empty()) m_outcome.add(kind, text.substr(0, text.find('\0')), from);
  }

  void fail(State state) {
    m_outcome.state = state;
    m_outcome.place = m_at;
  }

  std::string_view m_text;
  std::size_t m_at = 0;
  Outcome m_outcome;
};

/// Copies what the lexer hands out only when it must be forgotten, as late as it is good for.
class Collector {
 public:
  explicit Collector(const EdifLexer& lexer) : m_lexer(lexer) {}

  void open(const char* from) { add('(', {from, 1}, from); }
  void close(const char* from) { add(')', {from, 1}, from); }
  void word(std::string_view text, const char* from) { add('w', text, from); }
  void string(std::string_view text, const char* from) { add('s', text, from); }
  void forget() {
    for (const Held& held : m_held) outcome.add(held.kind, held.text, held.offset);
    m_held.clear();
  }

  Outcome outcome;

 private:
  struct Held {
    char kind;
    std::string_view text;
    std::uint64_t offset;
  };
  void add(char kind, std::string_view text, const char* from) {
    m_held.push_back({kind, text, m_lexer.offsetOf(from)});
  }

  const EdifLexer& m_lexer;
  std::vector<Held> m_held;
};

/// Cuts a text that is read in pieces of a size, pausing at every `step` bytes.
Outcome lexed(std::string_view text, std::size_t piece, std::uint64_t step) {
  const TextSource source{std::string_view(text)};
  EdifLexer lexer(source, Limits().wordLength, 0, piece);
  Collector collector(lexer);
  std::uint64_t pause = step;
  while (lexer.run(collector, pause) == State::Going) {
    EXPECT_GE(lexer.offset(), pause);
    pause = lexer.offset() + step;
  }
  collector.outcome.state = lexer.run(collector, pause);
  if (collector.outcome.state != State::Ended) collector.outcome.place = lexer.offset();
  return collector.outcome;
}

constexpr std::uint64_t never = std::numeric_limits<std::uint64_t>::max();

void expectAsPlain(std::string_view text) {
  const Outcome plain = PlainLexer(text).run();
  for (const std::size_t piece : {1U, 2U, 7U, 16U, 33U, 4096U}) {
    ASSERT_EQ(lexed(text, piece, never), plain) << "pieces of " << piece << ": " << text;
  }
  ASSERT_EQ(lexed(text, 64, 1), plain) << text;
  ASSERT_EQ(lexed(text, 64, 13), plain) << text;
}

class EdifTokensTest : public testing_support::FreshModel {
 protected:
  /// Line and column of an offset, counted from the text's beginning.
  static std::string placeIn(std::string_view text, std::uint64_t offset) {
    std::uint64_t line = 1;
    std::uint64_t column = 1;
    for (std::uint64_t at = 0; at < offset; ++at) {
      ++column;
      if (text[at] != '\n') continue;
      ++line;
      column = 1;
    }
    return std::to_string(line) + ":" + std::to_string(column);
  }
  static std::string placeOf(const EdifTokens& tokens, std::size_t index) {
    const ReadPlace::Position position = tokens.position(index);
    return std::to_string(position.line) + ":" + std::to_string(position.column);
  }
};

TEST(EdifLexerPieces, RandomBytesAreCutAsByThePlainRules) {
  const std::string_view alphabets[] = {"ab ()\"\\&\n", std::string_view("a(\" \0\\)", 7),
                                        "abcdefgh \\", "\"\\a", "( )\t\v\f\r\n$!'&#%*,"};
  std::mt19937 random(7);
  for (const std::string_view alphabet : alphabets) {
    for (int round = 0; round < 400; ++round) {
      std::string text(random() % 150, ' ');
      for (char& byte : text) byte = alphabet[random() % alphabet.size()];
      expectAsPlain(text);
    }
  }
}

TEST(EdifLexerPieces, AnyBytesAreCutAsByThePlainRules) {
  std::mt19937 random(11);
  for (int round = 0; round < 400; ++round) {
    std::string text(random() % 200, ' ');
    for (char& byte : text) byte = static_cast<char>(random() % 256);
    expectAsPlain(text);
  }
}

TEST(EdifLexerPieces, WordsAndStringsOfEveryLength) {
  for (std::size_t before = 0; before < 18; ++before) {
    std::string text(before, ' ');
    for (std::size_t size = 0; size <= 70; ++size) {
      text += "(" + std::string(size, 'x') + " \"" + std::string(size, ' ') + "\"" +
              std::string(size, '\n') + "&" + std::string(size, 'y') + ")";
    }
    expectAsPlain(text);
  }
}

TEST(EdifLexerPieces, EscapesAtEveryPlace) {
  using namespace std::string_literals;
  for (const std::string& escape : {"\\\\"s, "\\\""s, "\\("s, "\\)"s, "\\ "s, "\\\0"s}) {
    for (std::size_t at = 0; at <= 70; ++at) {
      const std::string word = std::string(at, 'a') + escape + std::string(70 - at, 'b');
      expectAsPlain("(" + word + " \"" + word + "\")");
      expectAsPlain("(\"" + word);
      expectAsPlain(word);
    }
  }
}

TEST(EdifLexerPieces, IllegalBytesAtEveryPlace) {
  for (std::size_t at = 1; at <= 70; ++at) {
    for (const char* illegal : {"(", "\""}) {
      expectAsPlain("(ok\n " + std::string(at, 'a') + illegal + "rest)");
    }
  }
}

TEST(EdifLexerPieces, LongestWord) {
  const std::string longest(Limits().wordLength, 'w');
  for (const std::string& text :
       {longest + " ", longest + "w ", "\"" + longest + "\"", "\"" + longest + "w\" ",
        longest + "ww", longest + "w(", "&" + longest + " "}) {
    const Outcome plain = PlainLexer(text).run();
    ASSERT_EQ(lexed(text, 1000, never).state, plain.state);
    ASSERT_TRUE(lexed(text, 1000, never) == plain);
  }
}

TEST_F(EdifTokensTest, EveryTokenKnowsItsWordAndItsPlace) {
  std::mt19937 random(3);
  std::string text;
  while (text.size() < 30000) {
    text += std::string(random() % 3, '\n') + std::string(random() % 20 + 1, ' ') + "(w" +
            std::to_string(random() % 500) + " \"" + std::to_string(random() % 9) + " \n)\" q" +
            std::string(random() % 40, 'q') + ")";
  }
  const Outcome plain = PlainLexer(text).run();
  Netlist netlist;
  const TextSource source{std::string_view(text)};
  EdifTokens tokens(source, *netlist.getTokenMap());
  tokens.lex();
  ASSERT_EQ(tokens.size(), plain.lexemes.size());
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    ASSERT_EQ(netlist.getTokenMap()->getToken(tokens[at]), plain.lexemes[at].text) << at;
  }
  for (std::size_t at = 0; at < tokens.size(); at += at % 64 < 4 || at % 64 > 60 ? 1 : 7) {
    ASSERT_EQ(placeOf(tokens, at), placeIn(text, plain.lexemes[at].offset)) << at;
  }
  EXPECT_EQ(placeOf(tokens, tokens.size()), placeIn(text, text.size()));
}

TEST_F(EdifTokensTest, CodesComeInOrderOfFirstAppearance) {
  std::string text = "(";
  for (int word = 0; word < 5000; ++word) {
    text += " name_" + std::to_string(word * 7919 % 3001) + " q" + std::to_string(word % 10);
  }
  text += ")";
  Netlist netlist;
  const TextSource source{std::string_view(text)};
  EdifTokens tokens(source, *netlist.getTokenMap());
  tokens.lex();
  std::uint32_t next = token::Count;
  for (std::size_t at = 1; at + 1 < tokens.size(); ++at) {
    ASSERT_LE(tokens[at], next);
    if (tokens[at] == next) ++next;
  }
  EXPECT_EQ(next, token::Count + 3001 + 10);
}

TEST_F(EdifTokensTest, MoreTokensThanAChunkHolds) {
  constexpr std::size_t lines = 200'000;
  std::string text = "(";
  for (std::size_t line = 0; line < lines; ++line) text += "a b c\n";
  Netlist netlist;
  text += ")";
  const TextSource source{std::string_view(text)};
  EdifTokens tokens(source, *netlist.getTokenMap());
  tokens.lex();
  ASSERT_EQ(tokens.size(), 3 * lines + 2);
  for (std::size_t at = 1; at <= 3 * lines; ++at) {
    ASSERT_EQ(tokens[at], token::Count + (at - 1) % 3) << at;
  }
  EXPECT_EQ(placeOf(tokens, 3 * lines - 2), std::to_string(lines) + ":1");
}

TEST_F(EdifTokensTest, QuotedParenthesisIsMarked) {
  Netlist netlist;
  const TextSource source{std::string_view("(\"(\" \")\" \"((\" \"(\")")};
  EdifTokens tokens(source, *netlist.getTokenMap());
  tokens.lex();
  ASSERT_EQ(tokens.size(), 6U);
  EXPECT_EQ(tokens[0], token::Open);
  EXPECT_EQ(tokens[1], token::Open | EdifTokens::quotedMark);
  EXPECT_EQ(tokens[2], token::Close | EdifTokens::quotedMark);
  EXPECT_EQ(tokens[3], static_cast<std::uint32_t>(token::Count));
  EXPECT_EQ(tokens[4], tokens[1]);
  EXPECT_EQ(tokens[5], token::Close);
}

TEST_F(EdifTokensTest, PlaceInAFileThatShrankIsNotBeyondIt) {
  const test::TempFile file("(a\n b\n c\n)\n");
  Netlist netlist;
  const TextSource source(file.path());
  EdifTokens tokens(source, *netlist.getTokenMap());
  tokens.lex();
  EXPECT_EQ(placeOf(tokens, 3), "3:2");
  file.write("(a\n");
  EXPECT_EQ(placeOf(tokens, 3), "2:1");
  EXPECT_EQ(placeOf(tokens, 99), "2:1");
}

TEST_F(EdifTokensTest, PlaceInAFileThatBecameIllegalIsThatByteAtMost) {
  const test::TempFile file("(aaaa\n bbbb\n)\n");
  Netlist netlist;
  const TextSource source(file.path());
  EdifTokens tokens(source, *netlist.getTokenMap());
  tokens.lex();
  file.write("(aa(a\n b\"bb\n)\n");
  EXPECT_EQ(placeOf(tokens, 2), "1:4");
}

}  // namespace
}  // namespace XRF_RTL2LL
