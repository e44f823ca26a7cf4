#pragma once

#include <crossreference/Word.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {

/// A name taken apart as base and index, as in base<n>, with white space allowed around the parts.
struct IndexedName {
  std::string_view base;
  int index = 0;
  bool valid = false;

  /// Names without ">" are never taken apart here.
  static IndexedName split(std::string_view name);
};

/// Total orders for the sets of a model, negative, zero or positive. For signals it is the order of
/// `sigcmp` wherever that is an order at all; all names base<n> of one base stand together, ahead
/// of the other names that begin with "base<". Null names count as empty.
/// The first bytes of the text that a name is ordered by: unequal keys stand in the order of their
/// names, equal ones leave it open.
struct OrderKey {
  std::uint64_t first = 0;
  std::uint64_t second = 0;
  bool whole = true;  // nothing of the name is left out, so equal keys mean equal names
  /// Negative, zero or positive.
  static int compare(const OrderKey& a, const OrderKey& b) {
    if (a.first != b.first) return a.first < b.first ? -1 : 1;
    return a.second == b.second ? 0 : a.second < b.second ? -1 : 1;
  }
};
OrderKey orderKeyOfSignal(const Word* name);
OrderKey orderKeyOfModule(const Word* name);

int orderOfSignals(const Word* a, const Word* b);
int orderOfModules(const Word* a, const Word* b);

}  // namespace XRF_RTL2LL
