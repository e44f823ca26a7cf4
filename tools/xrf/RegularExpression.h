#pragma once

#include <regex.h>
#include <string>

namespace xrf {

/// A POSIX extended regular expression, which matches anywhere in a text. The C library's, since
/// the standard library's recurses for each character and a file may hold names of any length.
class RegularExpression {
 public:
  /// An expression that is none is a UsageFailure.
  explicit RegularExpression(const std::string& text);
  ~RegularExpression();
  RegularExpression(const RegularExpression&) = delete;
  RegularExpression& operator=(const RegularExpression&) = delete;

  bool matches(const std::string& text) const;

 private:
  regex_t m_expression;
};

}  // namespace xrf
