#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Short texts, compared and hashed eight bytes at a time without a call. The last eight bytes may
/// overlap those before them, so nothing beyond the text is read.
namespace XRF_RTL2LL {

template <class Number>
Number loadBytes(const char* from) {
  Number number;
  std::memcpy(&number, from, sizeof number);
  return number;
}

/// A number that stands for a text of at most eight bytes of a given size.
inline std::uint64_t shortText(const char* text, std::size_t size) {
  if (size == 8) return loadBytes<std::uint64_t>(text);
  if (size >= 4) {
    const std::uint64_t last = loadBytes<std::uint32_t>(text + size - 4);
    return loadBytes<std::uint32_t>(text) | last << 32;
  }
  if (size == 0) return 0;
  const auto byteAt = [&](std::size_t at) {
    return std::uint64_t{static_cast<unsigned char>(text[at])};
  };
  return byteAt(0) | byteAt(size / 2) << 8 | byteAt(size - 1) << 16;
}

inline bool sameText(const char* a, const char* b, std::size_t size) {
  if (size <= 8) return shortText(a, size) == shortText(b, size);
  const std::size_t last = size - 8;
  for (std::size_t at = 0; at < last; at += 8) {
    if (loadBytes<std::uint64_t>(a + at) != loadBytes<std::uint64_t>(b + at)) return false;
  }
  return loadBytes<std::uint64_t>(a + last) == loadBytes<std::uint64_t>(b + last);
}

/// Depends on the machine's byte order.
inline std::uint32_t hashText(std::string_view text) {
  constexpr std::uint64_t factor = 0x9e3779b97f4a7c15U;
  std::uint64_t state = text.size() * 0xff51afd7ed558ccdU;
  const auto mix = [&](std::uint64_t bytes) {
    state = (state ^ bytes) * factor;
    state ^= state >> 32;
  };
  if (text.size() <= 8) {
    mix(shortText(text.data(), text.size()));
  } else {
    const std::size_t last = text.size() - 8;
    for (std::size_t at = 0; at < last; at += 8) mix(loadBytes<std::uint64_t>(text.data() + at));
    mix(loadBytes<std::uint64_t>(text.data() + last));
  }
  // The low bits of a product depend on few of the bytes.
  return static_cast<std::uint32_t>((state * factor) >> 32);
}

}  // namespace XRF_RTL2LL
