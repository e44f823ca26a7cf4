#include <python/Elements.h>

namespace xrf::python::elements {

namespace py = pybind11;

namespace {

py::object classOf(const char* type) {
  return py::module_::import("xrf.metadata._elements").attr(type);
}

std::string wrongType(const std::string& place, const char* expected, py::handle found) {
  return fmt::format("{} must be {}, not {}", place, expected,
                     py::str(py::type::handle_of(found).attr("__name__")).cast<std::string>());
}

std::string placeOf(const char* type, const char* member) {
  return fmt::format("{}.{}", type, member);
}

}  // namespace

py::object make(const char* type) { return classOf(type)(); }

void require(py::handle object, const char* type, const std::string& place) {
  if (py::isinstance(object, classOf(type))) return;
  throw py::type_error(wrongType(place, type, object));
}

bool isPresent(py::handle object, const char* member) { return !object.attr(member).is_none(); }

std::string itemText(py::handle item, const std::string& place) {
  if (!py::isinstance<py::str>(item)) throw py::type_error(wrongType(place, "str", item));
  return item.cast<std::string>();
}

std::string textOf(py::handle object, const char* type, const char* member) {
  return itemText(object.attr(member), placeOf(type, member));
}

std::uint64_t numberOf(py::handle object, const char* type, const char* member,
                       std::uint64_t most) {
  const py::object value = object.attr(member);
  if (!py::isinstance<py::int_>(value)) {
    throw py::type_error(wrongType(placeOf(type, member), "int", value));
  }
  const bool fits = value >= py::int_(0) && value <= py::int_(most);
  if (!fits) {
    throw py::value_error(fmt::format("{} must be 0 to {}", placeOf(type, member), most));
  }
  return value.cast<std::uint64_t>();
}

}  // namespace xrf::python::elements
