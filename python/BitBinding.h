#pragma once

#include <python/Handles.h>

#include <pybind11/pybind11.h>
#include <string>

namespace xrf::python {

/// The full name with the index where the signal has others, as the command prints it.
std::string nameOf(const BitHandle& handle);

/// The frame address and offset in words; what else is known where there is no place.
std::string placeOf(const BitHandle& handle);

/// Adds what is known of a bit: kind, and frame, offset and slr where it is located, and value.
void addFacts(pybind11::dict& row, const XRF_RTL2LL::Bit* bit);

}  // namespace xrf::python
