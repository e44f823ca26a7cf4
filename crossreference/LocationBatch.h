#pragma once

#include <crossreference/LocationClaims.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace XRF_RTL2LL {

/// Lines of a location file that are looked up together: the next line mostly speaks of another end
/// of the design, but among many thousand there are several of each module.
class LocationBatch {
 public:
  struct Line {
    std::size_t net;  // where its name begins in the text
    std::size_t size;
    LocationClaims::Claim claim;
    Bit* bit;  // the one that it was found to speak of
  };

  /// False once there are as many as it pays to look up together.
  bool add(std::string_view net, const StateLocation& location, bool multiplexer) {
    constexpr std::size_t mostLines = std::size_t{1} << 16;
    constexpr std::size_t mostText = std::size_t{1} << 24;
    const std::size_t start = m_text.size();
    m_text += net;
    m_lines.push_back({start, net.size(), {location, false, multiplexer}, nullptr});
    return m_lines.size() < mostLines && m_text.size() < mostText;
  }
  void clear() {
    m_lines.clear();
    m_text.clear();
  }
  std::size_t size() const { return m_lines.size(); }

  /// In the order of the file.
  const Line& line(std::size_t at) const { return m_lines[at]; }
  std::string_view netOf(const Line& line) const {
    return std::string_view(m_text).substr(line.net, line.size);
  }

  /// Puts lines of one hash one after another, in the order of the file.
  template <class HashOf>
  void sort(HashOf hashOf) {
    m_order.clear();
    for (std::size_t at = 0; at < m_lines.size(); ++at) {
      m_order.push_back(std::uint64_t{hashOf(netOf(m_lines[at]))} << 32 | at);
    }
    std::sort(m_order.begin(), m_order.end());
  }
  std::uint32_t hashAt(std::size_t at) const {
    return static_cast<std::uint32_t>(m_order[at] >> 32);
  }
  Line& sorted(std::size_t at) { return m_lines[static_cast<std::uint32_t>(m_order[at])]; }
  /// Fetches a line, and once it is there, its name.
  void prefetchSorted(std::size_t at) { __builtin_prefetch(&sorted(at)); }
  void prefetchNet(std::size_t at) { __builtin_prefetch(m_text.data() + sorted(at).net); }

 private:
  std::string m_text;  // all names
  std::vector<Line> m_lines;
  std::vector<std::uint64_t> m_order;  // a hash above the number of the line
};

}  // namespace XRF_RTL2LL
