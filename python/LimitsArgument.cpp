#include <python/LimitsArgument.h>

#include <algorithm>
#include <fmt/format.h>
#include <string>

namespace xrf::python {

namespace py = pybind11;

using XRF_RTL2LL::Limits;

namespace {

std::string keyOf(const LimitName& name) {
  std::string key = name.words;
  std::replace(key.begin(), key.end(), '-', '_');
  return key;
}

const LimitName& limitNamed(const std::string& key, Reads reads) {
  std::string known;
  for (const LimitName& name : limitNames) {
    if (!isOffered(name, reads)) continue;
    if (keyOf(name) == key) return name;
    known += (known.empty() ? "" : ", ") + keyOf(name);
  }
  throw py::value_error(fmt::format("no limit is named '{}'; there are {}", key, known));
}

std::uint64_t numberOf(const py::handle& value, const std::string& key, std::uint64_t most) {
  if (!py::isinstance<py::int_>(value)) {
    throw py::type_error(fmt::format("limit {} must be an int", key));
  }
  try {
    const auto number = value.cast<std::uint64_t>();
    if (number <= most) return number;
  } catch (const py::cast_error&) {
  }
  throw py::value_error(fmt::format("limit {} must be from 0 to {}", key, most));
}

}  // namespace

Limits limitsOf(const py::object& limits, Reads reads) {
  Limits wanted;
  if (limits.is_none()) return wanted;
  if (!py::isinstance<py::dict>(limits)) throw py::type_error("limits must be a dict or None");
  for (const auto& [name, value] : limits.cast<py::dict>()) {
    if (!py::isinstance<py::str>(name)) throw py::type_error("the names of limits must be str");
    const auto key = name.cast<std::string>();
    const LimitName& limit = limitNamed(key, reads);
    wanted.*limit.limit = numberOf(value, key, Limits::highest().*limit.limit);
  }
  return wanted;
}

}  // namespace xrf::python
