#include "RegisterNames.h"

#include "OutputFile.h"

namespace generate {

namespace {

void appendSubscript(std::string& text, std::string_view word) {
  text.push_back('[');
  text.append(word).push_back(']');
}

void appendSubscript(std::string& text, uint32_t number) {
  text.push_back('[');
  appendNumber(text, number);
  text.push_back(']');
}

void appendSubscripts(std::string& text, const Bank& bank, uint32_t bit) {
  switch (bank.layout) {
    case Layout::Scalar:
      break;
    case Layout::Vector:
      appendSubscript(text, bit);
      break;
    case Layout::Matrix:
      appendSubscript(text, bit / bank.width);
      appendSubscript(text, bit % bank.width);
      break;
    case Layout::Record:
      appendSubscript(text, bank.field);
      appendSubscript(text, bit);
      break;
    case Layout::RecordScalar:
      appendSubscript(text, bank.field);
      break;
    case Layout::Subscripted:
      appendSubscripts(text, bank.subscripts, bit);
      break;
  }
}

std::string composed(const Bank& bank, std::string_view middle, uint32_t bit) {
  std::string text;
  text.reserve(bank.base.size() + middle.size() + 16);
  text.append(bank.base).append(middle);
  appendSubscripts(text, bank, bit);
  return text;
}

}  // namespace

void appendSubscripts(std::string& text, const std::vector<Subscript>& subscripts,
                      uint32_t element) {
  uint32_t below = 1;
  for (const Subscript& subscript : subscripts) below *= subscript.size();
  for (const Subscript& subscript : subscripts) {
    below /= subscript.size();
    text += '[';
    if (subscript.field.empty()) {
      text += std::to_string(subscript.index(element / below % subscript.size()));
    } else {
      text += subscript.field;
    }
    text += ']';
  }
}

std::string registerName(const Bank& bank, uint32_t bit) { return composed(bank, "", bit); }

std::string instanceName(const Bank& bank, uint32_t bit) { return composed(bank, "_reg", bit); }

std::string outputNetName(const Module& module, const Bank& bank, uint32_t bit) {
  if (!module.hasToolNet(bank, bit)) return registerName(bank, bit);
  return composed(bank, bank.layout == Layout::Scalar ? "_reg_n_0" : "_reg_n_0_", bit);
}

std::string sliceInstanceName(const Bank& bank, uint32_t row, uint32_t low, uint32_t high) {
  std::string text = bank.base + "_reg";
  if (bank.grouping == Grouping::Unprinted) return text;
  const std::vector<Subscript> outer(bank.subscripts.begin(), bank.subscripts.end() - 1);
  appendSubscripts(text, outer, row);
  const Subscript& range = bank.subscripts.back();
  return text + '[' + std::to_string(range.index(high)) + ':' + std::to_string(range.index(low)) +
         ']';
}

std::string inserted(std::string_view name, std::string_view infix) {
  const size_t bracket = name.find('[');
  std::string text(name.substr(0, bracket));
  text += infix;
  if (bracket != std::string_view::npos) text += name.substr(bracket);
  return text;
}

std::string nextNetName(const Bank& bank, uint32_t bit) { return composed(bank, "_next", bit); }

std::string lutName(const Bank& bank, uint32_t bit, uint32_t number) {
  std::string text = composed(bank, "", bit);
  text += "_i_";
  appendNumber(text, number);
  return text;
}

std::string dataNetName(const Module& module, const Bank& bank, uint32_t bit) {
  if (module.keepsNextNet(bank, bit)) return nextNetName(bank, bit);
  return lutName(bank, bit, 1) + "_n_0";
}

std::string cleaned(std::string_view name) {
  std::string text(name);
  for (char& character : text) {
    switch (character) {
      case '[':
      case ']':
      case '.':
      case '<':
      case '>':
        character = '_';
        break;
      default:
        break;
    }
  }
  return text;
}

}  // namespace generate
