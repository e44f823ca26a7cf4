#include <lmx60/UnmarshalHelper.h>
#include <lmx60/XmlReader.h>

namespace lmx60 {

c_unmarshal_helper::c_unmarshal_helper(const s_known_elements& known) : m_selector(known) {}

c_unmarshal_helper::~c_unmarshal_helper() = default;

elmx_error c_unmarshal_helper::unmarshal_complex_content(c_xml_reader& reader) {
  return reader.unmarshal_content(*this);
}

}  // namespace lmx60
