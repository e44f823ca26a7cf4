#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Where runs of bytes in the text of a netlist end. Each function finds the first byte at or after
/// a place that ends the run; there must be one, followed by `edifMargin` bytes that may be read.
namespace XRF_RTL2LL {

inline constexpr std::size_t edifMargin = 16;

enum EdifByte : std::uint8_t { EdifBlank = 1, EdifWordStop = 2, EdifStringStop = 4 };

constexpr std::array<std::uint8_t, 256> classifyEdifBytes() {
  std::array<std::uint8_t, 256> classes{};
  const auto mark = [&](char byte, int kinds) {
    classes[static_cast<unsigned char>(byte)] = static_cast<std::uint8_t>(kinds);
  };
  for (const char byte : {' ', '\t', '\n', '\v', '\f', '\r'}) mark(byte, EdifBlank | EdifWordStop);
  for (const char byte : {'(', ')'}) mark(byte, EdifWordStop);
  for (const char byte : {'"', '\\', '\0'}) mark(byte, EdifWordStop | EdifStringStop);
  return classes;
}
inline constexpr std::array<std::uint8_t, 256> edifBytes = classifyEdifBytes();

inline bool isEdif(EdifByte kind, char byte) {
  return (edifBytes[static_cast<unsigned char>(byte)] & kind) != 0;
}

/// Byte by byte, for any machine.
namespace edif_single {

inline const char* passBlanks(const char* at) {
  while (isEdif(EdifBlank, *at)) ++at;
  return at;
}

inline const char* findWordStop(const char* at) {
  while (!isEdif(EdifWordStop, *at)) ++at;
  return at;
}

inline const char* findStringStop(const char* at) {
  while (!isEdif(EdifStringStop, *at)) ++at;
  return at;
}

}  // namespace edif_single

#if defined(__SSE2__)

/// Sixteen bytes together.
namespace edif_blocks {

/// The bytes of a place that are examined together; a set of them has the lowest bit for the first.
class EdifBlock {
 public:
  explicit EdifBlock(const char* text)
      : m_bytes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text))) {}  // NOLINT

  std::uint32_t notBlank() const {
    const __m128i fromTab = _mm_sub_epi8(m_bytes, all('\t'));
    return positions(_mm_or_si128(
               equal(' '), _mm_cmpeq_epi8(_mm_min_epu8(fromTab, all('\r' - '\t')), fromTab))) ^
           0xffffU;
  }
  /// All that end a word, and some others: those up to the parentheses, and the backslash.
  std::uint32_t maybeWordStop() const {
    const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(m_bytes, all(')')), m_bytes);
    return positions(_mm_or_si128(low, equal('\\')));
  }
  std::uint32_t stringStop() const {
    return positions(_mm_or_si128(_mm_or_si128(equal('"'), equal('\\')), equal('\0')));
  }

 private:
  static __m128i all(int byte) { return _mm_set1_epi8(static_cast<char>(byte)); }
  static std::uint32_t positions(__m128i mask) {
    return static_cast<std::uint32_t>(_mm_movemask_epi8(mask));
  }
  __m128i equal(char byte) const { return _mm_cmpeq_epi8(m_bytes, all(byte)); }

  __m128i m_bytes;
};
static_assert(sizeof(EdifBlock) == edifMargin);

inline const char* passBlanks(const char* at) {
  // Mostly a word or a single blank comes first.
  if (!isEdif(EdifBlank, *at)) return at;
  if (!isEdif(EdifBlank, *++at)) return at;
  while (true) {
    const std::uint32_t found = EdifBlock(at).notBlank();
    if (found != 0) return at + std::countr_zero(found);
    at += sizeof(EdifBlock);
  }
}

inline const char* findWordStop(const char* at) {
  while (true) {
    for (std::uint32_t maybe = EdifBlock(at).maybeWordStop(); maybe != 0; maybe &= maybe - 1) {
      const char* found = at + std::countr_zero(maybe);
      if (isEdif(EdifWordStop, *found)) return found;
    }
    at += sizeof(EdifBlock);
  }
}

inline const char* findStringStop(const char* at) {
  while (true) {
    const std::uint32_t found = EdifBlock(at).stringStop();
    if (found != 0) return at + std::countr_zero(found);
    at += sizeof(EdifBlock);
  }
}

}  // namespace edif_blocks

using edif_blocks::findStringStop;
using edif_blocks::findWordStop;
using edif_blocks::passBlanks;

#else

using edif_single::findStringStop;
using edif_single::findWordStop;
using edif_single::passBlanks;

#endif

}  // namespace XRF_RTL2LL
