#include <support/Descriptor.h>
#include <support/InputFile.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <sys/stat.h>

namespace XRF_RTL2LL {

void InputFile::Free::operator()(char* text) const { std::free(text); }

InputFile::InputFile(const std::string& path) : InputFile(Descriptor(path)) {}

InputFile::InputFile(const Descriptor& file) {
  if (file.number() < 0) return;
  struct stat status = {};
  if (::fstat(file.number(), &status) != 0 || S_ISDIR(status.st_mode)) return;
  const bool sized = S_ISREG(status.st_mode) && status.st_size > 0;
  read(file, sized ? static_cast<std::size_t>(status.st_size) : 0);
}

std::string_view InputFile::text() const {
  std::string_view text(m_text.get(), m_size);
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  return text;
}

void InputFile::grow(std::size_t capacity) {
  char* text = static_cast<char*>(std::realloc(m_text.get(), capacity));
  if (text == nullptr) throw std::bad_alloc();
  static_cast<void>(m_text.release());
  m_text.reset(text);
  m_capacity = capacity;
}

void InputFile::read(const Descriptor& file, std::size_t expected) {
  constexpr std::size_t smallest = std::size_t{1} << 16;
  // One byte more than expected, so that the end of a file of known size shows without growing.
  grow(std::max(expected + 1, smallest));
  while (true) {
    if (m_size == m_capacity) grow(m_capacity * 2);
    const ssize_t got = file.read(m_text.get() + m_size, m_capacity - m_size);
    if (got < 0) return;
    if (got == 0) break;
    m_size += static_cast<std::size_t>(got);
  }
  m_open = true;
}

}  // namespace XRF_RTL2LL
