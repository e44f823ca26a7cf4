#include "ExtendedReading.h"

#include "RegisterNames.h"

namespace generate {

namespace {

/// Splits the number in brackets off the end of an escaped name: pos[3] is no array, but who reads
/// a netlist cannot tell.
bool splitIndex(std::string& name, uint32_t& index) {
  const size_t bracket = name.rfind('[');
  if (name.back() != ']') return false;
  index = static_cast<uint32_t>(std::stoul(name.substr(bracket + 1)));
  name.resize(bracket);
  return true;
}

}  // namespace

ModelBit extendedBit(const std::string& path, const Bank& bank, uint32_t bit) {
  ModelBit result{storable("/top/" + path + bank.base), 0};
  if (bank.subscripts.empty()) {
    splitIndex(result.signal, result.index);
    return result;
  }
  std::string subscripts;
  appendSubscripts(subscripts, bank.subscripts, bit);
  if (bank.subscripts.back().field.empty()) splitIndex(subscripts, result.index);
  for (const char character : subscripts) {
    result.signal += character == '[' ? '<' : character == ']' ? '>' : character;
  }
  return result;
}

std::string storable(std::string_view name) {
  std::string text(name);
  for (char& character : text) {
    if (character <= ' ' || character == '(' || character == ')' || character == 127) {
      character = '_';
    }
  }
  return text;
}

}  // namespace generate
