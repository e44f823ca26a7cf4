#pragma once

#include <crossreference/Word.h>
#include <support/HugePages.h>
#include <support/PageArray.h>
#include <support/WordBytes.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace XRF_RTL2LL {

/// Mixes the bytes of a text into a running hash, so that the hash of a long name can be extended
/// from that of its beginning.
std::uint64_t extendHash(std::uint64_t state, std::string_view text);
inline constexpr std::uint64_t emptyHash = 0xcbf29ce484222325U;
/// The final hash of a running one.
std::uint32_t finishHash(std::uint64_t state);

/// Every name of a model, each stored once. A word lives as long as the pool and stays where it is.
/// A pool holds up to 32 GB of words, none of 4 GB; what is more ends as if there were no memory
/// left, in std::bad_alloc.
class NamePool {
 public:
  NamePool();
  NamePool(const NamePool&) = delete;
  NamePool& operator=(const NamePool&) = delete;

  const Word* intern(std::string_view name) { return intern(name, hashOf(name)); }
  /// Null for null.
  const Word* intern(const char* name) {
    return name == nullptr ? nullptr : intern(std::string_view(name));
  }
  /// For a name whose `hashOf` is known.
  const Word* intern(std::string_view name, std::uint32_t hash) {
    const Word* word = find(name, hash);
    return word != nullptr ? word : enter(name, hash);
  }
  /// The stored name, or null.
  const Word* find(std::string_view name) const { return find(name, hashOf(name)); }
  const Word* empty() const { return &wordAt(firstPlace); }

  static std::uint32_t hashOf(std::string_view name) { return hashText(name); }
  /// Fetches the memory that a look-up will need.
  void prefetch(std::uint32_t hash) const { __builtin_prefetch(&m_slots[hash & m_mask]); }
  /// The name that a look-up will meet first, or null. It need not be the one looked for.
  const Word* candidate(std::uint32_t hash) const {
    const Slot slot = m_slots[hash & m_mask];
    return slot.place == freeSlot || slot.hash != hash ? nullptr : &wordAt(slot.place);
  }

 private:
  // Of zero bytes in a new table. Places count from 1, in units of the alignment of words.
  static constexpr std::uint32_t freeSlot = 0;
  static constexpr std::uint32_t firstPlace = 1;
  struct Slot {
    std::uint32_t hash;
    std::uint32_t place;
  };
  // Words never move: they lie in chunks, each twice as large as the one before it.
  static constexpr unsigned smallestChunk = 9;
  static constexpr unsigned chunks = 32 - smallestChunk;
  struct Place {
    explicit Place(std::uint64_t place) {
      const std::uint64_t shifted = place + (std::uint64_t{1} << smallestChunk);
      const auto size = static_cast<unsigned>(std::bit_width(shifted)) - 1;
      chunk = size - smallestChunk;
      index = shifted - (std::uint64_t{1} << size);
    }
    std::uint64_t chunkSize() const { return std::uint64_t{1} << (smallestChunk + chunk); }
    unsigned chunk;
    std::uint64_t index;
  };

  const Word& wordAt(std::uint32_t unit) const {
    const Place place(unit);
    return *reinterpret_cast<const Word*>(static_cast<const char*>(m_chunks[place.chunk].get()) +
                                          place.index * alignof(Word));
  }
  const Word* find(std::string_view name, std::uint32_t hash) const {
    for (std::size_t at = hash & m_mask;; at = (at + 1) & m_mask) {
      const Slot slot = m_slots[at];
      if (slot.place == freeSlot) return nullptr;
      if (slot.hash != hash) continue;
      const Word& word = wordAt(slot.place);
      if (word.size() == name.size() && sameText(word.c_str(), name.data(), name.size())) {
        return &word;
      }
    }
  }
  const Word* enter(std::string_view name, std::uint32_t hash);
  void* makeRoom(std::size_t bytes);
  void grow();

  std::array<Pages, chunks> m_chunks;
  std::uint64_t m_next = firstPlace;  // the place behind the last word
  std::uint32_t m_count = 0;
  std::size_t m_mask = 63;
  PageArray<Slot> m_slots;
};

}  // namespace XRF_RTL2LL
