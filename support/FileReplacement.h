#pragma once

#include <cstddef>
#include <string>

namespace XRF_RTL2LL {

/// A file that appears under its name only when it is complete.
///
///     FileReplacement file("out.xml");
///     if (!file.write(text.data(), text.size()) || !file.commit()) complain(file.error());
///
/// Until `commit` an existing file stays as it is; without it the temporary file beside the target
/// is removed. A target that exists and is no regular file (a pipe, a device) is written to
/// directly. Through a symbolic link, the file it points at is replaced. Nothing is thrown: a step
/// that fails returns false, all later ones do too, and `error` is the errno of the first.
class FileReplacement {
 public:
  explicit FileReplacement(const std::string& target);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  bool write(const char* data, std::size_t size);
  bool commit();
  int error() const { return m_error; }

 private:
  void open();
  void createBeside();
  bool check(bool done);

  std::string m_target;
  std::string m_temporary;  // empty when the target is written to directly
  int m_descriptor = -1;
  int m_error = 0;
};

}  // namespace XRF_RTL2LL
