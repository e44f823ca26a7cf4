#pragma once

#include <support/Limits.h>
#include <tools/xrf/LimitNames.h>

#include <pybind11/pybind11.h>

namespace xrf::python {

/// The limits that a dictionary asks for, such as {"signal_width": 4096}, or the usual ones for
/// None. A name that is none of those for `reads` is a ValueError, and so is a number beyond what
/// is possible.
XRF_RTL2LL::Limits limitsOf(const pybind11::object& limits, Reads reads);

}  // namespace xrf::python
