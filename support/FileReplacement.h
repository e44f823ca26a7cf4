#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace XRF_RTL2LL {

/// A file that appears under its name only when it is complete.
///
///     FileReplacement file("out.xml");
///     if (!file.write(text.data(), text.size()) || !file.commit()) complain(file.error());
///
/// Until `commit` an existing file stays as it is; without it the temporary file beside the target
/// is removed. What a killed process left behind in that folder is removed by the next replacement
/// there; a lock tells it from what another one still writes. `commit` waits until the file is on
/// the disk. Through symbolic links, the file they point at is replaced; it keeps its mode, and its
/// owner where the system permits. A target that exists and is no regular file (a pipe, a device)
/// is written to directly, and one that names an open descriptor (/dev/stdout) through it: what was
/// written through it before stays.
///
/// Nothing is thrown but std::bad_alloc: a step that fails returns false, all later ones do too,
/// and `error` is the errno of the first.
class FileReplacement {
 public:
  explicit FileReplacement(const std::string& target);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  bool write(const char* data, std::size_t size);
  bool commit();
  int error() const { return m_error; }

  /// Where the bytes go until `commit`, for writers that want a path instead of `write`: they must
  /// not replace the file there.
  const std::string& path() const { return isDirect() ? m_target : m_temporary; }
  bool isDirect() const { return m_temporary.empty(); }

 private:
  void open();
  void createBeside();
  bool lockTemporary() const;
  bool finishBeside();
  bool check(bool done);

  std::string m_target;
  std::string m_temporary;  // empty when the target is written to directly
  std::optional<struct stat> m_replaced;
  int m_descriptor = -1;
  int m_error = 0;
};

}  // namespace XRF_RTL2LL
