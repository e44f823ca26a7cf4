#pragma once

#include <lmx60/OwnedList.h>

#include <memory>
#include <typeinfo>
#include <utility>
#include <vector>

namespace lmx60 {

/// Says that a copy leaves out the elements of its own kind below.
struct c_without_nested {};

/// The list of children of an element kind that contains itself. Documents may nest such elements
/// as deep as they please, so what is done to a whole tree is done without recursion.
///
/// `Item` makes this list a friend and offers: `nested()`, const and not, its own such list; a
/// constructor from an item and `c_without_nested`; `equals_without_nested`.
template <class Item>
class c_nested_list : public c_owned_list<Item> {
  using base = c_owned_list<Item>;

 public:
  c_nested_list() = default;
  // Delegates, so that a copy that fails half-way is taken down by the destructor below.
  c_nested_list(const c_nested_list& other) : c_nested_list() { copy(other); }
  c_nested_list& operator=(const c_nested_list&) = delete;
  ~c_nested_list() { clear(); }

  void clear() {
    typename base::items doomed = std::move(this->m_items);
    this->m_items.clear();
    while (!doomed.empty()) {
      const std::unique_ptr<Item> item = std::move(doomed.back());
      doomed.pop_back();
      for (auto& below : item->nested().m_items) doomed.push_back(std::move(below));
      item->nested().m_items.clear();
    }
  }

  void swap(c_nested_list& other) noexcept { base::swap(other); }

  bool operator==(const c_nested_list& other) const {
    std::vector<std::pair<const c_nested_list*, const c_nested_list*>> pending{{this, &other}};
    while (!pending.empty()) {
      const auto [left, right] = pending.back();
      pending.pop_back();
      if (left->size() != right->size()) return false;
      for (std::size_t index = 0; index < left->size(); ++index) {
        const Item& one = left->at(index);
        const Item& two = right->at(index);
        if (!one.equals_without_nested(two)) return false;
        pending.emplace_back(&one.nested(), &two.nested());
      }
    }
    return true;
  }

  /// Calls `open(item)` before and `close()` after what lies below each item, in document order,
  /// for as long as `open` returns true.
  template <class Open, class Close>
  void walk(const Open& open, const Close& close) const {
    struct s_level {
      const c_nested_list* list;
      std::size_t next;
    };
    std::vector<s_level> levels{{this, 0}};
    while (true) {
      s_level& level = levels.back();
      if (level.next < level.list->size()) {
        const Item& item = level.list->at(level.next++);
        if (!open(item)) return;
        levels.push_back({&item.nested(), 0});
        continue;
      }
      levels.pop_back();
      if (levels.empty()) return;
      close();
    }
  }

 private:
  void copy(const c_nested_list& other) {
    std::vector<std::pair<const c_nested_list*, c_nested_list*>> pending{{&other, this}};
    while (!pending.empty()) {
      const auto [from, to] = pending.back();
      pending.pop_back();
      to->m_items.reserve(from->size());
      for (const auto& item : from->m_items) {
        // Only an object of a class derived from Item knows how to clone itself.
        if (typeid(*item) != typeid(Item)) {
          to->m_items.emplace_back(item->do_clone());
          continue;
        }
        to->m_items.push_back(std::unique_ptr<Item>(new Item(*item, c_without_nested())));
        pending.emplace_back(&item->nested(), &to->m_items.back()->nested());
      }
    }
  }
};

}  // namespace lmx60
