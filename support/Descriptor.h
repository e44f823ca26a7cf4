#pragma once

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

namespace XRF_RTL2LL {

/// A file open for reading, closed at the end.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(const std::string& path)
      : m_number(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~Descriptor() {
    if (m_number >= 0) ::close(m_number);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  /// Negative when the file could not be opened.
  int number() const { return m_number; }

  /// As read(2), but a signal does not interrupt it.
  ssize_t read(char* place, std::size_t size) const {
    return retried([&] { return ::read(m_number, place, size); });
  }
  /// As pread(2), but a signal does not interrupt it.
  ssize_t readAt(off_t offset, char* place, std::size_t size) const {
    return retried([&] { return ::pread(m_number, place, size, offset); });
  }

 private:
  template <class Call>
  static ssize_t retried(Call call) {
    ssize_t got = 0;
    do {
      got = call();
    } while (got < 0 && errno == EINTR);
    return got;
  }

  int m_number = -1;
};

}  // namespace XRF_RTL2LL
