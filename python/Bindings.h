#pragma once

#include <pybind11/pybind11.h>

/// The parts of the extension; each adds its classes and functions.
namespace xrf::python {

void bindErrors();
void bindBits(pybind11::module_& module);
void bindSignals(pybind11::module_& module);
void bindModules(pybind11::module_& module);
void bindDesigns(pybind11::module_& module);
void bindEmulation(pybind11::module_& module);
void bindMetadata(pybind11::module_& module);

}  // namespace xrf::python
