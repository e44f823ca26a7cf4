#include "Identifiers.h"

#include "OutputFile.h"

#include <cstdint>
#include <unordered_set>

namespace generate {

namespace {

constexpr std::string_view kSpecial = "[].<> ()/$:-";

}  // namespace

bool needsIdentifier(std::string_view name) {
  return name.find_first_of(kSpecial) != std::string_view::npos;
}

std::string identifierOf(std::string_view name) {
  std::string identifier(name);
  for (char& character : identifier) {
    if (kSpecial.find(character) != std::string_view::npos) character = '_';
  }
  return identifier;
}

std::vector<std::string> identifiersOf(const std::vector<std::string_view>& names) {
  std::unordered_set<std::string> taken;
  for (const std::string_view name : names) {
    if (!needsIdentifier(name)) taken.emplace(name);
  }
  std::vector<std::string> identifiers;
  identifiers.reserve(names.size());
  for (const std::string_view name : names) {
    std::string identifier = identifierOf(name);
    if (needsIdentifier(name)) {
      const std::string base = identifier;
      for (uint64_t number = 0; !taken.insert(identifier).second; ++number) {
        identifier = base + "_";
        appendNumber(identifier, number);
      }
    }
    identifiers.push_back(std::move(identifier));
  }
  return identifiers;
}

}  // namespace generate
