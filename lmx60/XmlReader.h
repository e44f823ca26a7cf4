#pragma once

#include <lmx60/CrackedName.h>
#include <lmx60/Error.h>
#include <lmx60/KnownElements.h>
#include <lmx60/OptionalValue.h>
#include <lmx60/Source.h>
#include <lmx60/UnmarshalHelper.h>
#include <lmx60/Validation.h>
#include <support/Api.h>
#include <support/Limits.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lmx60 {

class c_xml_tokeniser;

/// Reads a document into the objects of a binding.
///
///     lmx60::c_read_file file("movrel.xml");
///     lmx60::c_xml_reader reader(file);
///     reader.set_error_handler([&](const lmx60::s_debug_error& fault) {
///       show(fault.line, fault.message);
///       return lmx60::ELMX_OK;               // go on and find the next fault
///     });
///     Movrel::Project project;
///     lmx60::elmx_error code = project.unmarshal(reader);
///
/// Without a handler the first error ends reading and warnings pass. A handler sees each fault;
/// what it returns, unless zero, ends reading and is its result. A document that is not
/// well-formed, or goes beyond the limits, ends reading in any case. Elements that are open stand
/// on a stack of the reader, not on the thread's.
///
/// A reader reads one document, once. The source has to outlive it.
class XRF_API c_xml_reader {
 public:
  using error_handler = std::function<elmx_error(const s_debug_error&)>;

  explicit c_xml_reader(c_read& source);
  c_xml_reader(const c_xml_reader&) = delete;
  c_xml_reader& operator=(const c_xml_reader&) = delete;
  ~c_xml_reader();

  void set_error_handler(error_handler handler);
  /// What the document may ask for. Set before it is read.
  void set_limits(const XRF_RTL2LL::Limits& limits);
  /// The fault that ended reading; its code is 0 when none did.
  const s_debug_error& debug_error() const { return m_fault; }
  /// How many faults were tolerated.
  std::uint64_t warning_count() const { return m_warnings; }
  std::uint64_t tolerated_error_count() const { return m_tolerated; }

  // The rest is what bindings call.

  /// The binding's source file, for diagnostics.
  void set_binding(const char* source_file) { m_binding = source_file; }
  void set_ns_map(const s_ns_map& map) { m_ns_map = map; }

  /// Steps to the first element of the document and names it.
  elmx_error get_element_event(c_cracked_name& name);
  /// Reads what follows the root element, where only white space and comments may stand.
  elmx_error finish();

  /// Steps to the next child of the innermost open element that its sequence knows, and gives its
  /// token, or `no_token` when the element is closed or an error is returned. What the sequence
  /// does not know is skipped and reported.
  elmx_error get_known_element_event(c_known_elements_selector& selector, int& token);

  /// Steps to the next attribute of the current element; false when there is none.
  bool next_attribute();
  /// The current attribute's token among the names of its class.
  int tokenise(f_tokenise names) const;
  /// Store the current attribute's value.
  elmx_error unmarshal_attribute_impl(c_optional_text& value);
  elmx_error unmarshal_attribute_impl(c_optional_value<unsigned int>& value,
                                      const c_integer_spec& spec);
  elmx_error unmarshal_attribute_impl(c_optional_value<unsigned long long>& value,
                                      const c_integer_spec& spec);
  /// Reports that no class knows the current attribute.
  elmx_error report_unknown_attribute();
  /// Reports an element that is not `expected`. A reader that has not begun steps to the first
  /// one; any other that does not stand at an element raises c_lmx_reader_exception.
  elmx_error check_element(std::string_view expected);

  /// Read the current element as a child: one without children, one with, a text. The second kind
  /// is read on by the innermost running `unmarshal_complex_content`.
  template <class Item>
  elmx_error unmarshal_child_element_impl(Item& item);
  template <class Helper, class Item>
  elmx_error unmarshal_child_element_impl(Item& item);
  elmx_error unmarshal_child_element_impl(std::string& text);
  template <class Item>
  elmx_error unmarshal_attributes(Item& item);
  /// Reads the content of an element that has none.
  elmx_error unmarshal_empty_content();

  /// Deals with a fault: 0 to go on, anything else to give up with that code.
  elmx_error handle_error(elmx_error code, const std::string& message,
                          elmx_severity severity = ELMX_ERROR);

 private:
  friend class c_unmarshal_helper;

  template <class Value>
  elmx_error unmarshal_integer(c_optional_value<Value>& value, const c_integer_spec& spec);
  elmx_error unmarshal_content(c_unmarshal_helper& outermost);
  void open(std::unique_ptr<c_unmarshal_helper> helper);
  elmx_error select_child(c_known_elements_selector& selector, int& token);
  elmx_error report_missing(c_known_elements_selector& selector, int before);
  elmx_error report_text();
  elmx_error skip_unknown_element();
  elmx_error skip_element();
  elmx_error stop_at_fault();
  s_debug_error fault_here(elmx_error code, const std::string& message,
                           elmx_severity severity) const;
  std::string element_name() const;

  c_read& m_source;
  std::unique_ptr<c_xml_tokeniser> m_tokeniser;
  error_handler m_handler;
  const char* m_binding = "";
  s_ns_map m_ns_map;
  s_debug_error m_fault;
  std::uint64_t m_warnings = 0;
  std::uint64_t m_tolerated = 0;

  std::vector<std::unique_ptr<c_unmarshal_helper>> m_open;
  std::string_view m_child;     // the child that was selected last
  std::string_view m_element;   // the element whose content is being read
  std::size_t m_attribute = 0;  // those passed of the current element
  bool m_begun = false;
};

template <class Item>
elmx_error c_xml_reader::unmarshal_attributes(Item& item) {
  while (next_attribute()) {
    elmx_error error = ELMX_OK;
    if (!item.unmarshal_attributes(*this, &error)) error = report_unknown_attribute();
    if (error != ELMX_OK) return error;
  }
  return ELMX_OK;
}

template <class Item>
elmx_error c_xml_reader::unmarshal_child_element_impl(Item& item) {
  const elmx_error error = unmarshal_attributes(item);
  return error != ELMX_OK ? error : unmarshal_empty_content();
}

template <class Helper, class Item>
elmx_error c_xml_reader::unmarshal_child_element_impl(Item& item) {
  const elmx_error error = unmarshal_attributes(item);
  if (error == ELMX_OK) open(std::make_unique<Helper>(item));
  return error;
}

}  // namespace lmx60
