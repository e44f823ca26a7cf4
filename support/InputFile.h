#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {

class Descriptor;

/// What some editors begin a UTF-8 file with; no part of the text.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// A whole input held in memory: a regular file, a pipe, anything that can be read to its end. It
/// is copied, not mapped, since a mapped file that somebody truncates would end the process.
class InputFile {
 public:
  explicit InputFile(const std::string& path);
  /// Reads on from where the file stands.
  explicit InputFile(const Descriptor& file);

  /// False when the path could not be opened or read; a directory cannot.
  bool isOpen() const { return m_open; }
  /// The bytes without a byte order mark.
  std::string_view text() const;

 private:
  void read(const Descriptor& file, std::size_t expected);
  void grow(std::size_t capacity);

  struct Free {
    void operator()(char* text) const;
  };
  std::unique_ptr<char, Free> m_text;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
  bool m_open = false;
};

}  // namespace XRF_RTL2LL
