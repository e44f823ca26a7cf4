#include <support/FileReplacement.h>
#include <support/OpenDescriptor.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/file.h>
#include <unistd.h>

namespace XRF_RTL2LL {

namespace {

constexpr std::string_view prefix = ".xrf-";
constexpr std::string_view suffix = ".tmp";

std::string openableFolderOf(const std::string& path) {
  const std::string folder = folderOf(path);
  return folder.empty() ? "." : folder;
}

// A name that no other thread or process of this machine uses.
std::string temporaryName(const std::string& folder) {
  static std::atomic<unsigned> count{0};
  std::string name = folder;
  name.append(prefix).append(std::to_string(::getpid()));
  return name.append("-").append(std::to_string(count++)).append(suffix);
}

bool isTemporaryName(std::string_view name) {
  if (name.size() <= prefix.size() + suffix.size() || !name.starts_with(prefix) ||
      !name.ends_with(suffix)) {
    return false;
  }
  name.remove_prefix(prefix.size());
  name.remove_suffix(suffix.size());
  return std::all_of(name.begin(), name.end(),
                     [](char byte) { return byte == '-' || (byte >= '0' && byte <= '9'); });
}

bool isAt(const std::string& path, int descriptor) {
  struct stat there = {};
  struct stat open = {};
  return ::lstat(path.c_str(), &there) == 0 && ::fstat(descriptor, &open) == 0 &&
         there.st_dev == open.st_dev && there.st_ino == open.st_ino;
}

// Whoever writes a temporary file holds its lock, and the system lets go of it when the process
// ends, however it does.
void removeIfAbandoned(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return;
  struct stat status = {};
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
      status.st_uid == ::geteuid() && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 &&
      isAt(path, descriptor)) {
    ::unlink(path.c_str());
  }
  ::close(descriptor);
}

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

void removeAbandoned(const std::string& target) {
  const std::unique_ptr<DIR, CloseFolder> folder(::opendir(openableFolderOf(target).c_str()));
  if (folder == nullptr) return;
  while (const dirent* entry = ::readdir(folder.get())) {  // NOLINT(concurrency-mt-unsafe)
    const char* name = entry->d_name;
    if (isTemporaryName(name)) removeIfAbandoned(folderOf(target) + name);
  }
}

// A new name is on the disk once its folder is. Not every file system can be asked for that.
bool syncFolder(const std::string& path) {
  const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return true;
  const bool failed = ::fsync(folder) != 0 && errno == EIO;
  ::close(folder);
  if (failed) errno = EIO;
  return !failed;
}

}  // namespace

FileReplacement::FileReplacement(const std::string& target) : m_target(target) { open(); }

FileReplacement::~FileReplacement() {
  // The name goes before the lock does: who meets it in between would take it for abandoned.
  if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
  if (m_descriptor >= 0) ::close(m_descriptor);
}

bool FileReplacement::check(bool done) {
  if (!done && m_error == 0) m_error = errno;
  return m_error == 0;
}

void FileReplacement::open() {
  errno = ENOENT;
  if (!check(!m_target.empty())) return;
  if (const std::optional<int> named = openDescriptor(m_target)) {
    m_descriptor = duplicateForWriting(*named);
    check(m_descriptor >= 0);
    return;
  }
  struct stat existing = {};
  if (::stat(m_target.c_str(), &existing) == 0) {
    if (S_ISDIR(existing.st_mode)) errno = EISDIR;
    if (!check(!S_ISDIR(existing.st_mode))) return;
    if (!check(::access(m_target.c_str(), W_OK) == 0) || !S_ISREG(existing.st_mode)) return;
    m_replaced = existing;
  }
  std::string file = m_target;
  for (int links = 0; links <= mostLinks; ++links) {
    if (namesDescriptor(file)) {
      check(::access(file.c_str(), W_OK) == 0);
      return;
    }
    if (!followLink(file)) {
      m_target = file;
      createBeside();
      return;
    }
  }
  errno = ELOOP;
  check(false);
}

void FileReplacement::createBeside() {
  removeAbandoned(m_target);
  // What replaces a file must not be open to more people than that one while it is written.
  const mode_t mode = m_replaced ? 0600 : 0666;
  while (true) {
    m_temporary = temporaryName(folderOf(m_target));
    m_descriptor = ::open(m_temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (m_descriptor < 0) {
      // A file that an earlier process of this number left behind is stepped over.
      if (errno == EEXIST) continue;
      check(false);
      m_temporary.clear();
      return;
    }
    if (lockTemporary()) return;
    ::close(m_descriptor);
  }
}

// Until it is locked a temporary file looks abandoned, and may be gone already. Where the file
// system knows no locks nobody else gets one either, and nothing is ever taken for abandoned.
bool FileReplacement::lockTemporary() const {
  int result = 0;
  do {
    result = ::flock(m_descriptor, LOCK_EX);
  } while (result != 0 && errno == EINTR);
  return isAt(m_temporary, m_descriptor);
}

bool FileReplacement::write(const char* data, std::size_t size) {
  if (m_error != 0) return false;
  if (m_descriptor < 0) m_descriptor = ::open(m_target.c_str(), O_WRONLY | O_CLOEXEC);
  check(m_descriptor >= 0);
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
  if (!isDirect() && !finishBeside()) return false;
  const int descriptor = m_descriptor;
  m_descriptor = -1;
  return descriptor < 0 || check(::close(descriptor) == 0);
}

bool FileReplacement::finishBeside() {
  // Once the file has its name nothing may be thrown.
  const std::string folder = openableFolderOf(m_target);
  if (m_replaced) {
    // Only a privileged process may give a file away; others make it their own, as any editor does.
    const int given = ::fchown(m_descriptor, m_replaced->st_uid, m_replaced->st_gid);
    static_cast<void>(given);
    if (!check(::fchmod(m_descriptor, m_replaced->st_mode & 07777U) == 0)) return false;
  }
  if (!check(::fsync(m_descriptor) == 0)) return false;
  if (!check(std::rename(m_temporary.c_str(), m_target.c_str()) == 0)) return false;
  m_temporary.clear();
  return check(syncFolder(folder));
}

}  // namespace XRF_RTL2LL
