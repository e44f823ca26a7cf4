#pragma once

#include <support/TextSource.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace XRF_RTL2LL {

/// The lines of a text, without their line feeds, and where the walk stands. Only a piece of the
/// text is in memory, the same for all of it, which grows for a line that does not fit. What
/// reading a failing file brought of a line is not taken for one.
class LineReader {
 public:
  /// So many bytes of what follows a line are in memory, or all up to the end of the text.
  static constexpr std::size_t ahead = std::size_t{1} << 15;
  static constexpr std::size_t usualPiece = std::size_t{1} << 18;

  /// The source must outlive the walk, which takes what was counted when it was opened.
  explicit LineReader(const TextSource& source, std::size_t piece = usualPiece);

  /// Steps to the next line; false at the end. A last line without a line feed counts.
  bool next();
  /// The current line; it stays in memory until the next step.
  std::string_view line() const { return m_line; }
  /// What follows the current line, as far as it is in memory; it stays there as long.
  std::string_view rest() const { return {m_next, static_cast<std::size_t>(m_end - m_next)}; }
  /// Passes lines of that, so many bytes in all.
  void skip(std::size_t bytes, std::uint64_t lines) {
    m_next += bytes;
    m_number += lines;
  }
  /// Whether the current line ended in a line feed.
  bool terminated() const { return m_terminated; }
  /// Number of the current line, from 1.
  std::uint64_t number() const { return m_number; }
  /// Bytes passed so far.
  std::uint64_t offset() const {
    return m_base + static_cast<std::uint64_t>(m_next - m_text.get());
  }
  std::uint64_t size() const { return m_source.size(); }
  /// Whether the text goes on where the walk ended.
  bool failed() const { return m_source.failed(); }

 private:
  bool readOn();

  const TextSource& m_source;
  std::size_t m_capacity;
  std::unique_ptr<char[]> m_text;  // what is in memory of the text
  const char* m_next;
  const char* m_end;
  std::uint64_t m_base = 0;  // offset of what is in memory
  std::uint64_t m_number = 0;
  std::string_view m_line;
  bool m_terminated = false;
  bool m_all_read = false;
};

}  // namespace XRF_RTL2LL
