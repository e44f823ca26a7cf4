#pragma once

#include <support/HugePages.h>
#include <support/WordBytes.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {

/// Mixes the bytes of a text into a running hash, so that the hash of a long name can be extended
/// from that of its beginning.
std::uint64_t extendHash(std::uint64_t state, std::string_view text);
inline constexpr std::uint64_t emptyHash = 0xcbf29ce484222325U;
/// The final hash of a running one.
std::uint32_t finishHash(std::uint64_t state);

/// Every name of a model, each stored once. A pooled name lives as long as the pool.
class NamePool {
 public:
  NamePool();
  ~NamePool();
  NamePool(const NamePool&) = delete;
  NamePool& operator=(const NamePool&) = delete;

  const std::string* intern(std::string_view name) { return intern(name, hashOf(name)); }
  /// Null for null.
  const std::string* intern(const char* name) {
    return name == nullptr ? nullptr : intern(std::string_view(name));
  }
  /// For a name whose `hashOf` is known.
  const std::string* intern(std::string_view name, std::uint32_t hash) {
    for (std::size_t at = hash & m_mask;; at = (at + 1) & m_mask) {
      const Slot slot = slots()[at];
      if (slot.number == freeSlot) return enter(name, hash);
      if (slot.hash != hash) continue;
      const Name& stored = nameAt(slot.number);
      if (stored.size() == name.size() && sameText(stored.data(), name.data(), name.size())) {
        return &stored;
      }
    }
  }
  /// The stored name, or null.
  const std::string* find(std::string_view name) const;
  const std::string* empty() const { return &nameAt(0); }

  static std::uint32_t hashOf(std::string_view name) { return hashText(name); }
  /// The hash of a pooled name, which is kept beside it.
  static std::uint32_t hashOf(const std::string* pooled) {
    return static_cast<const Name*>(pooled)->hash;
  }
  /// Pooled names are numbered 0, 1, 2, ... in order of entry.
  static std::uint32_t numberOf(const std::string* pooled) {
    return static_cast<const Name*>(pooled)->number;
  }
  /// Fetches the memory that a look-up will need.
  void prefetch(std::uint32_t hash) const { __builtin_prefetch(slots() + (hash & m_mask)); }
  /// The name that a look-up will meet first, or null. It need not be the one looked for.
  const std::string* candidate(std::uint32_t hash) const {
    const Slot slot = slots()[hash & m_mask];
    return slot.number == freeSlot || slot.hash != hash ? nullptr : &nameAt(slot.number);
  }

 private:
  struct Name : std::string {
    Name(std::string_view name, std::uint32_t itsHash, std::uint32_t itsNumber)
        : std::string(name), hash(itsHash), number(itsNumber) {}
    std::uint32_t hash;
    std::uint32_t number;
  };
  static constexpr std::uint32_t freeSlot = 0xffffffffU;
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = freeSlot;
  };
  // Names never move: they lie in chunks, each twice as large as the one before it.
  static constexpr unsigned smallestChunk = 6;
  static constexpr unsigned chunks = 32 - smallestChunk + 1;
  struct Place {
    explicit Place(std::uint32_t number) {
      const std::uint64_t shifted = number + (std::uint64_t{1} << smallestChunk);
      const auto size = static_cast<unsigned>(std::bit_width(shifted)) - 1;
      chunk = size - smallestChunk;
      index = shifted - (std::uint64_t{1} << size);
    }
    unsigned chunk;
    std::uint64_t index;
  };

  Name& nameAt(std::uint32_t number) const {
    const Place place(number);
    return static_cast<Name*>(m_chunks[place.chunk].get())[place.index];
  }
  Slot* slots() const { return static_cast<Slot*>(m_slots.get()); }
  static Pages makeSlots(std::size_t count);
  const std::string* enter(std::string_view name, std::uint32_t hash);
  void grow();

  std::array<Pages, chunks> m_chunks;
  std::uint32_t m_count = 0;
  std::size_t m_mask = 63;
  Pages m_slots;
};

}  // namespace XRF_RTL2LL
