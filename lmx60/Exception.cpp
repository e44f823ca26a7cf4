#include <lmx60/Exception.h>

namespace lmx60 {

c_lmx_exception::c_lmx_exception(elmx_error code, const std::string& message)
    : std::runtime_error(message), m_code(code) {}

// Each class has a function out of line, so that its type information exists once.
c_lmx_exception::~c_lmx_exception() = default;

c_lmx_reader_exception::c_lmx_reader_exception(const std::string& message)
    : c_lmx_exception(ELMX_READER_STATE, message) {}

c_lmx_reader_exception::~c_lmx_reader_exception() = default;

lmx_exception::~lmx_exception() = default;

namespace detail {

void throw_bad_index(std::size_t index, std::size_t size) {
  throw lmx_exception(ELMX_BAD_INDEX, "position " + std::to_string(index) + " of a list of " +
                                          std::to_string(size));
}

void throw_absent_child() { throw lmx_exception(ELMX_ABSENT_CHILD, "the child element is absent"); }

void throw_null_child() {
  throw lmx_exception(ELMX_NULL_CHILD, "a null pointer was given as a child element");
}

}  // namespace detail

}  // namespace lmx60
