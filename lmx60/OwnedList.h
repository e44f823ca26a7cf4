#pragma once

#include <lmx60/Exception.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace lmx60 {

/// An ordered list of child elements. The parent owns them; a copy of the parent owns clones.
/// Whoever hands over a pointer gives the object away, also when the list cannot store it, in which
/// case it is deleted. A position beyond the end, and a null pointer, raise lmx_exception.
template <class Item>
class c_owned_list {
 public:
  c_owned_list() = default;
  c_owned_list(const c_owned_list& other) {
    m_items.reserve(other.m_items.size());
    for (const auto& item : other.m_items) m_items.emplace_back(item->do_clone());
  }
  c_owned_list& operator=(const c_owned_list&) = delete;
  ~c_owned_list() = default;

  std::size_t size() const { return m_items.size(); }
  Item& at(std::size_t index) const { return *m_items[checked(index)]; }
  Item& back() const { return at(m_items.size() - 1); }

  Item& append() { return store(m_items.size(), std::make_unique<Item>()); }
  Item& append(Item* item) { return store(m_items.size(), owned(item)); }
  Item& insert(std::size_t index) { return store(index, std::make_unique<Item>()); }
  Item& insert(std::size_t index, Item* item) { return store(index, owned(item)); }

  void assign(std::size_t index, const Item& item) {
    checked(index);
    m_items[index].reset(item.do_clone());
  }
  void assign(std::size_t index, Item* item) {
    if (index < m_items.size() && m_items[index].get() == item) return;
    std::unique_ptr<Item> kept = owned(item);
    m_items[checked(index)] = std::move(kept);
  }
  void erase(std::size_t index) {
    m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(checked(index)));
  }
  void clear() { m_items.clear(); }

  void swap(c_owned_list& other) noexcept { m_items.swap(other.m_items); }
  bool operator==(const c_owned_list& other) const {
    return std::equal(m_items.begin(), m_items.end(), other.m_items.begin(), other.m_items.end(),
                      [](const auto& left, const auto& right) { return *left == *right; });
  }

 protected:
  using items = std::vector<std::unique_ptr<Item>>;

  items m_items;

 private:
  std::size_t checked(std::size_t index) const {
    if (index >= m_items.size()) detail::throw_bad_index(index, m_items.size());
    return index;
  }
  static std::unique_ptr<Item> owned(Item* item) {
    if (item == nullptr) detail::throw_null_child();
    return std::unique_ptr<Item>(item);
  }
  Item& store(std::size_t index, std::unique_ptr<Item> item) {
    if (index > m_items.size()) detail::throw_bad_index(index, m_items.size());
    return **m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
  }
};

}  // namespace lmx60
