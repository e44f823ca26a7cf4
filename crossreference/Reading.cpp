#include <crossreference/Reading.h>
#include <support/Limits.h>
#include <support/Scan.h>

#include <algorithm>
#include <array>

namespace XRF_RTL2LL {

namespace {

bool isControl(char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == '\x7f'; }

bool isNumber(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

// A decimal number that can be an index.
bool toIndex(std::string_view text, std::uint32_t& index) {
  std::int64_t number = 0;
  if (!isNumber(text) || !Scan(text).integer(number) || number > limits::signalIndex) return false;
  index = static_cast<std::uint32_t>(number);
  return true;
}

bool isField(std::string_view text) {
  return !text.empty() && !isDigit(text.front()) &&
         std::all_of(text.begin(), text.end(), [](char byte) {
           return isDigit(byte) || byte == '_' || byte == '$' || (byte >= 'a' && byte <= 'z') ||
                  (byte >= 'A' && byte <= 'Z');
         });
}

// What two bounds with a colon between look like, negative ones included.
bool isRange(std::string_view text) {
  return text.find(':') != std::string_view::npos &&
         std::all_of(text.begin(), text.end(),
                     [](char byte) { return isDigit(byte) || byte == ':' || byte == '-'; });
}

bool isNegative(std::string_view text) {
  return text.size() > 1 && text.front() == '-' && isNumber(text.substr(1));
}

// The bracket groups at the end of a name, and what stands before them.
struct Groups {
  std::string_view base;
  std::vector<std::string_view> texts;
};

Groups splitGroups(std::string_view name) {
  Groups groups{name, {}};
  while (groups.base.size() > 2 && groups.base.back() == ']') {
    const std::size_t open = groups.base.find_last_of("[]", groups.base.size() - 2);
    if (open == std::string_view::npos || open == 0 || groups.base[open] == ']') break;
    const std::string_view text = groups.base.substr(open + 1, groups.base.size() - open - 2);
    if (!isNumber(text) && !isField(text) && !isRange(text) && !isNegative(text)) break;
    groups.texts.insert(groups.texts.begin(), text);
    groups.base = groups.base.substr(0, open);
  }
  return groups;
}

bool toRange(std::string_view text, std::uint32_t& left, std::uint32_t& right) {
  const std::size_t colon = text.find(':');
  return colon != std::string_view::npos && toIndex(text.substr(0, colon), left) &&
         toIndex(text.substr(colon + 1), right);
}

// The groups but the last `dropped` as the model writes them.
std::string joined(std::string_view base, const Groups& groups, std::size_t dropped) {
  std::string name(base);
  for (std::size_t at = 0; at + dropped < groups.texts.size(); ++at) {
    name += '<';
    name += groups.texts[at];
    name += '>';
  }
  return name;
}

NamedBits decodeGroups(std::string_view base, const Groups& groups) {
  NamedBits bits;
  bits.valid = true;
  bits.text = base;
  for (const std::string_view text : groups.texts) {
    bits.text += '[';
    bits.text += text;
    bits.text += ']';
  }
  const std::string_view last = groups.texts.empty() ? std::string_view() : groups.texts.back();
  const bool isBit = isNumber(last);
  const bool hasRange = isRange(last);
  bits.signal = isNegative(last) ? bits.text : joined(base, groups, isBit || hasRange ? 1 : 0);
  if (isBit) {
    bits.valid = toIndex(last, bits.msb);
    bits.lsb = bits.msb;
  } else if (toRange(last, bits.msb, bits.lsb)) {
    bits.ascending = bits.msb < bits.lsb;
    if (bits.ascending) std::swap(bits.lsb, bits.msb);
    bits.ranged = true;
  }
  return bits;
}

// Takes "_rep" or "_rep__<n>" off the end of a name.
bool dropReplica(std::string_view& name) {
  constexpr std::string_view suffix = "_rep";
  std::string_view rest = name;
  while (!rest.empty() && isDigit(rest.back())) rest.remove_suffix(1);
  if (rest.size() < name.size()) {
    if (!rest.ends_with("__")) return false;
    rest.remove_suffix(2);
  }
  if (!rest.ends_with(suffix)) return false;
  rest.remove_suffix(suffix.size());
  name = rest;
  return true;
}

// A candidate for every way to read a name below the top: as it stands, with its module levels
// cleaned, with its levels joined.
void addVariants(std::vector<NamedBits>& candidates, const std::string& top,
                 const NamedBits& bits) {
  const auto add = [&](std::string name) {
    NamedBits candidate = bits;
    candidate.signal = "/" + top + "/" + std::move(name);
    candidates.push_back(std::move(candidate));
  };
  add(bits.signal);
  const std::size_t slash = bits.signal.rfind('/');
  if (slash == std::string::npos) return;
  add(normalised(bits.signal.substr(0, slash)) + bits.signal.substr(slash));
  std::string flat = bits.signal;
  for (std::size_t at = slash; at != std::string::npos; at = flat.rfind('/', at)) {
    flat[at] = '_';
    add(flat);
  }
}

}  // namespace

NamedBits NamedBits::whole() const {
  NamedBits bits;
  bits.signal = text;
  bits.text = text;
  bits.replica = replica;
  bits.valid = valid;
  return bits;
}

NamedBits decodeRegister(std::string_view instance) {
  constexpr std::string_view ending = "_reg";
  NamedBits bits;
  bool replica = false;
  while (dropReplica(instance)) replica = true;
  const Groups groups = splitGroups(instance);
  std::string_view base = groups.base;
  if (base.size() <= ending.size() || !base.ends_with(ending)) return bits;
  base.remove_suffix(ending.size());
  bits = decodeGroups(base, groups);
  bits.replica = replica;
  return bits;
}

NamedBits decodeBit(std::string_view name) {
  const Groups groups = splitGroups(name);
  // What ends in a bracket still is one name as a whole.
  if (groups.texts.empty() || groups.base.back() == ']') return {};
  if (isNegative(groups.texts.back()) || isRange(groups.texts.back())) return {};
  return decodeGroups(groups.base, groups);
}

PortRange decodeArray(std::string_view name, std::uint32_t width) {
  const Groups groups = splitGroups(name);
  PortRange range{joined(groups.base, groups, 0), width - 1, 0};
  if (groups.texts.empty() || groups.texts.back().find(':') == std::string_view::npos) return range;
  range.signal = joined(groups.base, groups, 1);
  std::uint32_t left = 0;
  std::uint32_t right = 0;
  // A range that does not fit the width, or has a negative bound, says nothing about indices.
  range.foreign = !toRange(groups.texts.back(), left, right) ||
                  std::max(left, right) - std::min(left, right) != width - 1;
  if (range.foreign) return range;
  range.left = left;
  range.right = right;
  return range;
}

std::string cleaned(std::string_view name) {
  std::string clean(name);
  for (char& byte : clean) {
    if (isBlank(byte) || byte == '(' || byte == ')' || isControl(byte)) byte = '_';
  }
  return clean;
}

bool holdsState(std::string_view cell) {
  static constexpr std::array<std::string_view, 15> cells = {
      "LD",    "LDC",   "LDP",    "LDCE",  "LDPE",   "FD_1",  "FDC_1", "FDCE_1",
      "FDE_1", "FDP_1", "FDPE_1", "FDR_1", "FDRE_1", "FDS_1", "FDSE_1"};
  return std::find(cells.begin(), cells.end(), cell) != cells.end() ||
         cell.starts_with("RTL_LATCH");
}

std::string normalised(std::string name) {
  for (char& byte : name) {
    if (byte == '[' || byte == ']' || byte == '.' || byte == '$') byte = '_';
  }
  return name;
}

std::vector<NamedBits> netCandidates(std::string_view top, std::string_view net) {
  const std::string below = cleaned(net);
  const std::string topName(top);
  std::vector<NamedBits> candidates;
  NamedBits whole;
  whole.signal = below;
  whole.valid = true;
  addVariants(candidates, topName, whole);
  const NamedBits bit = decodeBit(below);
  if (bit.valid) addVariants(candidates, topName, bit);
  // Faithful readings come first: the name as it stands, then as a bit, then with levels changed.
  const std::size_t variants = bit.valid ? candidates.size() / 2 : candidates.size();
  if (bit.valid) {
    std::vector<NamedBits> ordered;
    for (std::size_t at = 0; at < variants; ++at) {
      ordered.push_back(candidates[at]);
      ordered.push_back(candidates[variants + at]);
    }
    candidates.swap(ordered);
  }
  return candidates;
}

namespace {

// Some messages put a colon after a level.
std::string withoutColons(std::string levels) {
  for (std::size_t at = levels.find(":/"); at != std::string::npos; at = levels.find(":/", at)) {
    levels.erase(at, 1);
  }
  return levels;
}

// Whether a name begins with a level that a partition put there; `rest` is what follows it.
bool dropPartition(std::string_view name, std::string_view& rest) {
  const std::size_t slash = name.find('/');
  if (slash == std::string_view::npos) return false;
  const std::string_view level = name.substr(0, slash);
  rest = name.substr(slash + 1);
  return level.ends_with(':') || (level.starts_with("i_") && isNumber(level.substr(2)));
}

}  // namespace

std::vector<NamedBits> registerCandidates(std::string_view top, std::string_view instance) {
  std::vector<NamedBits> candidates;
  const std::string name = cleaned(instance);
  const auto add = [&](const std::string& levels) {
    const NamedBits bits = decodeRegister(levels);
    if (!bits.valid) return;
    if (bits.text != bits.signal) addVariants(candidates, std::string(top), bits.whole());
    addVariants(candidates, std::string(top), bits);
  };
  std::string_view rest = name;
  do {
    add(withoutColons(std::string(rest)));
  } while (dropPartition(rest, rest));
  return candidates;
}

}  // namespace XRF_RTL2LL
