#include <lmx60/Validation.h>

namespace lmx60 {

c_integer_spec::c_integer_spec(const char* minimum, const char* maximum)
    : m_minimum_text(inittowstring(minimum)),
      m_maximum_text(inittowstring(maximum)),
      m_minimum(m_minimum_text),
      m_maximum(m_maximum_text) {}

elmx_error c_integer_spec::validate(std::string_view text) const {
  if (!is_valid_integer(text)) return ELMX_NOT_INTEGER;
  const c_big_int value(text);
  if (value < m_minimum) return ELMX_BELOW_MINIMUM;
  if (value > m_maximum) return ELMX_ABOVE_MAXIMUM;
  return ELMX_OK;
}

}  // namespace lmx60
