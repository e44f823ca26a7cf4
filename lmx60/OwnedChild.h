#pragma once

#include <lmx60/Exception.h>

#include <memory>

namespace lmx60 {

/// A child element that may be absent. The parent owns it; a copy of the parent owns a clone.
template <class Item>
class c_owned_child {
 public:
  c_owned_child() = default;
  c_owned_child(const c_owned_child& other)
      : m_item(other.m_item ? other.m_item->do_clone() : nullptr) {}
  c_owned_child& operator=(const c_owned_child&) = delete;
  ~c_owned_child() = default;

  bool isset() const { return m_item != nullptr; }
  /// Raises lmx_exception when the child is absent.
  Item& get() const {
    if (!m_item) detail::throw_absent_child();
    return *m_item;
  }
  /// The child, made when it is absent.
  Item& get_or_create() {
    if (!m_item) m_item = std::make_unique<Item>();
    return *m_item;
  }
  void assign(const Item& item) { m_item.reset(item.do_clone()); }
  /// Takes ownership; null is refused.
  void assign(Item* item) {
    if (item == nullptr) detail::throw_null_child();
    if (item != m_item.get()) m_item.reset(item);
  }
  void unset() { m_item.reset(); }

  void swap(c_owned_child& other) noexcept { m_item.swap(other.m_item); }
  bool operator==(const c_owned_child& other) const {
    if (!m_item || !other.m_item) return m_item == other.m_item;
    return *m_item == *other.m_item;
  }

 private:
  std::unique_ptr<Item> m_item;
};

}  // namespace lmx60
