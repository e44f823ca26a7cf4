#pragma once

#include <python/Text.h>

#include <cstddef>
#include <cstdint>
#include <fmt/format.h>
#include <pybind11/pybind11.h>
#include <stdexcept>
#include <string>

/// What the generated conversions between the binding's classes and those of `xrf.metadata` are
/// made of. Python's objects are plain data: nothing of them points into the binding.
namespace xrf::python::elements {

/// Modules may contain modules; Python may even tie a knot of them.
inline constexpr unsigned deepestNesting = 200;

inline void requireShallow(unsigned depth) {
  if (depth <= deepestNesting) return;
  throw std::invalid_argument(fmt::format("modules are nested more than {} deep", deepestNesting));
}

/// A new object of a class.
pybind11::object make(const char* type);

/// Whether `object` is one of a class; if not, a TypeError that says where it was found.
void require(pybind11::handle object, const char* type, const std::string& place);

/// The value of a member, which must be a text, an integer up to `most` or, where it may be absent,
/// None; else a TypeError or ValueError that says where it was found.
bool isPresent(pybind11::handle object, const char* member);
std::string textOf(pybind11::handle object, const char* type, const char* member);
std::uint64_t numberOf(pybind11::handle object, const char* type, const char* member,
                       std::uint64_t most);

/// Calls `visit(item, place)` for each item of a member that is a list.
template <class Visit>
void eachOf(pybind11::handle object, const char* type, const char* member, Visit visit) {
  const pybind11::object list = object.attr(member);
  const std::string place = fmt::format("{}.{}", type, member);
  if (!pybind11::isinstance<pybind11::list>(list)) {
    throw pybind11::type_error(place + " must be a list");
  }
  std::size_t position = 0;
  // A copy of its own, so that nobody changes it meanwhile.
  for (const pybind11::handle& item : pybind11::tuple(list)) {
    visit(item, fmt::format("{}[{}]", place, position++));
  }
}

/// The text of an item of a list.
std::string itemText(pybind11::handle item, const std::string& place);

}  // namespace xrf::python::elements
