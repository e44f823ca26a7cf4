#include <tools/xrf/Failure.h>
#include <tools/xrf/InputCheck.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace xrf {

void requireReadable(const std::string& path, FileKind wanted) {
  struct stat file {};
  if (stat(path.c_str(), &file) != 0 || access(path.c_str(), R_OK) != 0) {
    const std::string reason = std::strerror(errno);
    const char* const hint = path == "-" ? " (standard input is /dev/stdin)" : "";
    throw Failure("cannot read: " + reason + hint, path);
  }
  if (S_ISDIR(file.st_mode)) throw Failure("cannot read: it is a directory", path);
  const FileKind kind = kindOf(path);
  if (kind == FileKind::Unknown || kind == wanted) return;
  const char* const cure =
      kind == FileKind::Compressed ? "; unpack it on the way, as in <(zcat FILE)" : "";
  throw Failure(
      std::string("this is ") + nameOf(kind) + ", where " + nameOf(wanted) + " is expected" + cure,
      path);
}

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code ignored;
  return std::filesystem::equivalent(a, b, ignored);
}

}  // namespace xrf
