#pragma once

#include <lmx60/Error.h>
#include <lmx60/Integer.h>

#include <string>
#include <string_view>

namespace lmx60 {

/// What an integer has to satisfy. Made once for each type at program start.
class XRF_API c_integer_spec {
 public:
  /// The bounds are decimal integers; both belong to the range.
  c_integer_spec(const char* minimum, const char* maximum);
  c_integer_spec(const c_integer_spec&) = delete;
  c_integer_spec& operator=(const c_integer_spec&) = delete;

  /// Checks collapsed text: whether it is an integer, then the lower bound, then the upper one.
  elmx_error validate(std::string_view text) const;

  const std::string& minimum() const { return m_minimum_text; }
  const std::string& maximum() const { return m_maximum_text; }

 private:
  std::string m_minimum_text;
  std::string m_maximum_text;
  c_big_int m_minimum;
  c_big_int m_maximum;
};

}  // namespace lmx60
