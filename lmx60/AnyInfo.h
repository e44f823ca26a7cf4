#pragma once

#include <string>
#include <utility>

namespace lmx60 {

/// A fragment of a document: one element with all it contains, kept as text.
class c_any_info {
 public:
  c_any_info() = default;
  explicit c_any_info(std::string text) : m_text(std::move(text)) {}
  const std::string& text() const { return m_text; }

 private:
  std::string m_text;
};

}  // namespace lmx60
