#include <crossreference/EdifLexer.h>
#include <crossreference/EdifTokens.h>
#include <crossreference/NamePool.h>
#include <crossreference/WordMemo.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

namespace XRF_RTL2LL {

using State = EdifLexer::State;

/// Turns what the lexer finds into codes. Words that the memo does not know wait until several can
/// be looked up, so that their memory is fetched meanwhile.
class EdifTokens::Writer {
 public:
  Writer(EdifTokens& tokens, const EdifLexer& lexer)
      : m_tokens(tokens), m_lexer(lexer), m_names(tokens.m_words.names()) {}

  void open(const char* from) {
    put(token::Open, from);
    if (m_nesting < outerLists) m_opened[m_nesting] = size() - 1;
    if (++m_nesting > m_tokens.m_limits.listNesting) raiseNesting(from);
  }
  void close(const char* from) {
    put(token::Close, from);
    if (m_nesting == 0 || --m_nesting >= outerLists) return;
    const std::size_t open = m_opened[m_nesting];
    if (size() - open > checkpointDistance) m_tokens.m_ends[open] = size();
  }
  void word(std::string_view text, const char* from) {
    const bool isShort = WordMemo::isShort(text);
    if (isShort) {
      const WordMemo::Key key = WordMemo::keyOf(text.data(), text.size());
      if (const WordMemo::Entry& known = m_memo.at(key); key.is(known)) {
        put(known.code, from);
        return;
      }
    }
    wait(text, from, isShort, 0);
  }
  void string(std::string_view text, const char* from) {
    const bool parenthesis = text == "(" || text == ")";
    if (parenthesis) {
      wait(text, from, false, quotedMark);
    } else {
      word(text, from);
    }
  }
  /// Gives the waiting words their codes.
  void forget();
  void finish() { m_tokens.m_size = size(); }

 private:
  struct Waiting {
    std::string_view text;
    std::uint32_t* place;
    std::uint32_t hash;
    std::uint32_t mark;
    bool isShort;
  };
  static constexpr std::size_t mostWaiting = 32;

  std::size_t size() const {
    return m_tokens.m_checkpoints.size() * checkpointDistance -
           static_cast<std::size_t>(m_stop - m_next);
  }
  void put(std::uint32_t code, const char* from) {
    if (m_next == m_stop) makeRoom(from);
    *m_next++ = code;
  }
  void wait(std::string_view text, const char* from, bool isShort, std::uint32_t mark);
  void makeRoom(const char* from);
  [[noreturn]] void raiseNesting(const char* from);

  EdifTokens& m_tokens;
  const EdifLexer& m_lexer;
  NamePool& m_names;
  // The room up to the next checkpoint.
  std::uint32_t* m_next = nullptr;
  std::uint32_t* m_stop = nullptr;
  std::uint64_t m_nesting = 0;
  std::array<std::size_t, outerLists> m_opened{};
  WordMemo m_memo;
  std::array<Waiting, mostWaiting> m_waiting{};
  std::size_t m_waits = 0;
};

void EdifTokens::Writer::wait(std::string_view text, const char* from, bool isShort,
                              std::uint32_t mark) {
  put(0, from);
  const std::uint32_t hash = NamePool::hashOf(text);
  m_names.prefetch(hash);
  m_waiting[m_waits++] = {text, m_next - 1, hash, mark, isShort};
  if (m_waits == mostWaiting) forget();
}

void EdifTokens::Writer::forget() {
  // Most words were met before, so all that is known of them is asked for first.
  std::array<const Word*, mostWaiting> known;
  for (std::size_t at = 0; at < m_waits; ++at) {
    known[at] = m_names.candidate(m_waiting[at].hash);
    __builtin_prefetch(known[at]);
  }
  for (std::size_t at = 0; at < m_waits; ++at) {
    if (known[at] == nullptr) continue;
    __builtin_prefetch(known[at]->c_str() + known[at]->size());
    m_tokens.m_words.prefetch(known[at]);
  }
  for (std::size_t at = 0; at < m_waits; ++at) {
    const Waiting& word = m_waiting[at];
    const std::uint32_t code = m_tokens.m_words.codeOf(m_names.intern(word.text, word.hash));
    *word.place = code | word.mark;
    if (word.isShort) {
      const WordMemo::Key key = WordMemo::keyOf(word.text.data(), word.text.size());
      m_memo.at(key) = {key.head, key.tail, code};
    }
  }
  m_waits = 0;
}

void EdifTokens::Writer::makeRoom(const char* from) {
  const std::size_t used = size();
  std::vector<Pages>& chunks = m_tokens.m_chunks;
  // Most of a small netlist's only chunk is never touched.
  if (used % chunkSize == 0) chunks.push_back(allocatePages(hugePage, !chunks.empty()));
  m_tokens.m_checkpoints.push_back(m_lexer.offsetOf(from));
  m_next = static_cast<std::uint32_t*>(chunks.back().get()) + used % chunkSize;
  m_stop = m_next + checkpointDistance;
}

void EdifTokens::Writer::raiseNesting(const char* from) {
  m_tokens.m_place = m_lexer.offsetOf(from) + 1;
  fatalHere("Lists are nested more than %llu deep.",
            static_cast<unsigned long long>(m_tokens.m_limits.listNesting));
}

void EdifTokens::lex() {
  constexpr std::uint64_t reportDistance = std::uint64_t{1} << 22;
  EdifLexer lexer(m_source, m_limits.wordLength);
  Writer writer(*this, lexer);
  State state = lexer.run(writer, 0);
  while (state == State::Going) {
    m_place = lexer.offset();
    progress("Reading words", m_place, m_source.size());
    state = lexer.run(writer, m_place + reportDistance);
  }
  writer.finish();
  m_place = lexer.offset();
  if (state == State::ParenthesisInWord) fatal("ERROR: Illegal character '(' inside token.\n");
  if (state == State::QuoteInWord) fatal("ERROR: Illegal character '\"' inside token.\n");
  if (state == State::WordTooLong) {
    fatalHere("A word is longer than %llu bytes.",
              static_cast<unsigned long long>(m_limits.wordLength));
  }
  if (m_source.failed()) fatalHere("The file cannot be read to its end.");
}

std::size_t EdifTokens::endOfOuterList(std::size_t open) const {
  const auto known = m_ends.find(open);
  return known == m_ends.end() ? endOfList(open + 1) : known->second;
}

std::size_t EdifTokens::endOfList(std::size_t index) const {
  std::size_t open = 1;
  while (index < m_size) {
    const auto* chunk = static_cast<const std::uint32_t*>(m_chunks[index / chunkSize].get());
    const std::size_t start = index - index % chunkSize;
    const std::size_t stop = std::min(chunkSize, m_size - start);
    for (std::size_t at = index - start; at < stop; ++at) {
      if (chunk[at] > token::Close) continue;
      open += chunk[at] == token::Open ? 1U : -std::size_t{1};
      if (open == 0) return start + at + 1;
    }
    index = start + stop;
  }
  return m_size + 1;
}

namespace {

/// Counts lexemes up to one that is looked for.
class Finder {
 public:
  Finder(const EdifLexer& lexer, std::size_t ahead) : m_lexer(lexer), m_ahead(ahead) {}

  void open(const char* from) { pass(from); }
  void close(const char* from) { pass(from); }
  void word(std::string_view /*text*/, const char* from) { pass(from); }
  void string(std::string_view /*text*/, const char* from) { pass(from); }
  void forget() {}

  bool found() const { return m_found; }
  std::uint64_t offset() const { return m_offset; }

 private:
  void pass(const char* from) {
    if (m_found || m_ahead-- != 0) return;
    m_offset = m_lexer.offsetOf(from);
    m_found = true;
  }

  const EdifLexer& m_lexer;
  std::size_t m_ahead;
  std::uint64_t m_offset = 0;
  bool m_found = false;
};

}  // namespace

ReadPlace::Position EdifTokens::position(std::size_t index) const {
  constexpr std::size_t piece = std::size_t{1} << 12;
  if (index >= m_size) return positionOf(m_source.size());
  EdifLexer lexer(m_source, m_limits.wordLength, m_checkpoints[index / checkpointDistance], piece);
  Finder finder(lexer, index % checkpointDistance);
  while (!finder.found() && lexer.run(finder, lexer.offset() + piece) == State::Going) {
  }
  return positionOf(finder.found() ? finder.offset() : lexer.offset());
}

ReadPlace::Position EdifTokens::positionOf(std::uint64_t offset) const {
  constexpr std::size_t pieceSize = std::size_t{1} << 16;
  const std::unique_ptr<char[]> piece(new char[pieceSize]);
  ReadPlace::Position position{1, 1};
  std::uint64_t at = 0;
  while (at < offset) {
    const auto wanted = std::min<std::uint64_t>(pieceSize, offset - at);
    const std::size_t got = m_source.read(at, piece.get(), static_cast<std::size_t>(wanted));
    if (got == 0) break;
    const std::string_view text(piece.get(), got);
    const std::size_t feed = text.rfind('\n');
    position.line += static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n'));
    position.column = feed == std::string_view::npos ? position.column + got : got - feed;
    at += got;
  }
  return position;
}

}  // namespace XRF_RTL2LL
