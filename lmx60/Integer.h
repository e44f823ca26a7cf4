#pragma once

#include <support/Api.h>

#include <string>
#include <string_view>

namespace lmx60 {

/// `text` without the XML white space around it. White space inside an integer makes it none, so
/// that collapsing what stands inside would change nothing.
XRF_API std::string_view collapse(std::string_view text);

/// Whether `text` is an optional sign followed by decimal digits and nothing else.
XRF_API bool is_valid_integer(std::string_view text);

/// The runtime's text from a literal.
XRF_API std::string inittowstring(const char* literal);

/// A decimal integer of any length. It refers to its text, which has to outlive it.
class XRF_API c_big_int {
 public:
  /// `text` must be a valid integer; anything else counts as zero.
  explicit c_big_int(std::string_view text);

  bool operator==(const c_big_int& other) const { return compare(other) == 0; }
  bool operator<(const c_big_int& other) const { return compare(other) < 0; }
  bool operator>(const c_big_int& other) const { return compare(other) > 0; }

  /// The value of an integer that is known to lie between 0 and the highest of this type.
  unsigned long long to_unsigned() const;

 private:
  int compare(const c_big_int& other) const;

  std::string_view m_digits;  // without leading zeros; zero has none
  bool m_negative = false;
};

}  // namespace lmx60
