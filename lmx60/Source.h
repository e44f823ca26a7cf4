#pragma once

#include <lmx60/Error.h>
#include <support/Api.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace lmx60 {

/// Where a reader takes a document from.
class XRF_API c_read {
 public:
  c_read() = default;
  c_read(const c_read&) = delete;
  c_read& operator=(const c_read&) = delete;
  virtual ~c_read();

  /// Puts up to `capacity` bytes at `place` and says how many; none at the end.
  virtual elmx_error read(char* place, std::size_t capacity, std::size_t& count) = 0;
  /// What faults call the document.
  virtual std::string name() const = 0;
  /// Why `read` failed, for people.
  virtual std::string problem() const;
};

/// A file, a pipe or a device. It is read piece by piece, never held as a whole.
class XRF_API c_read_file : public c_read {
 public:
  /// A path that cannot be opened shows at the first read.
  explicit c_read_file(const char* path);
  ~c_read_file() override;

  elmx_error read(char* place, std::size_t capacity, std::size_t& count) override;
  std::string name() const override;
  std::string problem() const override;

 private:
  std::string m_path;
  int m_descriptor = -1;
  int m_error = 0;
};

/// A document in memory, which has to outlive this object.
class XRF_API c_read_memory : public c_read {
 public:
  c_read_memory(const char* data, std::size_t length);
  ~c_read_memory() override;

  elmx_error read(char* place, std::size_t capacity, std::size_t& count) override;
  std::string name() const override;

 private:
  std::string_view m_rest;
};

}  // namespace lmx60
