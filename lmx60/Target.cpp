#include <lmx60/Target.h>
#include <support/FileReplacement.h>

#include <cstring>
#include <ostream>

namespace lmx60 {

c_write::~c_write() = default;

std::string c_write::problem() const { return "the document cannot be written"; }

c_write_file::c_write_file(const char* path)
    : m_path(path == nullptr ? "" : path),
      m_file(std::make_unique<XRF_RTL2LL::FileReplacement>(m_path)) {}

c_write_file::~c_write_file() = default;

elmx_error c_write_file::write(const char* data, std::size_t size) {
  return m_file->write(data, size) ? ELMX_OK : ELMX_CANNOT_WRITE;
}

elmx_error c_write_file::commit() { return m_file->commit() ? ELMX_OK : ELMX_CANNOT_WRITE; }

std::string c_write_file::name() const { return m_path; }

std::string c_write_file::problem() const {
  return "cannot write the file: " + std::string(std::strerror(m_file->error()));
}

c_write_stream::c_write_stream(std::ostream& stream) : m_stream(stream) {}

c_write_stream::~c_write_stream() = default;

elmx_error c_write_stream::write(const char* data, std::size_t size) {
  m_stream.write(data, static_cast<std::streamsize>(size));
  return m_stream ? ELMX_OK : ELMX_CANNOT_WRITE;
}

elmx_error c_write_stream::commit() {
  m_stream.flush();
  return m_stream ? ELMX_OK : ELMX_CANNOT_WRITE;
}

std::string c_write_stream::name() const { return "stream"; }

c_write_string::c_write_string(std::string& text) : m_target(text) {}

c_write_string::~c_write_string() = default;

elmx_error c_write_string::write(const char* data, std::size_t size) {
  m_text.append(data, size);
  return ELMX_OK;
}

elmx_error c_write_string::commit() {
  m_target.swap(m_text);
  return ELMX_OK;
}

std::string c_write_string::name() const { return "string"; }

}  // namespace lmx60
