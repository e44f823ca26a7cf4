#pragma once

#include <lmx60/Exception.h>

#include <cstddef>
#include <string>
#include <vector>

namespace lmx60 {

/// A list of texts. A position beyond the end raises lmx_exception.
class c_text_list {
 public:
  std::size_t size() const { return m_texts.size(); }
  const std::string& at(std::size_t index) const { return m_texts[checked(index)]; }
  std::string& at(std::size_t index) { return m_texts[checked(index)]; }
  const std::string& back() const { return m_texts[checked(m_texts.size() - 1)]; }
  std::string& back() { return m_texts[checked(m_texts.size() - 1)]; }

  // Texts come by value: one of this very list may be given.
  void append(std::string text) { m_texts.push_back(std::move(text)); }
  void insert(std::size_t index, std::string text) {
    if (index > m_texts.size()) detail::throw_bad_index(index, m_texts.size());
    m_texts.insert(m_texts.begin() + static_cast<std::ptrdiff_t>(index), std::move(text));
  }
  void assign(std::size_t index, std::string text) { at(index) = std::move(text); }
  void erase(std::size_t index) {
    m_texts.erase(m_texts.begin() + static_cast<std::ptrdiff_t>(checked(index)));
  }
  void clear() { m_texts.clear(); }

  void swap(c_text_list& other) noexcept { m_texts.swap(other.m_texts); }
  bool operator==(const c_text_list& other) const = default;

 private:
  std::size_t checked(std::size_t index) const {
    if (index >= m_texts.size()) detail::throw_bad_index(index, m_texts.size());
    return index;
  }

  std::vector<std::string> m_texts;
};

}  // namespace lmx60
