#pragma once

#include <lmx60/Error.h>
#include <support/Api.h>

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>

namespace XRF_RTL2LL {
class FileReplacement;
}

namespace lmx60 {

/// Where a writer puts a document.
class XRF_API c_write {
 public:
  c_write() = default;
  c_write(const c_write&) = delete;
  c_write& operator=(const c_write&) = delete;
  virtual ~c_write();

  virtual elmx_error write(const char* data, std::size_t size) = 0;
  /// Called once, when the document is complete.
  virtual elmx_error commit() = 0;
  /// What faults call the document.
  virtual std::string name() const = 0;
  /// Why a step failed, for people.
  virtual std::string problem() const;
};

/// A file that appears under its name only when the document is complete: until then, and after a
/// fault, an existing file stays as it is.
class XRF_API c_write_file : public c_write {
 public:
  explicit c_write_file(const char* path);
  ~c_write_file() override;

  elmx_error write(const char* data, std::size_t size) override;
  elmx_error commit() override;
  std::string name() const override;
  std::string problem() const override;

 private:
  std::string m_path;
  std::unique_ptr<XRF_RTL2LL::FileReplacement> m_file;
};

/// A stream. After a fault it holds the beginning of a document.
class XRF_API c_write_stream : public c_write {
 public:
  explicit c_write_stream(std::ostream& stream);
  ~c_write_stream() override;

  elmx_error write(const char* data, std::size_t size) override;
  elmx_error commit() override;
  std::string name() const override;

 private:
  std::ostream& m_stream;
};

/// A string, which is replaced when the document is complete.
class XRF_API c_write_string : public c_write {
 public:
  explicit c_write_string(std::string& text);
  ~c_write_string() override;

  elmx_error write(const char* data, std::size_t size) override;
  elmx_error commit() override;
  std::string name() const override;

 private:
  std::string& m_target;
  std::string m_text;
};

}  // namespace lmx60
