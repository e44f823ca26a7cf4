#include <crossreference/EdifLexer.h>

#include <cstring>

namespace XRF_RTL2LL {

namespace {

// What follows the text in memory ends words, strings and runs of blanks alike.
constexpr char sentinel = '"';

}  // namespace

EdifLexer::EdifLexer(const TextSource& source, std::uint64_t longestWord, std::uint64_t at,
                     std::size_t piece)
    : m_source(source),
      m_longest_word(longestWord),
      m_capacity(piece),
      m_text(new char[m_capacity + margin]),
      m_at(m_text.get()),
      m_end(m_at),
      m_base(at) {
  std::memset(m_text.get(), sentinel, margin);
}

const char* EdifLexer::stop(State state, const char* at) {
  m_state = state;
  m_at = at;
  return nullptr;
}

const char* EdifLexer::limitOf(std::uint64_t pause) const {
  if (pause <= offset()) return m_at;
  return pause < offsetOf(m_end) ? m_text.get() + (pause - m_base) : m_end;
}

bool EdifLexer::refill() {
  const auto kept = static_cast<std::size_t>(m_end - m_at);
  m_base += static_cast<std::uint64_t>(m_at - m_text.get());
  // What is kept is looked through again, so it must not be much of what is in memory.
  if (kept > m_capacity / 2) {
    m_capacity *= 2;
    std::unique_ptr<char[]> larger(new char[m_capacity + margin]);
    std::memcpy(larger.get(), m_at, kept);
    m_text.swap(larger);
  } else {
    std::memmove(m_text.get(), m_at, kept);
  }
  const std::size_t got = m_source.read(m_base + kept, m_text.get() + kept, m_capacity - kept);
  m_at = m_text.get();
  m_end = m_at + kept + got;
  std::memset(m_text.get() + kept + got, sentinel, margin);
  return got != 0;
}

}  // namespace XRF_RTL2LL
