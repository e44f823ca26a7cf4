#include "StrictReading.h"

#include "OutputFile.h"
#include "RegisterNames.h"

namespace generate {

namespace {

/// The bus that an identifier with brackets names; matrices are a bus for each row.
ModelBit bracketedBit(const std::string& prefix, const Bank& bank, uint32_t bit) {
  std::string signal = prefix + bank.base;
  if (bank.layout != Layout::Matrix) return {signal, bit};
  signal += '<';
  appendNumber(signal, bit / bank.width);
  signal += '>';
  return {signal, bit % bank.width};
}

ModelBit renamedBit(const std::string& prefix, const Bank& bank, uint32_t bit) {
  switch (bank.layout) {
    case Layout::Scalar:
      // The identifier of the instance ends in _reg and is cleaned of the scope's brackets; the
      // net has the same identifier and adds no other name.
      return {prefix + cleaned(bank.base), 0};
    case Layout::Vector:
      if (!bank.isScoped) return {prefix + bank.base, bit};
      break;
    case Layout::Matrix:
    case Layout::Record:
    case Layout::RecordScalar:
    case Layout::Subscripted:
      break;
  }
  return {prefix + registerName(bank, bit), 0};
}

bool hasSubscripts(const Bank& bank) { return bank.layout != Layout::Scalar; }

bool findsRenamed(const Module& module, const std::string& path, const Bank& bank, uint32_t bit) {
  // Modules are known by printable paths, and lines are looked up by cleaned ones.
  if (path.find('[') != std::string::npos || hasSubscripts(bank)) return false;
  if (!bank.isScoped) return true;
  // Only the net's own signal has the cleaned name; one named after the instance, where log lines
  // lead, is made only where no printable name stands beside the identifier.
  return module.fate(bank, bit) == Fate::Live && !module.hasToolNet(bank, bit);
}

}  // namespace

ModelBit strictBit(const Design& design, const std::string& path, const Bank& bank, uint32_t bit) {
  if (design.options().renames) return renamedBit("/top/" + path, bank, bit);
  const std::string prefix = "/top/" + cleaned(path);
  if (bank.naming != Naming::Cleaned && hasSubscripts(bank)) {
    return bracketedBit(prefix, bank, bit);
  }
  return {prefix + cleaned(registerName(bank, bit)), 0};
}

bool strictFinds(const Design& design, const Module& module, const std::string& path,
                 const Bank& bank, uint32_t bit) {
  const Fate fate = module.fate(bank, bit);
  if (fate == Fate::Removed) return false;
  if (design.options().renames) return findsRenamed(module, path, bank, bit);
  if (!hasSubscripts(bank)) return true;
  switch (bank.naming) {
    case Naming::Cleaned:
      return true;
    case Naming::BracketInstances:
      return fate == Fate::Live;
    case Naming::BracketNets:
      break;
  }
  return false;
}

}  // namespace generate
