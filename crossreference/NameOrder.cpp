#include <crossreference/NameOrder.h>
#include <crossreference/Signal.h>
#include <support/Scan.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace XRF_RTL2LL {

namespace {

bool isSeparator(char byte) { return isBlank(byte) || byte == '<' || byte == '>'; }

// Reads base and index with "<" and ">" standing for blanks; nothing but those may follow.
IndexedName splitAlways(std::string_view name) {
  std::size_t at = 0;
  const auto skip = [&] {
    while (at < name.size() && isSeparator(name[at])) ++at;
  };
  skip();
  const std::size_t start = at;
  while (at < name.size() && !isSeparator(name[at])) ++at;
  IndexedName result;
  result.base = name.substr(start, at - start);
  skip();
  Scan number(name.substr(at));
  std::uint32_t index = 0;
  if (result.base.empty() || !number.integer(index)) return result;
  result.index = static_cast<int>(index);
  at = name.size() - number.rest().size();
  skip();
  result.valid = at == name.size();
  return result;
}

int compareBytes(std::string_view a, std::string_view b) {
  const int order = a.compare(b);
  return order < 0 ? -1 : static_cast<int>(order > 0);
}

// Orders a text against "base<".
int compareToStand(std::string_view text, std::string_view base) {
  const int order = compareBytes(text.substr(0, base.size()), base);
  return order != 0 ? order : compareBytes(text.substr(base.size()), "<");
}

// Where a name stands among texts: all names base<n> stand at "base<".
int compareStands(const IndexedName& a, std::string_view textA, const IndexedName& b,
                  std::string_view textB) {
  if (!a.valid && !b.valid) return compareBytes(textA, textB);
  if (a.valid && !b.valid) return -compareStands(b, textB, a, textA);
  if (!a.valid) return compareToStand(textA, b.base);
  const std::size_t common = std::min(a.base.size(), b.base.size());
  const int order = compareBytes(a.base.substr(0, common), b.base.substr(0, common));
  if (order != 0 || a.base.size() == b.base.size()) return order;
  // The shorter base ends where the longer one has a byte that is no "<".
  return a.base.size() < b.base.size() ? compareBytes("<", b.base.substr(common))
                                       : compareBytes(a.base.substr(common), "<");
}

}  // namespace

namespace {

std::string_view view(const Word* name) {
  return name == nullptr ? std::string_view() : name->view();
}

OrderKey keyOf(std::string_view text) {
  std::array<std::uint64_t, 2> bytes{};
  if (!text.empty()) std::memcpy(bytes.data(), text.data(), std::min(text.size(), sizeof bytes));
  if constexpr (std::endian::native == std::endian::little) {
    for (std::uint64_t& word : bytes) word = __builtin_bswap64(word);
  }
  return {bytes[0], bytes[1], text.size() <= sizeof bytes};
}

// Nothing but blanks and brackets may follow the index, which spares most names a closer look.
bool mayBeIndexed(std::string_view name) {
  return !name.empty() && (isDigit(name.back()) || isSeparator(name.back())) &&
         name.find('>') != std::string_view::npos;
}

}  // namespace

IndexedName IndexedName::split(std::string_view name) {
  return mayBeIndexed(name) ? splitAlways(name) : IndexedName();
}

int orderOfSignals(const Word* a, const Word* b) {
  if (a == b) return 0;
  const std::string_view textA = view(a);
  const std::string_view textB = view(b);
  if (!mayBeIndexed(textA) && !mayBeIndexed(textB)) return compareBytes(textA, textB);
  const IndexedName splitA = IndexedName::split(textA);
  const IndexedName splitB = IndexedName::split(textB);
  if (splitA.valid && splitB.valid && splitA.base == splitB.base) {
    return splitA.index < splitB.index ? -1 : static_cast<int>(splitA.index > splitB.index);
  }
  const int order = compareStands(splitA, textA, splitB, textB);
  return order != 0 ? order : static_cast<int>(splitA.valid) - static_cast<int>(splitB.valid);
}

OrderKey orderKeyOfModule(const Word* name) { return keyOf(view(name)); }

OrderKey orderKeyOfSignal(const Word* name) {
  if (name == nullptr) return {};
  const IndexedName split = IndexedName::split(*name);
  if (!split.valid) return keyOf(*name);
  OrderKey key = keyOf(std::string(split.base) + "<");
  key.whole = false;
  return key;
}

int orderOfModules(const Word* a, const Word* b) {
  if (a == b) return 0;
  return compareBytes(view(a), view(b));
}

int sigcmp(const char* a, const char* b) {
  if (std::strchr(a, '>') == nullptr && std::strchr(b, '>') == nullptr) return std::strcmp(a, b);
  const IndexedName splitA = splitAlways(a);
  if (!splitA.valid) return std::strcmp(a, b);
  const IndexedName splitB = splitAlways(b);
  if (!splitB.valid || splitA.base != splitB.base) return std::strcmp(a, b);
  return static_cast<int>(static_cast<std::uint32_t>(splitA.index) -
                          static_cast<std::uint32_t>(splitB.index));
}

}  // namespace XRF_RTL2LL
