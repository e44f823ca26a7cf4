#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>

/// What was read back from a device: the bits of the configuration memory that hold a one. A real
/// debugger would fetch frames over a cable; this one reads a text file of lines "FRAME OFFSET".
class Capture {
 public:
  Capture() = default;
  /// Throws std::runtime_error when the file cannot be read or a line is none.
  explicit Capture(const std::string& file);

  bool isTaken() const { return m_taken; }
  bool valueAt(std::uint32_t frame, std::uint32_t offset) const {
    return m_ones.contains({frame, offset});
  }

 private:
  bool m_taken = false;
  std::set<std::pair<std::uint32_t, std::uint32_t>> m_ones;
};
