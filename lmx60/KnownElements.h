#pragma once

#include <support/Api.h>

#include <string_view>

namespace lmx60 {

/// From a name to its token, or `no_token` for a name that is not known.
using f_tokenise = int (*)(std::string_view name);
inline constexpr int no_token = -1;

/// One item of the sequence of children that an element kind prescribes.
struct s_known_element {
  std::string_view name;
  bool required;  ///< at least one
  bool repeated;  ///< more than one
};

/// The sequence of children of one element kind. Tokens are positions in it.
struct s_known_elements {
  const s_known_element* elements = nullptr;
  int size = 0;
  f_tokenise tokenise = nullptr;  ///< null when there are no children
};

/// Follows the children of one element through the sequence that its kind prescribes.
class XRF_API c_known_elements_selector {
 public:
  explicit c_known_elements_selector(const s_known_elements& known) : m_known(&known) {}

  /// The token of a child's name, wherever in the sequence it belongs.
  int tokenise(std::string_view name) const;
  /// Whether a child may stand here, after those before it.
  bool is_in_order(int token) const { return token >= m_position; }
  /// The next item that is required, not there, and has its place before `token`; or `no_token`.
  /// Each is named once.
  int next_missing(int token);
  /// Steps to a child that is in order.
  void step_to(int token);
  /// A token behind the whole sequence: what is missing when the element is closed.
  int end() const { return m_known->size; }
  std::string_view name(int token) const { return m_known->elements[token].name; }

 private:
  const s_known_elements* m_known;
  int m_position = 0;  // the first item that a child may still be
};

}  // namespace lmx60
