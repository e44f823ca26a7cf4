#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <string_view>

namespace test {

/// The bytes of a file; empty when it cannot be read.
inline std::string contentOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// A file in a temporary folder of its own; both are removed at the end.
class TempFile {
 public:
  explicit TempFile(std::string_view content = "", const std::string& name = "input")
      : m_folder(makeFolder()), m_path(m_folder + "/" + name) {
    write(content);
  }
  ~TempFile() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  const std::string& path() const { return m_path; }
  const std::string& folder() const { return m_folder; }
  /// A path beside the file where nothing is.
  std::string missing() const { return m_folder + "/missing"; }
  std::string content() const { return contentOf(m_path); }
  void write(std::string_view content) const {
    std::ofstream(m_path, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
  }

 private:
  static std::string makeFolder() {
    std::string pattern = std::filesystem::temp_directory_path().string() + "/xrf-test-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return pattern;
  }

  std::string m_folder;
  std::string m_path;
};

}  // namespace test
