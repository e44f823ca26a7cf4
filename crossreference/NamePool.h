#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

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

  const std::string* intern(std::string_view name);
  /// The stored name, or null.
  const std::string* find(std::string_view name) const;
  /// Null for null.
  const std::string* intern(const char* name) {
    return name == nullptr ? nullptr : intern(std::string_view(name));
  }
  const std::string* empty() const { return &m_names.front(); }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = 0;  // of the name, counted from 1; 0 is a free slot
  };
  void grow();

  std::deque<std::string> m_names;
  std::vector<Slot> m_slots;
};

}  // namespace XRF_RTL2LL
