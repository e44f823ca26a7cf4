#include <lmx60/XmlTokeniser.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace lmx60 {

namespace {

using XRF_RTL2LL::Limits;

// Bytes of a document that are taken in at once, and the most where a single tag or comment is
// longer than that.
constexpr std::size_t usualPiece = std::size_t{1} << 16;
constexpr std::size_t longestPiece = std::size_t{1} << 26;

// Stands between namespace and local name; no name can contain it.
constexpr XML_Char separator = '\n';

bool is_blank(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char letter) {
    return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n';
  });
}

elmx_error code_of(XML_Error error) {
  switch (error) {
    case XML_ERROR_NO_MEMORY:
      return ELMX_NO_MEMORY;
    case XML_ERROR_UNKNOWN_ENCODING:
    case XML_ERROR_INCORRECT_ENCODING:
      return ELMX_ENCODING;
    case XML_ERROR_EXTERNAL_ENTITY_HANDLING:
    case XML_ERROR_ATTRIBUTE_EXTERNAL_ENTITY_REF:
      return ELMX_EXTERNAL_ENTITY;
    case XML_ERROR_AMPLIFICATION_LIMIT_BREACH:
      return ELMX_HOSTILE_ENTITIES;
    default:
      return ELMX_NOT_WELL_FORMED;
  }
}

}  // namespace

c_xml_tokeniser::c_xml_tokeniser(c_read& source)
    : m_source(source),
      m_parser(XML_ParserCreateNS(nullptr, separator)),
      m_piece(usualPiece),
      m_most(Limits::xmlExpansionBase) {
  if (!m_parser) throw std::bad_alloc();
  set_handlers();
}

// An exception must not pass through Expat, which is C.
template <auto handler, class... Arguments>
void c_xml_tokeniser::guarded(void* self, Arguments... arguments) {
  auto& tokeniser = *static_cast<c_xml_tokeniser*>(self);
  // Expat may still tell the end of an empty element whose start was the last straw.
  if (tokeniser.m_error != ELMX_OK) return;
  try {
    (tokeniser.*handler)(arguments...);
  } catch (const std::bad_alloc&) {
    tokeniser.stop(ELMX_NO_MEMORY, "");
  }
}

void c_xml_tokeniser::set_handlers() {
  XML_Parser parser = m_parser.get();
  XML_SetUserData(parser, this);
  XML_SetElementHandler(parser, guarded<&c_xml_tokeniser::on_start>,
                        guarded<&c_xml_tokeniser::on_end>);
  XML_SetCharacterDataHandler(parser, guarded<&c_xml_tokeniser::on_text>);
  XML_SetEntityDeclHandler(
      parser,
      [](void* self, const XML_Char*, int, const XML_Char*, int, const XML_Char*, const XML_Char*,
         const XML_Char*, const XML_Char*) { guarded<&c_xml_tokeniser::on_entity>(self); });
  XML_SetAttlistDeclHandler(
      parser, [](void* self, const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*,
                 int) { guarded<&c_xml_tokeniser::on_attribute>(self); });
  // Unless it is asked to read parameter entities, Expat passes over what they might declare, and
  // values would come out shorter than they are.
  XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_ALWAYS);
  XML_SetExternalEntityRefHandler(parser, refuse_external);
}

void c_xml_tokeniser::on_start(const XML_Char* name, const XML_Char** attributes) {
  m_started = true;
  if (++m_depth > m_limits.xmlDepth) {
    return stop(ELMX_TOO_DEEP,
                "elements are nested more than " + std::to_string(m_limits.xmlDepth) + " deep");
  }
  const std::size_t first = m_attributes.size();
  const s_text kept = keep(name);
  for (; *attributes != nullptr; attributes += 2) {
    const s_text attribute = keep(attributes[0]);
    m_attributes.push_back({attribute, keep(attributes[1])});
  }
  m_events.push_back({start, kept, first, m_attributes.size() - first,
                      XML_GetCurrentLineNumber(m_parser.get()),
                      XML_GetCurrentColumnNumber(m_parser.get()) + 1});
  check_expansion();
}

void c_xml_tokeniser::on_end(const XML_Char*) {
  --m_depth;
  m_events.push_back({end,
                      {},
                      0,
                      0,
                      XML_GetCurrentLineNumber(m_parser.get()),
                      XML_GetCurrentColumnNumber(m_parser.get()) + 1});
}

void c_xml_tokeniser::on_text(const XML_Char* characters, int length) {
  const std::string_view piece(characters, static_cast<std::size_t>(length));
  if (m_events.empty() || m_events.back().kind != text) {
    m_events.push_back({text, {m_bytes.size(), 0}, 0, 0, 0, 0});
  }
  s_event& event = m_events.back();
  event.text.size += keep(piece).size;
  check_expansion();
  if (event.line == 0 && !is_blank(piece)) {
    event.line = XML_GetCurrentLineNumber(m_parser.get());
    event.column = XML_GetCurrentColumnNumber(m_parser.get()) + 1;
  }
}

void c_xml_tokeniser::on_entity() {
  if (++m_entities > m_limits.xmlEntities) {
    stop(ELMX_HOSTILE_ENTITIES,
         "the document declares more than " + std::to_string(m_limits.xmlEntities) + " entities");
  }
}

// Expat compares each with those before it.
void c_xml_tokeniser::on_attribute() {
  const std::uint64_t most = m_limits.xmlEntities * XRF_RTL2LL::Limits::xmlAttributesEach;
  if (++m_declared_attributes > most) {
    stop(ELMX_HOSTILE_ENTITIES,
         "the document declares more than " + std::to_string(most) + " attributes");
  }
}

int c_xml_tokeniser::refuse_external(XML_Parser, const XML_Char*, const XML_Char*, const XML_Char*,
                                     const XML_Char*) {
  return XML_STATUS_ERROR;
}

// Expat bounds what entities expand to, but not what attributes with default values do.
void c_xml_tokeniser::check_expansion() {
  m_given += m_bytes.size() - m_checked;
  m_checked = m_bytes.size();
  if (m_given > m_most) {
    stop(ELMX_HOSTILE_ENTITIES, "the document expands to more than " +
                                    std::to_string(m_limits.xmlExpansion) + " times its size");
  }
}

c_xml_tokeniser::s_text c_xml_tokeniser::keep(std::string_view bytes) {
  const std::size_t first = m_bytes.size();
  m_bytes += bytes;
  return {first, bytes.size()};
}

c_cracked_name c_xml_tokeniser::crack(std::string_view name) {
  const std::size_t parted = name.find(separator);
  if (parted == std::string_view::npos) return {{}, name};
  return {name.substr(0, parted), name.substr(parted + 1)};
}

std::string_view c_xml_tokeniser::characters() const { return view(event().text); }

s_position c_xml_tokeniser::position() const {
  if (m_kind == failed) return m_error_position;
  if (m_next == 0 || m_kind == finished) return {};
  return {event().line, event().column};
}

c_xml_tokeniser::e_kind c_xml_tokeniser::next() {
  if (m_kind == finished || m_kind == failed) return m_kind;
  while (m_next == m_events.size()) {
    if (m_ended) return m_kind = m_error == ELMX_OK ? finished : failed;
    refill();
  }
  return m_kind = m_events[m_next++].kind;
}

void c_xml_tokeniser::refill() {
  m_bytes.clear();
  m_checked = 0;
  m_attributes.clear();
  m_events.clear();
  m_next = 0;
  void* place = XML_GetBuffer(m_parser.get(), static_cast<int>(m_piece));
  if (place == nullptr) return fail();
  const std::size_t count = take(static_cast<char*>(place));
  if (count == 0 && m_source_error != ELMX_OK) return fail(m_source_error, m_source.problem());
  m_ended = count == 0;
  m_most += m_limits.xmlExpansion * count;
  if (XML_ParseBuffer(m_parser.get(), static_cast<int>(count), count == 0) != XML_STATUS_OK) {
    fail();
  }
  // Expat scans an unfinished token anew with each piece: doubling keeps that linear.
  m_piece = m_events.empty() ? std::min(m_piece * 2, longestPiece) : usualPiece;
}

// Fills the piece, however little the source gives at a time.
std::size_t c_xml_tokeniser::take(char* place) {
  std::size_t taken = 0;
  while (taken < m_piece && !m_source_ended) {
    std::size_t count = 0;
    m_source_error = m_source.read(place + taken, m_piece - taken, count);
    m_source_ended = m_source_error != ELMX_OK || count == 0;
    taken += count;
  }
  return taken;
}

void c_xml_tokeniser::fail() {
  const XML_Error error = XML_GetErrorCode(m_parser.get());
  m_ended = true;
  if (error == XML_ERROR_ABORTED) return;  // stop() has said why and where
  note_position();
  if (error == XML_ERROR_NO_ELEMENTS && !m_started) {
    return fail(ELMX_NO_DOCUMENT, "there is no element");
  }
  fail(code_of(error), error == XML_ERROR_NO_ELEMENTS
                           ? "the document ends before its root element is closed"
                           : XML_ErrorString(error));
}

void c_xml_tokeniser::fail(elmx_error error, std::string message) {
  m_ended = true;
  m_error = error;
  m_message = std::move(message);
}

void c_xml_tokeniser::note_position() {
  m_error_position = {XML_GetCurrentLineNumber(m_parser.get()),
                      XML_GetCurrentColumnNumber(m_parser.get()) + 1};
}

// Called by a handler, while the parser stands where what it tells of begins.
void c_xml_tokeniser::stop(elmx_error error, std::string message) {
  note_position();
  m_error = error;
  m_message = std::move(message);
  XML_StopParser(m_parser.get(), XML_FALSE);
}

}  // namespace lmx60
