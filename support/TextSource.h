#pragma once

#include <support/Descriptor.h>
#include <support/InputFile.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {

/// A text that is read in pieces, from any offset and as often as wanted, so that a large file need
/// not be held in memory. A regular file is read where it lies, not mapped, since a mapped file
/// that somebody truncates would end the process; what can be read only once, like a pipe, is kept.
class TextSource {
 public:
  explicit TextSource(const std::string& path);
  /// A text that lives as long as the source.
  explicit TextSource(std::string_view text) : m_kept(text), m_open(true) {}
  TextSource(const TextSource&) = delete;
  TextSource& operator=(const TextSource&) = delete;

  /// False when the path could not be opened or read; a directory cannot.
  bool isOpen() const { return m_open; }
  /// Bytes of the text without a byte order mark, as counted when it was opened.
  std::uint64_t size() const { return m_file ? m_file_size : m_kept.size(); }
  /// Reads bytes of the text; fewer than asked for only at its end, or when reading fails.
  std::size_t read(std::uint64_t offset, char* place, std::size_t size) const;
  /// Whether reading has failed at some time.
  bool failed() const { return m_failed; }

 private:
  void passMark();

  std::optional<Descriptor> m_file;
  std::uint64_t m_start = 0;  // of the text in the file
  std::uint64_t m_file_size = 0;
  std::optional<InputFile> m_input;
  std::string_view m_kept;
  bool m_open = false;
  mutable bool m_failed = false;
};

}  // namespace XRF_RTL2LL
