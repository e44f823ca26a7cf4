#pragma once

#include <crossreference/Module.h>

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {

/// Collects text and hands it to a sink in large pieces.
class TextOut {
 public:
  using Sink = void (*)(std::string_view text, void* context);

  TextOut(Sink sink, void* context) : m_sink(sink), m_context(context) {}
  ~TextOut() { flush(); }
  TextOut(const TextOut&) = delete;
  TextOut& operator=(const TextOut&) = delete;

  TextOut& operator<<(std::string_view text) {
    m_text += text;
    if (m_text.size() >= pieceSize) flush();
    return *this;
  }
  TextOut& operator<<(std::uint32_t number) {
    char digits[10];
    const char* end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
    return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
  }
  void flush() {
    if (!m_text.empty()) m_sink(m_text, m_context);
    m_text.clear();
  }

 private:
  static constexpr std::size_t pieceSize = std::size_t{1} << 16;

  Sink m_sink;
  void* m_context;
  std::string m_text;
};

/// The records of the model's text form.
void writeBit(TextOut& out, const Bit& bit);
void writeSignal(TextOut& out, const Signal& signal);
void writeModule(TextOut& out, const Module& module);

}  // namespace XRF_RTL2LL
