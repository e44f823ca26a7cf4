#include <lmx60/KnownElements.h>

namespace lmx60 {

int c_known_elements_selector::tokenise(std::string_view name) const {
  return m_known->tokenise == nullptr ? no_token : m_known->tokenise(name);
}

int c_known_elements_selector::next_missing(int token) {
  while (m_position < token) {
    const int passed = m_position++;
    if (m_known->elements[passed].required) return passed;
  }
  return no_token;
}

void c_known_elements_selector::step_to(int token) {
  m_position = m_known->elements[token].repeated ? token : token + 1;
}

}  // namespace lmx60
