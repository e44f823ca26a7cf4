#pragma once

#include <python/Handles.h>

#include <pybind11/pybind11.h>

namespace xrf::python {

/// The register bits of the RTL as dictionaries.
pybind11::list registerRows(const Opened& design);

/// The same as a structured array, filled without a Python object for any bit, and the full names
/// of the signals that its column "signal" numbers.
pybind11::tuple registerArray(const Opened& design);

}  // namespace xrf::python
