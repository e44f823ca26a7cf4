#pragma once

#include <cstdint>
#include <string_view>

namespace XRF_RTL2LL {

inline bool isBlank(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }
inline bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

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

}  // namespace XRF_RTL2LL
