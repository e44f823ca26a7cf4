#pragma once

#include <crossreference/Signal.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

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

/// As many signals as it pays to look at together.
inline constexpr std::size_t mostTouched = 32;

/// Looks at the first bits of up to `mostTouched` signals, null ones left out, so that the waits
/// for their memory overlap.
inline void touchBits(std::span<const Signal* const> signals) {
  std::array<const BitRef*, mostTouched> refs{};
  for (std::size_t at = 0; at < signals.size(); ++at) {
    if (signals[at] != nullptr) refs[at] = refAt(*signals[at], signals[at]->getLsb());
  }
  for (const BitRef* ref : refs) {
    if (ref != nullptr) static_cast<void>(ref->getBit());
  }
}

}  // namespace XRF_RTL2LL
