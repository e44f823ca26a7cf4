#pragma once

#include <crossreference/EdifBytes.h>
#include <support/Limits.h>
#include <support/TextSource.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace XRF_RTL2LL {

/// Cuts the text of a netlist into words, parentheses and quoted strings, and hands them to a sink:
///
///     void open(const char* from);
///     void close(const char* from);
///     void word(std::string_view text, const char* from);
///     void string(std::string_view text, const char* from);
///     void forget();
///
/// `from` is where the lexeme begins, for `offsetOf`. Texts lie in memory until the sink is told to
/// forget them, and EdifLexer::margin bytes after a text's first can be read. An empty string, and
/// an "&" alone, leave no trace. A text ends before its first NUL byte.
class EdifLexer {
 public:
  enum class State : std::uint8_t { Going, Ended, ParenthesisInWord, QuoteInWord, WordTooLong };

  static constexpr std::size_t margin = edifMargin;
  static constexpr std::size_t usualPiece = std::size_t{1} << 18;

  /// Takes words of up to `longestWord` bytes. Starts at an offset of the text, which is read in
  /// pieces of a size.
  explicit EdifLexer(const TextSource& source, std::uint64_t longestWord = Limits().wordLength,
                     std::uint64_t at = 0, std::size_t piece = usualPiece);

  /// Goes on to the first lexeme that begins at `pause` or later, to the end of the text, which
  /// drops a word it cuts short, or to what no text may contain.
  template <class Sink>
  State run(Sink& sink, std::uint64_t pause);
  /// Where the lexer stands: at the lexeme it paused at, or at the illegal byte.
  std::uint64_t offset() const { return offsetOf(m_at); }
  std::uint64_t offsetOf(const char* from) const {
    return m_base + static_cast<std::uint64_t>(from - m_text.get());
  }

 private:
  template <class Sink>
  const char* cut(Sink& sink, const char* limit);
  template <class Sink>
  const char* cutWord(Sink& sink, const char* from);
  template <class Sink>
  const char* cutString(Sink& sink, const char* from);
  template <class Find>
  const char* passEscapes(const char* end, Find find);
  bool isTooLong(const char* text, const char* end) const {
    return static_cast<std::uint64_t>(end - text) > m_longest_word;
  }
  std::string_view textOf(const char* text, const char* end);
  const char* stop(State state, const char* at);
  const char* limitOf(std::uint64_t pause) const;
  bool refill();

  const TextSource& m_source;
  std::uint64_t m_longest_word;
  std::size_t m_capacity;
  std::unique_ptr<char[]> m_text;  // what is in memory of the text, and sentinels after it
  const char* m_at;
  const char* m_end;
  std::uint64_t m_base;  // offset of what is in memory
  State m_state = State::Going;
  bool m_maybe_nul = false;  // whether a NUL byte was passed
};

template <class Sink>
EdifLexer::State EdifLexer::run(Sink& sink, std::uint64_t pause) {
  while (m_state == State::Going) {
    if (const char* rest = cut(sink, limitOf(pause)); rest != nullptr) m_at = rest;
    if (m_state != State::Going || (m_at != m_end && offset() >= pause)) break;
    sink.forget();
    if (!refill()) m_state = State::Ended;
  }
  sink.forget();
  return m_state;
}

/// Null at a fault, after which m_at is what stopped it.
template <class Sink>
const char* EdifLexer::cut(Sink& sink, const char* limit) {
  const char* at = m_at;
  while (true) {
    at = passBlanks(at);
    if (at >= limit) return at;
    const char byte = *at;
    if (byte == '(') {
      sink.open(at++);
    } else if (byte == ')') {
      sink.close(at++);
    } else {
      const char* rest = byte == '"' ? cutString(sink, at) : cutWord(sink, at);
      if (rest == nullptr) return m_state == State::Going ? at : nullptr;
      at = rest;
    }
  }
}

/// The end of a word; null where the text in memory ends in it, and at a fault.
template <class Sink>
const char* EdifLexer::cutWord(Sink& sink, const char* from) {
  // The prefix of identifiers that begin with a digit.
  const char* text = *from == '&' ? from + 1 : from;
  const char* end = findWordStop(text);
  if (isEdif(EdifStringStop, *end)) {
    end = passEscapes(end, findWordStop);
    if (end == m_end) return nullptr;
    if (*end == '"') return stop(State::QuoteInWord, end);
  }
  if (*end == '(') return stop(State::ParenthesisInWord, end);
  if (end == text) return end;
  if (isTooLong(text, end)) return stop(State::WordTooLong, end);
  sink.word(textOf(text, end), from);
  return end;
}

/// The end of a quoted string, past its closing quote; null as for a word.
template <class Sink>
const char* EdifLexer::cutString(Sink& sink, const char* from) {
  const char* text = from + 1;
  const char* end = passEscapes(findStringStop(text), findStringStop);
  if (end == m_end) return nullptr;
  if (end == text) return end + 1;
  if (isTooLong(text, end)) return stop(State::WordTooLong, end);
  sink.string(textOf(text, end), from);
  return end + 1;
}

/// From a place that `find` found to the next that is neither a backslash nor a NUL byte.
template <class Find>
const char* EdifLexer::passEscapes(const char* end, Find find) {
  while (*end != '"' && isEdif(EdifStringStop, *end)) {
    const std::ptrdiff_t passed = *end == '\\' ? 2 : 1;
    if (m_end - end < passed) return m_end;
    m_maybe_nul = m_maybe_nul || end[passed - 1] == '\0';
    end = find(end + passed);
  }
  return end;
}

/// A text without what follows a NUL byte.
inline std::string_view EdifLexer::textOf(const char* text, const char* end) {
  const std::string_view whole(text, static_cast<std::size_t>(end - text));
  if (!m_maybe_nul) return whole;
  m_maybe_nul = false;
  return whole.substr(0, whole.find('\0'));
}

}  // namespace XRF_RTL2LL
