#include <support/FileReplacement.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace XRF_RTL2LL {

namespace {

std::string resolved(const std::string& path) {
  char* real = ::realpath(path.c_str(), nullptr);
  if (real == nullptr) return path;
  std::string result(real);
  std::free(real);
  return result;
}

// The folder's name with its slash, or nothing for the current folder.
std::string folderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

// A name that no other thread or process of this machine uses.
std::string temporaryName(const std::string& folder) {
  static std::atomic<unsigned> count{0};
  return folder + ".xrf-" + std::to_string(::getpid()) + "-" + std::to_string(count++);
}

}  // namespace

FileReplacement::FileReplacement(const std::string& target) : m_target(target) {
  open();
  check(m_descriptor >= 0);
}

FileReplacement::~FileReplacement() {
  if (m_descriptor >= 0) ::close(m_descriptor);
  if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
}

bool FileReplacement::check(bool done) {
  if (!done && m_error == 0) m_error = errno;
  return m_error == 0;
}

void FileReplacement::open() {
  errno = ENOENT;
  if (m_target.empty()) return;
  struct stat existing = {};
  if (::stat(m_target.c_str(), &existing) != 0) {
    // A link to nowhere is replaced itself; an unusable path shows when the file is made.
    createBeside();
    return;
  }
  if (!S_ISREG(existing.st_mode)) {
    m_descriptor = ::open(m_target.c_str(), O_WRONLY | O_CLOEXEC);
    return;
  }
  if (::access(m_target.c_str(), W_OK) != 0) return;
  m_target = resolved(m_target);
  createBeside();
  if (m_descriptor >= 0) check(::fchmod(m_descriptor, existing.st_mode & 07777U) == 0);
}

void FileReplacement::createBeside() {
  const std::string folder = folderOf(m_target);
  // A file that an earlier process of this number left behind is stepped over.
  do {
    m_temporary = temporaryName(folder);
    m_descriptor = ::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  } while (m_descriptor < 0 && errno == EEXIST);
  if (m_descriptor < 0) m_temporary.clear();
}

bool FileReplacement::write(const char* data, std::size_t size) {
  while (m_error == 0 && size > 0) {
    const ssize_t written = ::write(m_descriptor, data, size);
    if (written < 0 && errno == EINTR) continue;
    if (!check(written >= 0)) break;
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return m_error == 0;
}

bool FileReplacement::commit() {
  if (m_error != 0) return false;
  if (!m_temporary.empty() && !check(::fsync(m_descriptor) == 0)) return false;
  const int descriptor = m_descriptor;
  m_descriptor = -1;
  if (!check(::close(descriptor) == 0)) return false;
  if (m_temporary.empty()) return true;
  if (!check(std::rename(m_temporary.c_str(), m_target.c_str()) == 0)) return false;
  m_temporary.clear();
  return true;
}

}  // namespace XRF_RTL2LL
