#pragma once

#include <python/OpenDesign.h>

#include <memory>
#include <string>
#include <utility>

namespace xrf::python {

using Opened = std::shared_ptr<OpenDesign>;

/// What Python holds of a design: each handle keeps the whole design alive. Handles are equal when
/// they stand for one thing.
struct ModuleHandle {
  Opened design;
  XRF_RTL2LL::EdifView view;
  XRF_RTL2LL::Module* module;

  bool operator==(const ModuleHandle& other) const { return module == other.module; }
};

struct SignalHandle {
  Opened design;
  XRF_RTL2LL::EdifView view;
  XRF_RTL2LL::Signal* signal;

  bool operator==(const SignalHandle& other) const { return signal == other.signal; }
};

/// An index of a signal, whether a bit is known there or not.
struct BitHandle {
  SignalHandle signal;
  unsigned index;

  /// The bit behind the index, or null.
  const XRF_RTL2LL::Bit* bit() const {
    const XRF_RTL2LL::BitRef* ref = signal.signal->getBitRef(index, true);
    return ref == nullptr ? nullptr : ref->getBit();
  }
  bool isLocated() const {
    const XRF_RTL2LL::Bit* known = bit();
    return known != nullptr && known->getKind() == XRF_RTL2LL::Bit::STATE;
  }
  bool operator==(const BitHandle& other) const {
    return signal == other.signal && index == other.index;
  }
};

}  // namespace xrf::python
