#pragma once

#include <cstdint>

/// The heap of a program that links FailingHeap.cpp: it counts, and fails where it is told to.
namespace trust::heap {

/// From here on the allocation of that number, counted from 1, fails; those after it do not.
/// With 0 none fails.
void failAt(std::uint64_t number);
/// Allocations since `failAt`.
std::uint64_t allocations();
/// Allocations that were not freed.
std::int64_t live();

}  // namespace trust::heap
