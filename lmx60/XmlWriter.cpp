#include <lmx60/XmlWriter.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace lmx60 {

namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 16;

// How a byte of text is written: as it is, or after a closer look.
constexpr std::array<bool, 256> plainBytes = [] {
  std::array<bool, 256> plain{};
  for (unsigned byte = 0x20; byte < 0x7F; ++byte) plain[byte] = true;
  for (const char special : std::string_view("&<>\"")) {
    plain[static_cast<unsigned char>(special)] = false;
  }
  return plain;
}();

std::size_t plain_length(std::string_view text) {
  const auto* const end = std::find_if_not(text.begin(), text.end(), [](char letter) {
    return plainBytes[static_cast<unsigned char>(letter)];
  });
  return static_cast<std::size_t>(end - text.begin());
}

// What UTF-8 and XML allow in a sequence that begins with a byte above 0x7F.
struct s_sequence {
  std::size_t size = 0;  // 0 where the first byte begins none
  std::uint32_t lowest = 0;
};

s_sequence sequence_of(unsigned char first) {
  if ((first & 0xE0U) == 0xC0U) return {2, 0x80};
  if ((first & 0xF0U) == 0xE0U) return {3, 0x800};
  if ((first & 0xF8U) == 0xF0U) return {4, 0x10000};
  return {};
}

bool is_character(std::uint32_t code) {
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return !surrogate && code != 0xFFFE && code != 0xFFFF && code <= 0x10FFFF;
}

// The size of the character at the beginning of `text`, which is not ASCII; 0 for none that XML
// can carry.
std::size_t character_size(std::string_view text) {
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const s_sequence sequence = sequence_of(byte(0));
  if (sequence.size == 0 || sequence.size > text.size()) return 0;
  std::uint32_t code = byte(0) & (0xFFU >> (sequence.size + 1));
  for (std::size_t index = 1; index < sequence.size; ++index) {
    if ((byte(index) & 0xC0U) != 0x80U) return 0;
    code = code << 6U | (byte(index) & 0x3FU);
  }
  return code >= sequence.lowest && is_character(code) ? sequence.size : 0;
}

// What stands for an ASCII character that cannot simply be written; empty for a control character,
// for which nothing can. A reader turns bare line ends and tabs of an attribute into blanks.
std::string_view reference(char letter, bool attribute) {
  switch (letter) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return attribute ? "&quot;" : "\"";
    case '\t':
      return attribute ? "&#9;" : "\t";
    case '\n':
      return attribute ? "&#10;" : "\n";
    case '\r':
      return "&#13;";
    case '\x7F':
      return "&#127;";
    default:
      return {};
  }
}

}  // namespace

c_xml_writer::c_xml_writer(c_write& target) : m_target(target) {
  put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
}

c_xml_writer::~c_xml_writer() = default;

void c_xml_writer::handle_error(elmx_error code, const std::string& message) {
  if (m_fault.code != ELMX_OK) return;
  m_fault.code = code;
  m_fault.message = message;
  m_fault.source = m_target.name();
  m_fault.binding = m_binding;
  if (!m_open.empty()) m_fault.element = m_open.back();
}

bool c_xml_writer::check(elmx_error code) {
  if (code != ELMX_OK) handle_error(code, m_target.problem());
  return code == ELMX_OK;
}

void c_xml_writer::flush() {
  if (error() == ELMX_OK) check(m_target.write(m_buffer.data(), m_buffer.size()));
  m_buffer.clear();
}

elmx_error c_xml_writer::finish() {
  put("\n");
  flush();
  if (error() == ELMX_OK) check(m_target.commit());
  return error();
}

void c_xml_writer::conditionally_select_ns_map(const s_ns_map& map) {
  if (m_ns_map_selected) return;
  m_ns_map = map;
  m_ns_map_selected = map.size > 0;
}

void c_xml_writer::put_line() {
  put("\n");
  // Elements nested deeper stand no further right, so that what is written grows with their number
  // alone.
  constexpr std::size_t indentedLevels = 32;
  m_buffer.append(2 * std::min(m_open.size(), indentedLevels), ' ');
}

void c_xml_writer::close_start_tag() {
  if (m_in_start_tag) put(">");
  m_in_start_tag = false;
}

void c_xml_writer::start_element(std::string_view name) {
  if (error() != ELMX_OK) return;
  close_start_tag();
  put_line();
  put("<");
  put(name);
  m_open.push_back(name);
  m_in_start_tag = true;
  for (; m_ns_map.size > 0; --m_ns_map.size, ++m_ns_map.entries) {
    const s_namespace& entry = *m_ns_map.entries;
    const std::string colon = entry.prefix.empty() ? "" : ":";
    put_attribute("xmlns" + colon + std::string(entry.prefix), entry.uri, in_attribute);
  }
  if (m_buffer.size() > bufferSize) flush();
}

void c_xml_writer::end_element() {
  if (error() != ELMX_OK) return;
  const std::string_view name = m_open.back();
  m_open.pop_back();
  if (m_in_start_tag) {
    put("/>");
    m_in_start_tag = false;
    return;
  }
  put_line();
  put("</");
  put(name);
  put(">");
}

void c_xml_writer::put_attribute(std::string_view name, std::string_view value, e_place place) {
  put(" ");
  put(name);
  put("=\"");
  put_escaped(name, value, place);
  put("\"");
}

void c_xml_writer::marshal_attribute_impl(std::string_view name, const c_optional_text& value) {
  if (value.isset()) put_attribute(name, value.get(), in_attribute);
}

void c_xml_writer::marshal_attribute_impl(std::string_view name,
                                          const c_optional_value<unsigned int>& value) {
  if (value.isset()) put_attribute(name, std::to_string(value.get()), in_attribute);
}

void c_xml_writer::marshal_attribute_impl(std::string_view name,
                                          const c_optional_value<unsigned long long>& value) {
  if (value.isset()) put_attribute(name, std::to_string(value.get()), in_attribute);
}

void c_xml_writer::marshal_element_impl(std::string_view name, const std::string& text) {
  start_element(name);
  if (error() != ELMX_OK) return;
  if (!text.empty()) {
    close_start_tag();
    put_escaped(name, text, in_content);
    put("</");
    put(name);
    put(">");
  } else {
    put("/>");
    m_in_start_tag = false;
  }
  m_open.pop_back();
}

void c_xml_writer::marshal_element_impl(std::string_view name, const c_optional_text& text) {
  if (text.isset()) marshal_element_impl(name, text.get());
}

void c_xml_writer::marshal_element_impl(std::string_view name, const c_text_list& texts) {
  for (std::size_t index = 0; index < texts.size() && error() == ELMX_OK; ++index) {
    marshal_element_impl(name, texts.at(index));
  }
}

void c_xml_writer::marshal_required_element_impl(std::string_view name,
                                                 const c_optional_text& text) {
  if (!text.isset()) handle_error(ELMX_MISSING_ELEMENT, "\"" + std::string(name) + "\" is missing");
  marshal_element_impl(name, text);
}

void c_xml_writer::put_escaped(std::string_view name, std::string_view value, e_place place) {
  while (!value.empty()) {
    const std::size_t plain = plain_length(value);
    put(value.substr(0, plain));
    value.remove_prefix(plain);
    if (value.empty()) return;
    const bool ascii = static_cast<unsigned char>(value.front()) < 0x80U;
    const std::size_t size = ascii ? 1 : character_size(value);
    const std::string_view written =
        ascii ? reference(value.front(), place == in_attribute) : value.substr(0, size);
    if (written.empty()) {
      return handle_error(ELMX_UNWRITABLE_TEXT, "the value of \"" + std::string(name) +
                                                    "\" holds what no XML document can carry");
    }
    put(written);
    value.remove_prefix(size);
  }
}

}  // namespace lmx60
