#include <lmx60/Exception.h>
#include <lmx60/XmlReader.h>
#include <lmx60/XmlTokeniser.h>

#include <utility>

namespace lmx60 {

namespace {

// What a message quotes of a value; values may be of any length.
std::string quoted(std::string_view value) {
  constexpr std::size_t longest = 64;
  if (value.size() <= longest) return "\"" + std::string(value) + "\"";
  std::size_t size = longest;
  while (size > 0 && (static_cast<unsigned char>(value[size]) & 0xC0U) == 0x80U) --size;
  return "\"" + std::string(value.substr(0, size)) + "...\"";
}

std::string verdict(elmx_error code, const c_integer_spec& spec) {
  switch (code) {
    case ELMX_BELOW_MINIMUM:
      return " is below " + spec.minimum();
    case ELMX_ABOVE_MAXIMUM:
      return " is above " + spec.maximum();
    default:
      return " is no decimal integer";
  }
}

}  // namespace

c_xml_reader::c_xml_reader(c_read& source)
    : m_source(source), m_tokeniser(std::make_unique<c_xml_tokeniser>(source)) {}

c_xml_reader::~c_xml_reader() = default;

void c_xml_reader::set_error_handler(error_handler handler) { m_handler = std::move(handler); }

void c_xml_reader::set_limits(const XRF_RTL2LL::Limits& limits) { m_tokeniser->set_limits(limits); }

std::string c_xml_reader::element_name() const {
  if (m_tokeniser->kind() == c_xml_tokeniser::start)
    return std::string(m_tokeniser->name().local());
  return std::string(m_element);
}

s_debug_error c_xml_reader::fault_here(elmx_error code, const std::string& message,
                                       elmx_severity severity) const {
  const s_position place = m_tokeniser->position();
  return {code,           severity,        place.line, place.column,
          element_name(), m_source.name(), m_binding,  message};
}

elmx_error c_xml_reader::handle_error(elmx_error code, const std::string& message,
                                      elmx_severity severity) {
  s_debug_error fault = fault_here(code, message, severity);
  elmx_error answer = severity == ELMX_WARNING ? ELMX_OK : code;
  if (m_handler) answer = m_handler(fault);
  if (answer != ELMX_OK) {
    m_fault = std::move(fault);
  } else {
    ++(severity == ELMX_WARNING ? m_warnings : m_tolerated);
  }
  return answer;
}

// Nothing can be read behind such a fault, whatever a handler thinks of it.
elmx_error c_xml_reader::stop_at_fault() {
  m_fault = fault_here(m_tokeniser->error(), m_tokeniser->message(), ELMX_ERROR);
  const elmx_error answer = m_handler ? m_handler(m_fault) : m_fault.code;
  return answer != ELMX_OK ? answer : m_fault.code;
}

elmx_error c_xml_reader::get_element_event(c_cracked_name& name) {
  m_begun = true;
  m_attribute = 0;
  // Before the root there is neither text nor an end.
  if (m_tokeniser->next() != c_xml_tokeniser::start) return stop_at_fault();
  name = m_tokeniser->name();
  return ELMX_OK;
}

elmx_error c_xml_reader::check_element(std::string_view expected) {
  if (!m_begun) {
    c_cracked_name first;
    const elmx_error error = get_element_event(first);
    if (error != ELMX_OK) return error;
  }
  if (m_tokeniser->kind() != c_xml_tokeniser::start) {
    throw c_lmx_reader_exception("the reader does not stand at an element");
  }
  m_child = expected;
  const c_cracked_name name = m_tokeniser->name();
  if (name.get_element_ns_id(m_ns_map) == c_cracked_name::no_namespace &&
      name.local() == expected) {
    return ELMX_OK;
  }
  return handle_error(ELMX_WRONG_ROOT, "the element is not \"" + std::string(expected) + "\"" +
                                           (name.uri().empty() ? "" : " without a namespace"));
}

elmx_error c_xml_reader::finish() {
  m_element = {};
  while (m_tokeniser->next() != c_xml_tokeniser::finished) {
    if (m_tokeniser->kind() == c_xml_tokeniser::failed) return stop_at_fault();
  }
  return ELMX_OK;
}

bool c_xml_reader::next_attribute() {
  if (m_attribute == m_tokeniser->attribute_count()) return false;
  ++m_attribute;
  return true;
}

int c_xml_reader::tokenise(f_tokenise names) const {
  return names(m_tokeniser->full_attribute_name(m_attribute - 1));
}

elmx_error c_xml_reader::unmarshal_attribute_impl(c_optional_text& value) {
  value.set(m_tokeniser->attribute_value(m_attribute - 1));
  return ELMX_OK;
}

template <class Value>
elmx_error c_xml_reader::unmarshal_integer(c_optional_value<Value>& value,
                                           const c_integer_spec& spec) {
  const std::string_view text = collapse(m_tokeniser->attribute_value(m_attribute - 1));
  const elmx_error error = spec.validate(text);
  if (error == ELMX_OK) {
    value.set(static_cast<Value>(c_big_int(text).to_unsigned()));
    return ELMX_OK;
  }
  const std::string name(m_tokeniser->attribute_name(m_attribute - 1).local());
  return handle_error(error, "attribute " + name + ": " + quoted(text) + verdict(error, spec));
}

elmx_error c_xml_reader::unmarshal_attribute_impl(c_optional_value<unsigned int>& value,
                                                  const c_integer_spec& spec) {
  return unmarshal_integer(value, spec);
}

elmx_error c_xml_reader::unmarshal_attribute_impl(c_optional_value<unsigned long long>& value,
                                                  const c_integer_spec& spec) {
  return unmarshal_integer(value, spec);
}

elmx_error c_xml_reader::report_unknown_attribute() {
  const c_cracked_name name = m_tokeniser->attribute_name(m_attribute - 1);
  return handle_error(ELMX_UNKNOWN_ATTRIBUTE, "unknown attribute " + quoted(name.local()),
                      ELMX_WARNING);
}

void c_xml_reader::open(std::unique_ptr<c_unmarshal_helper> helper) {
  helper->m_element = m_child;
  m_open.push_back(std::move(helper));
}

elmx_error c_xml_reader::unmarshal_content(c_unmarshal_helper& outermost) {
  outermost.m_element = m_child;
  const std::size_t outside = m_open.size();
  while (true) {
    c_unmarshal_helper& innermost = m_open.size() > outside ? *m_open.back() : outermost;
    m_element = innermost.m_element;
    int token = no_token;
    elmx_error error = get_known_element_event(innermost.m_selector, token);
    if (error == ELMX_OK && token != no_token) error = innermost.unmarshal_child(*this, token);
    if (error != ELMX_OK) {
      m_open.resize(outside);
      return error;
    }
    if (token != no_token) continue;
    if (m_open.size() == outside) return ELMX_OK;
    m_open.pop_back();
  }
}

elmx_error c_xml_reader::get_known_element_event(c_known_elements_selector& selector, int& token) {
  token = no_token;
  while (true) {
    elmx_error error = ELMX_OK;
    switch (m_tokeniser->next()) {
      case c_xml_tokeniser::start:
        error = select_child(selector, token);
        if (token != no_token) return error;
        break;
      case c_xml_tokeniser::text:
        error = report_text();
        break;
      case c_xml_tokeniser::end:
        return report_missing(selector, selector.end());
      default:
        return stop_at_fault();
    }
    if (error != ELMX_OK) return error;
  }
}

elmx_error c_xml_reader::select_child(c_known_elements_selector& selector, int& token) {
  m_attribute = 0;
  const int found = selector.tokenise(m_tokeniser->full_name());
  if (found == no_token) return skip_unknown_element();
  if (!selector.is_in_order(found)) {
    const elmx_error error =
        handle_error(ELMX_UNEXPECTED_ELEMENT, quoted(selector.name(found)) +
                                                  " may not follow what stands before it in " +
                                                  quoted(m_element));
    return error != ELMX_OK ? error : skip_element();
  }
  const elmx_error error = report_missing(selector, found);
  if (error != ELMX_OK) return error;
  selector.step_to(found);
  m_child = selector.name(found);
  token = found;
  return ELMX_OK;
}

elmx_error c_xml_reader::report_missing(c_known_elements_selector& selector, int before) {
  for (int missing = selector.next_missing(before); missing != no_token;
       missing = selector.next_missing(before)) {
    const elmx_error error =
        handle_error(ELMX_MISSING_ELEMENT,
                     quoted(selector.name(missing)) + " is missing in " + quoted(m_element));
    if (error != ELMX_OK) return error;
  }
  return ELMX_OK;
}

elmx_error c_xml_reader::report_text() {
  if (!m_tokeniser->has_ink()) return ELMX_OK;
  return handle_error(ELMX_UNKNOWN_TEXT,
                      "text where only elements belong: " + quoted(m_tokeniser->characters()),
                      ELMX_WARNING);
}

elmx_error c_xml_reader::skip_unknown_element() {
  const elmx_error error = handle_error(
      ELMX_UNKNOWN_ELEMENT,
      "unknown element " + quoted(m_tokeniser->name().local()) + " in " + quoted(m_element),
      ELMX_WARNING);
  return error != ELMX_OK ? error : skip_element();
}

elmx_error c_xml_reader::skip_element() {
  for (std::size_t depth = 1; depth > 0;) {
    switch (m_tokeniser->next()) {
      case c_xml_tokeniser::start:
        ++depth;
        break;
      case c_xml_tokeniser::end:
        --depth;
        break;
      case c_xml_tokeniser::text:
        break;
      default:
        return stop_at_fault();
    }
  }
  return ELMX_OK;
}

elmx_error c_xml_reader::unmarshal_empty_content() {
  static constexpr s_known_elements none;
  m_element = m_child;
  c_known_elements_selector selector(none);
  int token = no_token;
  return get_known_element_event(selector, token);
}

elmx_error c_xml_reader::unmarshal_child_element_impl(std::string& text) {
  m_element = m_child;
  text.clear();
  elmx_error error = ELMX_OK;
  while (error == ELMX_OK && next_attribute()) error = report_unknown_attribute();
  while (error == ELMX_OK) {
    switch (m_tokeniser->next()) {
      case c_xml_tokeniser::start:
        error = skip_unknown_element();
        break;
      case c_xml_tokeniser::text:
        text += m_tokeniser->characters();
        break;
      case c_xml_tokeniser::end:
        return ELMX_OK;
      default:
        return stop_at_fault();
    }
  }
  return error;
}

}  // namespace lmx60
