#include <lmx60/Integer.h>

#include <algorithm>

namespace lmx60 {

namespace {

constexpr std::string_view xmlBlanks = " \t\r\n";

bool is_sign(char letter) { return letter == '+' || letter == '-'; }

bool is_digit(char letter) { return letter >= '0' && letter <= '9'; }

// Magnitudes without leading zeros: the longer one is the greater.
int compare_magnitudes(std::string_view left, std::string_view right) {
  if (left.size() != right.size()) return left.size() < right.size() ? -1 : 1;
  return left.compare(right);
}

}  // namespace

std::string_view collapse(std::string_view text) {
  const std::size_t first = text.find_first_not_of(xmlBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(xmlBlanks) - first + 1);
}

bool is_valid_integer(std::string_view text) {
  if (!text.empty() && is_sign(text.front())) text.remove_prefix(1);
  return !text.empty() && std::all_of(text.begin(), text.end(), is_digit);
}

std::string inittowstring(const char* literal) { return literal; }

c_big_int::c_big_int(std::string_view text) {
  if (!is_valid_integer(text)) return;
  const bool minus = text.front() == '-';
  if (is_sign(text.front())) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  m_digits = text;
  m_negative = minus && !text.empty();
}

int c_big_int::compare(const c_big_int& other) const {
  if (m_negative != other.m_negative) return m_negative ? -1 : 1;
  const int magnitudes = compare_magnitudes(m_digits, other.m_digits);
  return m_negative ? -magnitudes : magnitudes;
}

unsigned long long c_big_int::to_unsigned() const {
  unsigned long long value = 0;
  for (const char digit : m_digits) value = value * 10 + static_cast<unsigned>(digit - '0');
  return value;
}

}  // namespace lmx60
