#pragma once

#include <crossreference/Signal.h>

#include <cstdint>

/// A signal's references and bits by index, null where the signal has none.
namespace XRF_RTL2LL {

inline BitRef* refAt(const Signal& signal, std::uint64_t index) {
  if (index < signal.getLsb() || index > signal.getMsb()) return nullptr;
  return signal.getBitRef(static_cast<std::uint32_t>(index), true);
}

inline Bit* bitAt(const Signal& signal, std::uint64_t index) {
  const BitRef* ref = refAt(signal, index);
  return ref == nullptr ? nullptr : ref->getBit();
}

/// Calls `visit` with the reference of each index that has one, from the lsb upward.
template <class Visit>
void eachRef(const Signal& signal, Visit visit) {
  const std::uint64_t last = signal.getMsb();
  for (std::uint64_t index = signal.getLsb(); index <= last; ++index) {
    BitRef* ref = signal.getBitRef(static_cast<std::uint32_t>(index), true);
    if (ref != nullptr) visit(*ref);
  }
}

}  // namespace XRF_RTL2LL
