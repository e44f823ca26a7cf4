#pragma once

#include <string>
#include <utility>

namespace lmx60 {

/// A value and whether it is present. While absent it reads as the type's empty value.
template <class Value>
class c_optional_value {
 public:
  const Value& get() const { return m_value; }
  bool isset() const { return m_set; }

  template <class Source>
  void set(const Source& value) {
    m_value = value;
    m_set = true;
  }
  void unset() {
    m_value = Value();
    m_set = false;
  }

  void swap(c_optional_value& other) noexcept {
    std::swap(m_value, other.m_value);
    std::swap(m_set, other.m_set);
  }
  bool operator==(const c_optional_value& other) const = default;

 private:
  Value m_value{};
  bool m_set = false;
};

using c_optional_text = c_optional_value<std::string>;

}  // namespace lmx60
