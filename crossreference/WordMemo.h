#pragma once

#include <support/WordBytes.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace XRF_RTL2LL {

/// A window of 16 bytes into it that begins n bytes before its middle masks the first n of 16.
inline constexpr std::array<char, 32> wordMemoMasks = [] {
  std::array<char, 32> bytes{};
  for (std::size_t at = 0; at < 16; ++at) bytes[at] = static_cast<char>(0xff);
  return bytes;
}();

/// The codes of short words that were met lately, so that the few words that most of a netlist
/// consists of need no look-up. A word is its own key: it is compared without a text to point at.
class WordMemo {
 public:
  static constexpr std::size_t longest = 16;

  struct Entry {
    std::uint64_t head = 0;
    std::uint64_t tail = 0;
    std::uint32_t code = 0;
  };
  /// Where a word is remembered, and what it has to be for that.
  struct Key {
    std::uint64_t head;
    std::uint64_t tail;
    bool is(const Entry& entry) const { return entry.head == head && entry.tail == tail; }
  };

  WordMemo() : m_entries(std::size_t{1} << sizeBits) {}

  static bool isShort(std::string_view word) { return word.size() - 1 < longest; }
  /// The key of a word of 1 to `longest` bytes, none of them NUL. All `longest` bytes are read.
  static Key keyOf(const char* text, std::size_t size) {
    const char* mask = wordMemoMasks.data() + longest - size;
    return {loadBytes<std::uint64_t>(text) & loadBytes<std::uint64_t>(mask),
            loadBytes<std::uint64_t>(text + 8) & loadBytes<std::uint64_t>(mask + 8)};
  }
  Entry& at(const Key& key) {
    const std::uint64_t mixed =
        (key.head ^ (key.tail * 0xff51afd7ed558ccdU >> 7)) * 0x9e3779b97f4a7c15U;
    return m_entries[mixed >> (64 - sizeBits)];
  }

 private:
  static constexpr unsigned sizeBits = 12;
  std::vector<Entry> m_entries;
};

}  // namespace XRF_RTL2LL
