#include <support/OpenDescriptor.h>

#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace XRF_RTL2LL {

namespace {

struct Free {
  void operator()(char* text) const { std::free(text); }
};

std::string realFolderOf(const std::string& path) {
  const std::string folder = folderOf(path);
  const std::unique_ptr<char, Free> real(
      ::realpath(folder.empty() ? "." : folder.c_str(), nullptr));
  return real == nullptr ? std::string() : std::string(real.get());
}

// Whether a folder lists the descriptors of this process: its own, or that of one of its threads.
bool listsOwnDescriptors(const std::string& folder) {
  const std::string own = "/proc/" + std::to_string(::getpid()) + "/";
  return folder.starts_with(own) && folder.ends_with("/fd");
}

}  // namespace

std::string folderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

bool namesDescriptor(const std::string& path) { return realFolderOf(path).starts_with("/proc/"); }

bool followLink(std::string& path) {
  std::string text(PATH_MAX, '\0');
  const ssize_t length = ::readlink(path.c_str(), text.data(), text.size());
  if (length < 0) return false;
  text.resize(static_cast<std::size_t>(length));
  path = text.starts_with('/') ? text : folderOf(path) + text;
  return true;
}

std::optional<int> openDescriptor(const std::string& path) {
  std::string file = path;
  for (int links = 0; links <= mostLinks; ++links) {
    if (listsOwnDescriptors(realFolderOf(file))) {
      const char* name = file.data() + folderOf(file).size();
      const char* end = file.data() + file.size();
      int number = 0;
      const auto [stop, error] = std::from_chars(name, end, number);
      if (error != std::errc() || stop != end) return std::nullopt;
      return number;
    }
    if (!followLink(file)) return std::nullopt;
  }
  return std::nullopt;
}

int duplicateForWriting(int descriptor) {
  const int flags = ::fcntl(descriptor, F_GETFL);
  if (flags < 0) return -1;
  if ((flags & O_ACCMODE) == O_RDONLY) {
    errno = EBADF;
    return -1;
  }
  return ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
}

}  // namespace XRF_RTL2LL
