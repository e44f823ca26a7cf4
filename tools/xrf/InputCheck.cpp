#include <tools/xrf/Failure.h>
#include <tools/xrf/InputCheck.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace xrf {

void requireReadable(const std::string& path) {
  struct stat file {};
  if (stat(path.c_str(), &file) != 0 || access(path.c_str(), R_OK) != 0) {
    throw Failure("cannot read: " + std::string(std::strerror(errno)), path);
  }
  if (S_ISDIR(file.st_mode)) throw Failure("cannot read: it is a directory", path);
}

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code ignored;
  return std::filesystem::equivalent(a, b, ignored);
}

}  // namespace xrf
