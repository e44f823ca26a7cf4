#pragma once

#include <lmx60/Error.h>
#include <lmx60/KnownElements.h>
#include <support/Api.h>

#include <string_view>

namespace lmx60 {

class c_xml_reader;

/// Reads the content of one open element. The runtime calls it back at each child that the
/// element's kind knows.
class XRF_API c_unmarshal_helper {
 public:
  explicit c_unmarshal_helper(const s_known_elements& known);
  c_unmarshal_helper(const c_unmarshal_helper&) = delete;
  c_unmarshal_helper& operator=(const c_unmarshal_helper&) = delete;
  virtual ~c_unmarshal_helper();

  /// Reads up to the end of the element that the reader has just entered.
  elmx_error unmarshal_complex_content(c_xml_reader& reader);

 protected:
  /// Reads the child element of this token, at which the reader stands.
  virtual elmx_error unmarshal_child(c_xml_reader& reader, int token) = 0;

 private:
  friend class c_xml_reader;

  c_known_elements_selector m_selector;
  std::string_view m_element;
};

}  // namespace lmx60
