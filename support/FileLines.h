#pragma once

#include <support/LineReader.h>
#include <support/Report.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {

/// A walk over the lines of a file that is read: it reports how far it got, and a fatal error
/// raised meanwhile tells the line.
class FileLines {
 public:
  /// `phase` names the walk to the progress handler. It and the source must outlive the walk.
  FileLines(const std::string& path, const TextSource& source, const char* phase);

  /// Steps to the next line; false at the end. A file that fails before its end is fatal.
  bool next() {
    if (!m_lines.next()) return end();
    if (m_lines.offset() >= m_report) report();
    return true;
  }
  /// What follows the current line: LineReader::ahead bytes at least, or all.
  std::string_view rest() const { return m_lines.rest(); }
  /// Passes lines of that, so many bytes in all.
  void skip(std::size_t bytes, std::uint64_t lines) { m_lines.skip(bytes, lines); }
  std::string_view line() const { return m_lines.line(); }
  /// Whether the current line ended in a line feed.
  bool terminated() const { return m_lines.terminated(); }
  /// Bytes passed so far.
  std::uint64_t offset() const { return m_lines.offset(); }
  /// Bytes of the whole file.
  std::uint64_t size() const { return m_lines.size(); }

 private:
  void report();
  bool end() const;

  LineReader m_lines;
  const char* m_phase;
  std::uint64_t m_report = 0;  // the offset at which progress is told next
  ReadPlace m_place;
};

}  // namespace XRF_RTL2LL
