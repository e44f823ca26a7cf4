#pragma once

#include <crossreference/XRF_RTL2LL.h>
#include <tools/xrf/Json.h>

#include <cstdint>

namespace xrf {

/// Bits by what is known of them.
struct BitCounts {
  std::uint64_t located = 0;
  std::uint64_t constant = 0;
  std::uint64_t unread = 0;
  std::uint64_t unknown = 0;

  std::uint64_t total() const { return located + constant + unread + unknown; }
  void add(XRF_RTL2LL::Bit::BitKind kind);
};

/// What one view holds. The bits are the distinct ones that its signals reach.
struct ViewCounts {
  std::uint64_t modules = 0;
  std::uint64_t hiddenModules = 0;
  std::uint64_t signals = 0;
  std::uint64_t hiddenSignals = 0;
  BitCounts bits;
};

ViewCounts countView(XRF_RTL2LL::Module* top);
BitCounts countAllBits();

/// Both views of a design.
struct DesignCounts {
  explicit DesignCounts(const XRF_RTL2LL::Netlist& netlist);

  ViewCounts rtl;
  ViewCounts synth;
};

/// {"rtl":{…},"synth":{…}}
Json viewsJson(const DesignCounts& counts);
/// A table with one row per view and, with `all` given, one for all bits of the model.
std::string viewsText(const DesignCounts& counts, const BitCounts* all, bool colored);

}  // namespace xrf
