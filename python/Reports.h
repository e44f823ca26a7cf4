#pragma once

#include <python/OpenDesign.h>

#include <pybind11/pybind11.h>
#include <string>

/// What a read made of its files, with the keys of `xrf build --json`.
namespace xrf::python {

pybind11::dict locationDict(const OpenDesign& design);
pybind11::dict logDict(const OpenDesign& design);
pybind11::dict coverageDict(const OpenDesign& design);
/// The coverage in one line.
std::string coverageText(const OpenDesign& design);

}  // namespace xrf::python
