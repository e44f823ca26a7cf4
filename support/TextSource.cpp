#include <support/TextSource.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <sys/stat.h>

namespace XRF_RTL2LL {

TextSource::TextSource(const std::string& path) {
  struct stat status = {};
  m_file.emplace(path);
  const bool readable = m_file->number() >= 0 && ::fstat(m_file->number(), &status) == 0;
  // A regular file without a size is one of those that the kernel makes up while they are read.
  if (readable && S_ISREG(status.st_mode) && status.st_size > 0) {
    m_file_size = static_cast<std::uint64_t>(status.st_size);
    m_open = true;
    passMark();
    return;
  }
  if (readable) m_input.emplace(*m_file);
  m_file.reset();
  if (!m_input) return;
  m_kept = m_input->text();
  m_open = m_input->isOpen();
}

void TextSource::passMark() {
  std::array<char, byteOrderMark.size()> start{};
  const std::size_t size = read(0, start.data(), start.size());
  if (std::string_view(start.data(), size) != byteOrderMark) return;
  m_start = byteOrderMark.size();
  m_file_size -= m_start;
}

std::size_t TextSource::read(std::uint64_t offset, char* place, std::size_t size) const {
  if (!m_file) {
    if (offset >= m_kept.size()) return 0;
    const std::string_view piece = m_kept.substr(offset, size);
    std::memcpy(place, piece.data(), piece.size());
    return piece.size();
  }
  std::size_t done = 0;
  while (done < size) {
    const auto at = static_cast<off_t>(m_start + offset + done);
    const ssize_t got = m_file->readAt(at, place + done, size - done);
    if (got < 0) m_failed = true;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

}  // namespace XRF_RTL2LL
