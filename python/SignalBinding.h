#pragma once

#include <python/Handles.h>

#include <pybind11/pybind11.h>

namespace xrf::python {

/// The signal as `xrf find --json` writes it.
pybind11::dict toDict(const SignalHandle& self);

}  // namespace xrf::python
