#pragma once

#include <crossreference/Module.h>

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {

/// Collects text and hands it to a sink in large pieces; the last one when it is flushed. The sink
/// may throw, so nothing is handed over by the destructor.
class TextOut {
 public:
  using Sink = void (*)(std::string_view text, void* context);

  TextOut(Sink sink, void* context) : m_sink(sink), m_context(context) {}
  TextOut(const TextOut&) = delete;
  TextOut& operator=(const TextOut&) = delete;

  TextOut& operator<<(std::string_view text) {
    if (m_failed) return *this;
    m_text += text;
    if (m_text.size() >= pieceSize) flush();
    return *this;
  }
  TextOut& operator<<(std::uint32_t number) {
    char digits[10];
    const char* end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
    return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
  }
  /// A name; one that is missing fails the output, and nothing is written from there on.
  void name(const char* text) {
    if (text == nullptr) {
      m_failed = true;
    } else {
      *this << text;
    }
  }
  bool failed() const { return m_failed; }
  void flush() {
    if (!m_text.empty()) m_sink(m_text, m_context);
    m_text.clear();
  }

 private:
  static constexpr std::size_t pieceSize = std::size_t{1} << 16;

  Sink m_sink;
  void* m_context;
  std::string m_text;
  bool m_failed = false;
};

/// The records of the model's text form.
void writeBit(TextOut& out, const Bit& bit);
void writeSignal(TextOut& out, const Signal& signal);
void writeModule(TextOut& out, const Module& module);

}  // namespace XRF_RTL2LL
