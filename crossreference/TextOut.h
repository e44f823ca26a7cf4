#pragma once

#include <crossreference/Module.h>
#include <crossreference/Word.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {

/// Collects text and hands it to a sink in large pieces; the last one when it is flushed. The sink
/// may throw, so nothing is handed over by the destructor. Inlined, so that what is always the same
/// text is stored, not copied.
class TextOut {
 public:
  using Sink = void (*)(std::string_view text, void* context);

  TextOut(Sink sink, void* context) : m_sink(sink), m_context(context) {}
  TextOut(const TextOut&) = delete;
  TextOut& operator=(const TextOut&) = delete;

  [[gnu::always_inline]] TextOut& operator<<(std::string_view text) {
    if (m_failed) return *this;
    if (text.size() > m_text.size() - m_size && !makeRoom(text.size())) {
      m_sink(text, m_context);
      return *this;
    }
    std::memcpy(m_text.data() + m_size, text.data(), text.size());
    m_size += text.size();
    return *this;
  }
  [[gnu::always_inline]] TextOut& operator<<(std::uint32_t number) {
    constexpr std::size_t most = 10;
    if (m_failed) return *this;
    if (most > m_text.size() - m_size) makeRoom(most);
    char* place = m_text.data() + m_size;
    if (number < 10) {
      *place = static_cast<char>('0' + number);
      ++m_size;
      return *this;
    }
    m_size += static_cast<std::size_t>(std::to_chars(place, place + most, number).ptr - place);
    return *this;
  }
  /// A stored name; one that is missing fails the output, and nothing is written from there on.
  void name(const Word* text) {
    if (text == nullptr) {
      m_failed = true;
    } else {
      *this << *text;
    }
  }
  bool failed() const { return m_failed; }
  void flush() {
    if (m_size != 0) m_sink(std::string_view(m_text).substr(0, m_size), m_context);
    m_size = 0;
  }

 private:
  static constexpr std::size_t pieceSize = std::size_t{1} << 16;

  // False for a text that is larger than a piece, which the sink can take as it is.
  [[gnu::noinline]] bool makeRoom(std::size_t size) {
    if (m_size + size <= pieceSize) {
      m_text.resize(std::min(std::max(m_size + size, 2 * m_text.size()), pieceSize));
      return true;
    }
    flush();
    return size <= m_text.size() || (size <= pieceSize && makeRoom(size));
  }

  Sink m_sink;
  void* m_context;
  std::string m_text;  // the room for a piece
  std::size_t m_size = 0;
  bool m_failed = false;
};

/// The records of the model's text form.
void writeBit(TextOut& out, const Bit& bit);
void writeSignal(TextOut& out, const Signal& signal);
void writeModule(TextOut& out, const Module& module);

}  // namespace XRF_RTL2LL
