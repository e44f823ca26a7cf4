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

/// The lines of a text, without their line feeds, and where the walk stands.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : m_text(text) {}

  /// Steps to the next line; false at the end. A last line without a line feed counts.
  bool next();
  /// What follows the current line.
  std::string_view rest() const { return m_text.substr(m_next); }
  /// Passes lines of that, so many bytes in all.
  void skip(std::size_t bytes, std::uint64_t lines) {
    m_next += bytes;
    m_number += lines;
  }
  std::string_view line() const { return m_line; }
  /// Whether the current line ended in a line feed.
  bool terminated() const { return m_terminated; }
  /// Number of the current line, from 1.
  std::uint64_t number() const { return m_number; }
  /// Bytes passed so far.
  std::uint64_t offset() const { return m_next; }
  std::uint64_t size() const { return m_text.size(); }

 private:
  std::string_view m_text;
  std::string_view m_line;
  std::size_t m_next = 0;
  std::uint64_t m_number = 0;
  bool m_terminated = false;
};

}  // namespace XRF_RTL2LL
