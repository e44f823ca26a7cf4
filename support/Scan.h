#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace XRF_RTL2LL {

inline bool isBlank(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }
inline bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }
/// What a hexadecimal digit stands for, or -1.
inline int hexDigit(char byte) {
  if (isDigit(byte)) return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

/// Reads fields from a line by the rules of formatted input: white space in a pattern matches any
/// run of it, words end at white space, numbers may be signed. Unlike the C function it knows the
/// end of its text, so words have no length limit. A NUL byte ends the text.
class Scan {
 public:
  explicit Scan(std::string_view text);

  /// Matches a pattern without conversions.
  bool literal(std::string_view pattern);
  /// A run of bytes other than white space; leading white space is passed over.
  bool word(std::string_view& value);
  /// A decimal number with an optional sign; beyond 64 bits it saturates.
  bool integer(std::int64_t& value);
  /// A decimal number that is kept as the 32 bits a signed field would hold.
  bool integer(std::uint32_t& value);
  /// A hexadecimal number with an optional sign and prefix.
  bool hexadecimal(std::uint64_t& value);
  std::string_view rest() const { return m_text.substr(m_at); }

 private:
  void skipBlanks();
  bool sign();

  std::string_view m_text;
  std::size_t m_at = 0;
};

/// Reads a line that is written the plain way, fields apart by blanks alone and numbers without a
/// sign, as fast as it can be looked at. What it takes `Scan` would take alike; what it refuses may
/// be well-formed all the same, and is left to `Scan`. Inlined, so that the place in the line stays
/// in a register.
class PlainScan {
 public:
  explicit PlainScan(std::string_view line) : m_at(line.data()), m_end(m_at + line.size()) {}

  /// Matches the very bytes of a text.
  [[gnu::always_inline]] bool literal(std::string_view text) {
    if (static_cast<std::size_t>(m_end - m_at) < text.size()) return false;
    if (std::memcmp(m_at, text.data(), text.size()) != 0) return false;
    m_at += text.size();
    return true;
  }
  /// A blank that something follows.
  [[gnu::always_inline]] bool blank() { return m_at != m_end && *m_at == ' ' && ++m_at != m_end; }
  /// One blank or several.
  [[gnu::always_inline]] bool blanks() {
    const bool any = blank();
    while (m_at != m_end && *m_at == ' ') ++m_at;
    return any;
  }
  /// A run of bytes that are neither white space nor control bytes nor `stop`; what ends it is a
  /// blank, `stop` or the end of the line.
  [[gnu::always_inline]] bool word(std::string_view& value, char stop) {
    const char* start = m_at;
    while (m_at != m_end && static_cast<unsigned char>(*m_at) > ' ' && *m_at != stop) ++m_at;
    value = {start, static_cast<std::size_t>(m_at - start)};
    return m_at != start && (m_at == m_end || *m_at == ' ' || *m_at == stop);
  }
  /// Up to nine digits.
  [[gnu::always_inline]] bool number(std::uint32_t& value) {
    constexpr std::ptrdiff_t most = 9;
    const char* start = m_at;
    std::uint32_t sum = 0;
    for (; m_at != m_end; ++m_at) {
      const auto digit = static_cast<std::uint32_t>(static_cast<unsigned char>(*m_at)) - '0';
      if (digit > 9) break;
      sum = sum * 10 + digit;
    }
    value = sum;
    return m_at != start && m_at - start <= most;
  }
  /// Up to eight hexadecimal digits, then a blank.
  [[gnu::always_inline]] bool hexadecimal(std::uint32_t& value) {
    constexpr std::ptrdiff_t most = 8;
    const char* start = m_at;
    std::uint32_t sum = 0;
    for (; m_at != m_end; ++m_at) {
      const int digit = hexDigit(*m_at);
      if (digit < 0) break;
      sum = (sum << 4) | static_cast<std::uint32_t>(digit);
    }
    value = sum;
    return m_at != start && m_at - start <= most && m_at != m_end && *m_at == ' ';
  }
  /// The next byte, or NUL at the end of the line.
  char peek() const { return m_at == m_end ? '\0' : *m_at; }
  std::string_view rest() const { return {m_at, static_cast<std::size_t>(m_end - m_at)}; }
  bool ended() const { return m_at == m_end; }

 private:
  const char* m_at;
  const char* m_end;
};

}  // namespace XRF_RTL2LL
