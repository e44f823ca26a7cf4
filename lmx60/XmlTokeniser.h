#pragma once

#include <lmx60/CrackedName.h>
#include <lmx60/Error.h>
#include <lmx60/Source.h>
#include <support/Limits.h>

#include <cstdint>
#include <expat.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lmx60 {

struct s_position {
  std::uint64_t line = 0;
  std::uint64_t column = 0;
};

/// What XML the document consists of, one event after the other. Expat pushes and readers pull, so
/// the events of one piece of input wait here. Whatever a view refers to lives until `next`.
class c_xml_tokeniser {
 public:
  enum e_kind { start, end, text, finished, failed };

  explicit c_xml_tokeniser(c_read& source);

  /// What the document may ask for; set before its first event.
  void set_limits(const XRF_RTL2LL::Limits& limits) { m_limits = limits.possible(); }

  /// Steps to the next event. `finished` and `failed` stay.
  e_kind next();
  e_kind kind() const { return m_kind; }
  s_position position() const;

  // Of a start event. A full name begins with its namespace, if any: it is that of a known name
  // only where there is none.
  c_cracked_name name() const { return crack(full_name()); }
  std::string_view full_name() const { return view(event().text); }
  std::size_t attribute_count() const { return event().count; }
  c_cracked_name attribute_name(std::size_t index) const {
    return crack(full_attribute_name(index));
  }
  std::string_view full_attribute_name(std::size_t index) const {
    return view(attribute(index).name);
  }
  std::string_view attribute_value(std::size_t index) const { return view(attribute(index).value); }

  // Of a text event
  std::string_view characters() const;
  /// Whether the text is more than white space.
  bool has_ink() const { return event().line != 0; }

  // After `failed`
  elmx_error error() const { return m_error; }
  const std::string& message() const { return m_message; }

 private:
  // Places in m_bytes and m_attributes, both of which grow while events are added.
  struct s_text {
    std::size_t first;
    std::size_t size;
  };
  struct s_attribute {
    s_text name;
    s_text value;
  };
  struct s_event {
    e_kind kind;
    s_text text;
    std::size_t attributes;
    std::size_t count;
    std::uint64_t line;  // 0 for white space
    std::uint64_t column;
  };
  struct s_free {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  template <auto handler, class... Arguments>
  static void guarded(void* self, Arguments... arguments);
  void on_start(const XML_Char* name, const XML_Char** attributes);
  void on_end(const XML_Char* name);
  void on_text(const XML_Char* characters, int length);
  void on_entity();
  void on_attribute();
  static int refuse_external(XML_Parser parser, const XML_Char* context, const XML_Char* base,
                             const XML_Char* system, const XML_Char* public_id);

  void set_handlers();
  void refill();
  std::size_t take(char* place);
  void fail();
  void fail(elmx_error error, std::string message);
  void note_position();
  void stop(elmx_error error, std::string message);

  const s_attribute& attribute(std::size_t index) const {
    return m_attributes[event().attributes + index];
  }
  const s_event& event() const { return m_events[m_next - 1]; }
  s_text keep(std::string_view bytes);
  std::string_view view(s_text place) const { return {m_bytes.data() + place.first, place.size}; }
  static c_cracked_name crack(std::string_view name);
  void check_expansion();

  c_read& m_source;
  XRF_RTL2LL::Limits m_limits;
  std::unique_ptr<XML_ParserStruct, s_free> m_parser;
  std::size_t m_piece;
  std::uint64_t m_given = 0;  // bytes of names, values and texts
  std::uint64_t m_most;       // that the document so far may come to
  std::size_t m_checked = 0;  // of m_bytes
  std::uint64_t m_entities = 0;
  std::uint64_t m_declared_attributes = 0;
  std::uint64_t m_depth = 0;
  bool m_started = false;  // the root was seen
  bool m_ended = false;    // nothing is left to feed
  bool m_source_ended = false;
  elmx_error m_source_error = ELMX_OK;

  std::string m_bytes;
  std::vector<s_attribute> m_attributes;
  std::vector<s_event> m_events;
  std::size_t m_next = 0;

  e_kind m_kind = text;
  elmx_error m_error = ELMX_OK;
  s_position m_error_position;
  std::string m_message;
};

}  // namespace lmx60
