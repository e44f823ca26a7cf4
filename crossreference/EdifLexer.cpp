#include <crossreference/EdifLexer.h>
#include <support/Limits.h>
#include <support/Scan.h>

#include <algorithm>
#include <array>

namespace XRF_RTL2LL {

namespace {

// Bytes at which the inside of a word needs a look.
constexpr std::array<bool, 256> makeWordStops() {
  std::array<bool, 256> stops{};
  for (const char byte : {' ', '\t', '\n', '\v', '\f', '\r', '(', ')', '"', '\\'}) {
    stops[static_cast<unsigned char>(byte)] = true;
  }
  return stops;
}
constexpr std::array<bool, 256> wordStops = makeWordStops();

}  // namespace

bool EdifLexer::next(Lexeme& lexeme) {
  while (true) {
    while (m_at < m_text.size() && isBlank(m_text[m_at])) ++m_at;
    if (m_at == m_text.size()) return false;
    lexeme.offset = m_at;
    lexeme.quoted = false;
    const char byte = m_text[m_at];
    if (byte == '(' || byte == ')') {
      lexeme.text = m_text.substr(m_at++, 1);
      return true;
    }
    const bool whole = byte == '"' ? takeString(lexeme) : takeWord(lexeme);
    if (!whole) return false;
    // An empty string, and an "&" alone, leave no trace.
    if (lexeme.text.empty()) continue;
    return true;
  }
}

bool EdifLexer::takeWord(Lexeme& lexeme) {
  // The prefix of identifiers that begin with a digit.
  if (m_text[m_at] == '&') ++m_at;
  const std::size_t start = m_at;
  while (m_at < m_text.size()) {
    const char byte = m_text[m_at];
    if (!wordStops[static_cast<unsigned char>(byte)]) {
      ++m_at;
      continue;
    }
    if (byte == '\\') {
      m_at = std::min(m_at + 2, m_text.size());
      continue;
    }
    if (byte == '(') fatal("ERROR: Illegal character '(' inside token.\n");
    if (byte == '"') fatal("ERROR: Illegal character '\"' inside token.\n");
    checkLength(start);
    lexeme.text = m_text.substr(start, m_at - start);
    return true;
  }
  return false;
}

bool EdifLexer::takeString(Lexeme& lexeme) {
  const std::size_t start = ++m_at;
  while (m_at < m_text.size() && m_text[m_at] != '"') {
    m_at = std::min(m_at + (m_text[m_at] == '\\' ? 2U : 1U), m_text.size());
  }
  if (m_at == m_text.size()) return false;
  checkLength(start);
  lexeme.text = m_text.substr(start, m_at++ - start);
  lexeme.quoted = true;
  return true;
}

void EdifLexer::checkLength(std::size_t start) const {
  if (m_at - start > limits::wordLength) {
    fatalHere("A word is longer than %llu bytes.",
              static_cast<unsigned long long>(limits::wordLength));
  }
}

void EdifTokens::append(const EdifLexer::Lexeme& lexeme) {
  if (m_codes.size() % checkpointDistance == 0) m_checkpoints.push_back(lexeme.offset);
  // A name ends at a NUL byte, as everywhere that hands names on as C strings.
  const std::string_view word = lexeme.text.substr(0, lexeme.text.find('\0'));
  std::uint32_t code = m_words.getCode(word);
  if (code <= token::Close) {
    if (lexeme.quoted) {
      code |= quotedMark;
    } else if (code == token::Open) {
      if (++m_nesting > limits::listNesting) {
        fatalHere("Lists are nested more than %u deep.", limits::listNesting);
      }
    } else if (m_nesting > 0) {
      --m_nesting;
    }
  }
  m_codes.push_back(code);
}

void EdifTokens::lex() {
  constexpr std::size_t typicalTokenLength = 6;
  constexpr std::size_t reportDistance = std::size_t{1} << 22;
  m_codes.reserve(m_text.size() / typicalTokenLength + 16);
  EdifLexer::Lexeme lexeme;
  for (std::size_t report = 0; m_lexer.next(lexeme); append(lexeme)) {
    if (lexeme.offset < report) continue;
    progress("Reading words", lexeme.offset, m_text.size());
    report = lexeme.offset + reportDistance;
  }
}

ReadPlace::Position EdifTokens::position(std::size_t index) const {
  if (index >= m_codes.size()) return positionOf(m_text.size());
  EdifLexer lexer(m_text, m_checkpoints[index / checkpointDistance]);
  EdifLexer::Lexeme lexeme;
  for (std::size_t at = index % checkpointDistance + 1; at > 0; --at) lexer.next(lexeme);
  return positionOf(lexeme.offset);
}

ReadPlace::Position EdifTokens::positionOf(std::size_t offset) const {
  const std::string_view before = m_text.substr(0, offset);
  const std::size_t start = before.rfind('\n');
  const auto feeds = std::count(before.begin(), before.end(), '\n');
  const std::size_t column = start == std::string_view::npos ? offset + 1 : offset - start;
  return {static_cast<std::uint64_t>(feeds) + 1, column};
}

}  // namespace XRF_RTL2LL
