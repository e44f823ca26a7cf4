#pragma once

#include <pybind11/pybind11.h>
#include <string>
#include <string_view>
#include <utility>

namespace xrf::python {

/// Text that crosses to Python and back unchanged, whatever bytes a file's names hold: what is not
/// UTF-8 becomes lone surrogates, as in the names of files.
struct Text {
  std::string value;
};

}  // namespace xrf::python

namespace pybind11::detail {

template <>
struct type_caster<xrf::python::Text> {
  PYBIND11_TYPE_CASTER(xrf::python::Text, const_name("str"));

  bool load(handle source, bool) {
    if (!source || PyUnicode_Check(source.ptr()) == 0) return false;
    const object bytes = reinterpret_steal<object>(
        PyUnicode_AsEncodedString(source.ptr(), "utf-8", "surrogateescape"));
    if (!bytes) throw error_already_set();
    value.value.assign(PyBytes_AS_STRING(bytes.ptr()),
                       static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr())));
    return true;
  }

  static handle cast(const xrf::python::Text& text, return_value_policy, handle) {
    PyObject* const made = PyUnicode_DecodeUTF8(
        text.value.data(), static_cast<Py_ssize_t>(text.value.size()), "surrogateescape");
    if (made == nullptr) throw error_already_set();
    return made;
  }
};

}  // namespace pybind11::detail

namespace xrf::python {

inline pybind11::object toPython(std::string_view text) {
  return pybind11::cast(Text{std::string(text)});
}

}  // namespace xrf::python
