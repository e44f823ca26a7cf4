#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>

namespace XRF_RTL2LL {

/// A name that a model's pool holds. Its text follows it in memory, so that most words lie in one
/// line of the processor's cache, and ends with a zero byte.
class alignas(8) Word {
 public:
  Word(const Word&) = delete;
  Word& operator=(const Word&) = delete;

  const char* c_str() const { return reinterpret_cast<const char*>(this + 1); }
  std::size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }
  std::string_view view() const { return {c_str(), m_size}; }
  operator std::string_view() const { return view(); }
  /// Words of one pool are numbered 0, 1, 2, ... in order of entry.
  std::uint32_t number() const { return m_number; }

 private:
  friend class NamePool;

  // The bytes that a word of a text takes.
  static constexpr std::size_t bytes(std::size_t text) { return sizeof(Word) + text + 1; }
  // `memory` has room for so many bytes.
  static const Word* make(void* memory, std::string_view text, std::uint32_t number) {
    char* bytes = static_cast<char*>(memory) + sizeof(Word);
    if (!text.empty()) std::memcpy(bytes, text.data(), text.size());
    bytes[text.size()] = '\0';
    return new (memory) Word(static_cast<std::uint32_t>(text.size()), number);
  }

  Word(std::uint32_t size, std::uint32_t number) : m_size(size), m_number(number) {}

  std::uint32_t m_size;
  std::uint32_t m_number;
};

}  // namespace XRF_RTL2LL
