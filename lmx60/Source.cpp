#include <lmx60/Source.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lmx60 {

c_read::~c_read() = default;

std::string c_read::problem() const { return "the document cannot be read"; }

c_read_file::c_read_file(const char* path) : m_path(path == nullptr ? "" : path) {
  m_descriptor = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
  if (m_descriptor < 0) m_error = errno;
}

c_read_file::~c_read_file() {
  if (m_descriptor >= 0) ::close(m_descriptor);
}

elmx_error c_read_file::read(char* place, std::size_t capacity, std::size_t& count) {
  count = 0;
  if (m_descriptor < 0) return ELMX_CANNOT_OPEN;
  ssize_t got = 0;
  do {
    got = ::read(m_descriptor, place, capacity);
  } while (got < 0 && errno == EINTR);
  if (got < 0) {
    m_error = errno;
    return ELMX_CANNOT_READ;
  }
  count = static_cast<std::size_t>(got);
  return ELMX_OK;
}

std::string c_read_file::name() const { return m_path; }

std::string c_read_file::problem() const {
  return (m_descriptor < 0 ? "cannot open the file: " : "cannot read the file: ") +
         std::string(std::strerror(m_error));
}

c_read_memory::c_read_memory(const char* data, std::size_t length)
    : m_rest(data == nullptr ? std::string_view() : std::string_view(data, length)) {}

c_read_memory::~c_read_memory() = default;

elmx_error c_read_memory::read(char* place, std::size_t capacity, std::size_t& count) {
  count = m_rest.copy(place, capacity);
  m_rest.remove_prefix(count);
  return ELMX_OK;
}

std::string c_read_memory::name() const { return "memory"; }

}  // namespace lmx60
