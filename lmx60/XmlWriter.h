#pragma once

#include <lmx60/CrackedName.h>
#include <lmx60/Error.h>
#include <lmx60/NestedList.h>
#include <lmx60/OptionalValue.h>
#include <lmx60/OwnedChild.h>
#include <lmx60/OwnedList.h>
#include <lmx60/Target.h>
#include <lmx60/TextList.h>
#include <support/Api.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lmx60 {

/// Writes the objects of a binding as a document in UTF-8, indented. The first fault stays: what
/// follows it writes nothing, and `error` says which it was. Names have to outlive the element they
/// open; those of bindings are literals.
class XRF_API c_xml_writer {
 public:
  explicit c_xml_writer(c_write& target);
  c_xml_writer(const c_xml_writer&) = delete;
  c_xml_writer& operator=(const c_xml_writer&) = delete;
  ~c_xml_writer();

  elmx_error error() const { return m_fault.code; }
  /// The first fault; its code is 0 when there was none.
  const s_debug_error& debug_error() const { return m_fault; }
  /// Writes what is still held back and completes the target.
  elmx_error finish();

  // The rest is what bindings call.

  /// The binding's source file, for diagnostics.
  void set_binding(const char* source_file) { m_binding = source_file; }
  /// Declares the namespaces of `map` at the next element, unless some are declared.
  void conditionally_select_ns_map(const s_ns_map& map);

  void start_element(std::string_view name);
  void end_element();

  /// Write an attribute, unless it is absent.
  void marshal_attribute_impl(std::string_view name, const c_optional_text& value);
  void marshal_attribute_impl(std::string_view name, const c_optional_value<unsigned int>& value);
  void marshal_attribute_impl(std::string_view name,
                              const c_optional_value<unsigned long long>& value);

  /// Write a child element: a text, each of a list, one unless it is absent.
  void marshal_element_impl(std::string_view name, const std::string& text);
  void marshal_element_impl(std::string_view name, const c_optional_text& text);
  void marshal_element_impl(std::string_view name, const c_text_list& texts);
  template <class Item>
  void marshal_element_impl(std::string_view name, const Item& item);
  template <class Item>
  void marshal_element_impl(std::string_view name, const c_owned_child<Item>& child);
  template <class Item>
  void marshal_element_impl(std::string_view name, const c_owned_list<Item>& items);
  template <class Item>
  void marshal_element_impl(std::string_view name, const c_nested_list<Item>& items);
  /// A text that must be there.
  void marshal_required_element_impl(std::string_view name, const c_optional_text& text);

  /// Notes the first fault.
  void handle_error(elmx_error code, const std::string& message);

 private:
  enum e_place { in_attribute, in_content };

  void close_start_tag();
  void put_attribute(std::string_view name, std::string_view value, e_place place);
  void put_escaped(std::string_view name, std::string_view value, e_place place);
  void put_line();
  void put(std::string_view text) { m_buffer += text; }
  void flush();
  bool check(elmx_error code);

  c_write& m_target;
  const char* m_binding = "";
  s_ns_map m_ns_map;
  bool m_ns_map_selected = false;
  s_debug_error m_fault;
  std::string m_buffer;
  std::vector<std::string_view> m_open;
  bool m_in_start_tag = false;
};

template <class Item>
void c_xml_writer::marshal_element_impl(std::string_view name, const Item& item) {
  item.marshal(*this, name);
}

template <class Item>
void c_xml_writer::marshal_element_impl(std::string_view name, const c_owned_child<Item>& child) {
  if (child.isset()) child.get().marshal(*this, name);
}

template <class Item>
void c_xml_writer::marshal_element_impl(std::string_view name, const c_owned_list<Item>& items) {
  for (std::size_t index = 0; index < items.size() && error() == ELMX_OK; ++index) {
    items.at(index).marshal(*this, name);
  }
}

template <class Item>
void c_xml_writer::marshal_element_impl(std::string_view name, const c_nested_list<Item>& items) {
  items.walk(
      [&](const Item& item) {
        start_element(name);
        item.marshal_attributes(*this);
        item.marshal_without_nested(*this);
        return error() == ELMX_OK;
      },
      [&] { end_element(); });
}

}  // namespace lmx60
