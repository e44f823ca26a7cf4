#pragma once

#include <lmx60/Error.h>
#include <support/Api.h>

#include <stdexcept>
#include <string>

namespace lmx60 {

/// What the runtime throws: misuse of the objects, never the fault of a document.
class XRF_API c_lmx_exception : public std::runtime_error {
 public:
  c_lmx_exception(elmx_error code, const std::string& message);
  c_lmx_exception(const c_lmx_exception&) = default;
  ~c_lmx_exception() override;
  elmx_error code() const { return m_code; }

 private:
  elmx_error m_code;
};

/// A reader was asked for something that it does not stand at.
class XRF_API c_lmx_reader_exception : public c_lmx_exception {
 public:
  explicit c_lmx_reader_exception(const std::string& message);
  c_lmx_reader_exception(const c_lmx_reader_exception&) = default;
  ~c_lmx_reader_exception() override;
};

/// A list has no such position, a child is absent, or a null child was given.
class XRF_API lmx_exception : public c_lmx_exception {
 public:
  using c_lmx_exception::c_lmx_exception;
  lmx_exception(const lmx_exception&) = default;
  ~lmx_exception() override;
};

namespace detail {

// Out of line, so that the templates that check stay small.
[[noreturn]] XRF_API void throw_bad_index(std::size_t index, std::size_t size);
[[noreturn]] XRF_API void throw_absent_child();
[[noreturn]] XRF_API void throw_null_child();

}  // namespace detail

}  // namespace lmx60
