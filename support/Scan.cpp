#include <support/Scan.h>

#include <limits>

namespace XRF_RTL2LL {

Scan::Scan(std::string_view text) : m_text(text.substr(0, text.find('\0'))) {}

void Scan::skipBlanks() {
  while (m_at < m_text.size() && isBlank(m_text[m_at])) ++m_at;
}

bool Scan::literal(std::string_view pattern) {
  for (const char byte : pattern) {
    if (isBlank(byte)) {
      skipBlanks();
    } else if (m_at < m_text.size() && m_text[m_at] == byte) {
      ++m_at;
    } else {
      return false;
    }
  }
  return true;
}

bool Scan::word(std::string_view& value) {
  skipBlanks();
  const std::size_t start = m_at;
  while (m_at < m_text.size() && !isBlank(m_text[m_at])) ++m_at;
  value = m_text.substr(start, m_at - start);
  return m_at != start;
}

bool Scan::sign() {
  skipBlanks();
  if (m_at >= m_text.size() || (m_text[m_at] != '-' && m_text[m_at] != '+')) return false;
  return m_text[m_at++] == '-';
}

bool Scan::integer(std::int64_t& value) {
  constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
  const bool negative = sign();
  const std::size_t start = m_at;
  std::uint64_t number = 0;
  for (; m_at < m_text.size() && isDigit(m_text[m_at]); ++m_at) {
    const auto digit = static_cast<std::uint64_t>(m_text[m_at] - '0');
    number = number > (largest - digit) / 10 ? largest : number * 10 + digit;
  }
  value = negative ? -static_cast<std::int64_t>(number) : static_cast<std::int64_t>(number);
  return m_at != start;
}

bool Scan::integer(std::uint32_t& value) {
  std::int64_t wide = 0;
  if (!integer(wide)) return false;
  value = static_cast<std::uint32_t>(wide);
  return true;
}

bool Scan::hexadecimal(std::uint64_t& value) {
  const bool negative = sign();
  const std::string_view left = rest();
  if (left.size() > 2 && left[0] == '0' && (left[1] == 'x' || left[1] == 'X') &&
      hexDigit(left[2]) >= 0) {
    m_at += 2;
  }
  const std::size_t start = m_at;
  std::uint64_t number = 0;
  for (; m_at < m_text.size() && hexDigit(m_text[m_at]) >= 0; ++m_at) {
    const auto digit = static_cast<std::uint64_t>(hexDigit(m_text[m_at]));
    number = number > std::numeric_limits<std::uint64_t>::max() >> 4
                 ? std::numeric_limits<std::uint64_t>::max()
                 : (number << 4) | digit;
  }
  value = negative ? 0 - number : number;
  return m_at != start;
}

}  // namespace XRF_RTL2LL
