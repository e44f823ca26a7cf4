#ifndef BENCH_GENERATE_IDENTIFIERS_H
#define BENCH_GENERATE_IDENTIFIERS_H

#include <string>
#include <string_view>
#include <vector>

namespace generate {

/// Whether a name needs another identifier beside it in a netlist.
bool needsIdentifier(std::string_view name);

/// The identifier of a printable name by itself.
std::string identifierOf(std::string_view name);

/// The identifiers that go with printable names, in the same order. No two are alike: where names
/// differ in special characters alone, numbers are added.
std::vector<std::string> identifiersOf(const std::vector<std::string_view>& names);

}  // namespace generate

#endif
