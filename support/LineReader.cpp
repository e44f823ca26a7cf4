#include <support/LineReader.h>

#include <algorithm>
#include <cstring>

namespace XRF_RTL2LL {

LineReader::LineReader(const TextSource& source, std::size_t piece)
    : m_source(source),
      m_capacity(std::min<std::uint64_t>(piece, source.size())),
      m_text(new char[m_capacity]),
      m_next(m_text.get()),
      m_end(m_next) {}

bool LineReader::next() {
  std::size_t length = 0;
  std::size_t rest = 0;
  const void* feed = nullptr;
  do {
    rest = static_cast<std::size_t>(m_end - m_next);
    feed = std::memchr(m_next + length, '\n', rest - length);
    length =
        feed != nullptr ? static_cast<std::size_t>(static_cast<const char*>(feed) - m_next) : rest;
  } while (rest - length <= ahead && !m_all_read && readOn());
  m_terminated = feed != nullptr;
  if (rest == 0 || (!m_terminated && failed())) return false;
  m_line = {m_next, length};
  m_next += length + (m_terminated ? 1 : 0);
  ++m_number;
  return true;
}

// Lets go of what lies before the line that begins.
bool LineReader::readOn() {
  const auto kept = static_cast<std::size_t>(m_end - m_next);
  m_base = offset();
  // A line is searched on where the search stopped, but moved as a whole.
  if (kept > m_capacity / 2) {
    m_capacity = std::min<std::uint64_t>(std::uint64_t{2} * m_capacity, size() - m_base);
    std::unique_ptr<char[]> larger(new char[m_capacity]);
    std::memcpy(larger.get(), m_next, kept);
    m_text.swap(larger);
  } else {
    std::memmove(m_text.get(), m_next, kept);
  }
  const std::uint64_t left = size() - m_base - kept;
  const std::size_t wanted = std::min<std::uint64_t>(m_capacity - kept, left);
  const std::size_t got = m_source.read(m_base + kept, m_text.get() + kept, wanted);
  m_next = m_text.get();
  m_end = m_next + kept + got;
  m_all_read = got < wanted || got == left;
  return got != 0;
}

}  // namespace XRF_RTL2LL
