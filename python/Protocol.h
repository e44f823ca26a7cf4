#pragma once

#include <functional>
#include <pybind11/pybind11.h>
#include <utility>

namespace xrf::python {

/// What every handle class offers: equality, a hash, and pickling, which gives the dictionary of
/// `to_dict`, since the design behind a handle does not travel. Copies are the handle itself.
template <class Handle, class Address>
void addProtocol(pybind11::class_<Handle>& type, Address address) {
  namespace py = pybind11;
  type.def(
      "__eq__", [](const Handle& self, const Handle& other) { return self == other; },
      py::is_operator(), py::arg("other"));
  type.def("__hash__",
           [address](const Handle& self) { return std::hash<const void*>()(address(self)); });
  type.def("__copy__", [](py::object self) { return self; });
  type.def(
      "__deepcopy__", [](py::object self, const py::object&) { return self; }, py::arg("memo"));
  type.def("__reduce__", [](const py::object& self) {
    const py::object make = py::module_::import("builtins").attr("dict");
    return py::make_tuple(make, py::make_tuple(self.attr("to_dict")()));
  });
}

}  // namespace xrf::python
