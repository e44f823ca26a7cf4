#pragma once

#include <crossreference/XRF_RTL2LL.h>

#include <string>
#include <vector>

/// A cross-reference file that is open. Each has a model of its own, so several can be open at
/// once, and closing one frees all of it.
class OpenDesign {
 public:
  /// Throws BadFile; what had been read by then is freed.
  explicit OpenDesign(const std::string& file);

  /// One bit of a register, the highest index first.
  struct RegisterBit {
    unsigned index;
    const XRF_RTL2LL::Bit* bit;  ///< null where the netlist has a gap
  };
  struct Register {
    std::string name;  ///< the full one
    std::vector<RegisterBit> bits;
  };

  /// A signal of the RTL by its name from the top ("/top/u0/cnt") or below it ("u0/cnt"). Without
  /// bits when there is none of that name.
  Register find(const std::string& name) const;

  /// The registers whose value a place of the configuration memory holds, as written in RTL.
  std::vector<std::string> registersAt(unsigned frame, unsigned offset) const;

 private:
  // The design goes before the model whose objects it uses.
  XRF_RTL2LL::Model m_model;
  std::unique_ptr<XRF_RTL2LL::Design> m_design;
};
