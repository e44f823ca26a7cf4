#pragma once

#include <crossreference/TokenMap.h>
#include <support/Report.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace XRF_RTL2LL {

/// Cuts the text of a netlist into words, parentheses and quoted strings.
class EdifLexer {
 public:
  struct Lexeme {
    std::string_view text;
    std::size_t offset = 0;
    bool quoted = false;
  };

  explicit EdifLexer(std::string_view text, std::size_t at = 0) : m_text(text), m_at(at) {}

  /// Steps to the next lexeme; false at the end of the text, which drops a word it cuts short. An
  /// illegal character inside a word is fatal.
  bool next(Lexeme& lexeme);
  std::size_t offset() const { return m_at; }

 private:
  bool takeWord(Lexeme& lexeme);
  bool takeString(Lexeme& lexeme);
  void checkLength(std::size_t start) const;

  std::string_view m_text;
  std::size_t m_at;
};

/// A netlist as a stream of word codes that still knows where in the text each word stands.
class EdifTokens {
 public:
  /// Set in the code of a quoted string that is exactly one parenthesis, which is text, not
  /// structure.
  static constexpr std::uint32_t quotedMark = 0x80000000U;

  EdifTokens(std::string_view text, TokenMap& words)
      : m_text(text), m_words(words), m_lexer(text) {}

  /// Reads the whole text.
  void lex();
  std::size_t size() const { return m_codes.size(); }
  std::uint32_t operator[](std::size_t index) const { return m_codes[index]; }
  /// Line and column of a token; of the end of the text for an index beyond the last.
  ReadPlace::Position position(std::size_t index) const;
  /// While `lex` runs, where it stands.
  ReadPlace::Position lexedPosition() const { return positionOf(m_lexer.offset()); }

 private:
  static constexpr std::size_t checkpointDistance = 64;

  void append(const EdifLexer::Lexeme& lexeme);
  ReadPlace::Position positionOf(std::size_t offset) const;

  std::string_view m_text;
  TokenMap& m_words;
  std::vector<std::uint32_t> m_codes;
  std::vector<std::size_t> m_checkpoints;  // offset of every checkpointDistance-th token
  EdifLexer m_lexer;
  unsigned m_nesting = 0;
};

}  // namespace XRF_RTL2LL
