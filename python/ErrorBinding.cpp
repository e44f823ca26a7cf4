#include <python/Bindings.h>
#include <python/Text.h>
#include <tools/xrf/Failure.h>

#include <exception>
#include <utility>

namespace xrf::python {

namespace py = pybind11;

namespace {

py::object numberOrNone(std::uint64_t number) {
  return number == 0 ? py::object(py::none()) : py::int_(number);
}

void raise(const Failure& failure) {
  const py::object type = py::module_::import("xrf._error").attr("Error");
  const py::object file = failure.file.empty() ? py::object(py::none()) : toPython(failure.file);
  const py::object error = type(toPython(failure.what()), file, numberOrNone(failure.line),
                                numberOrNone(failure.column));
  PyErr_SetObject(type.ptr(), error.ptr());
}

}  // namespace

void bindErrors() {
  py::register_local_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(std::move(thrown));
    } catch (const UsageFailure& failure) {
      PyErr_SetString(PyExc_ValueError, failure.what());
    } catch (const Failure& failure) {
      raise(failure);
    }
  });
}

}  // namespace xrf::python
