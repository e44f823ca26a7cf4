#include <crossreference/Reading.h>
#include <support/Limits.h>
#include <support/Scan.h>

#include <algorithm>
#include <array>
#include <utility>

namespace XRF_RTL2LL {

namespace {

constexpr std::int64_t highestIndex = Limits().signalIndex;
// What a name with more levels may be called would fill memory; it is looked for as it stands.
constexpr std::size_t mostLevels = Limits().moduleNesting;

constexpr bool isControl(char byte) {
  return static_cast<unsigned char>(byte) < ' ' || byte == '\x7f';
}

// What implementation tools make "_" of.
constexpr bool isCleanedAway(char byte) {
  return byte == '[' || byte == ']' || byte == '.' || byte == '$';
}

// What the file format has a use of its own for.
constexpr bool isUnclean(char byte) {
  return byte == ' ' || byte == '(' || byte == ')' || isControl(byte);
}

// Names are long and many, so that what their bytes are is looked up.
enum ByteClass : std::uint8_t { CleanedAway = 1, Unclean = 2 };
constexpr std::array<std::uint8_t, 256> byteClasses = [] {
  std::array<std::uint8_t, 256> classes{};
  for (std::size_t at = 0; at < classes.size(); ++at) {
    const char byte = static_cast<char>(static_cast<unsigned char>(at));
    if (isCleanedAway(byte)) classes[at] |= CleanedAway;
    if (isUnclean(byte)) classes[at] |= Unclean;
  }
  return classes;
}();

bool hasNone(std::string_view name, ByteClass unwanted) {
  unsigned met = 0;
  for (const char byte : name) met |= byteClasses[static_cast<unsigned char>(byte)];
  return (met & unwanted) == 0;
}

bool isNumber(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

// A decimal number that can be an index.
bool toIndex(std::string_view text, std::uint32_t& index) {
  std::int64_t number = 0;
  for (const char byte : text) {
    if (!isDigit(byte)) return false;
    number = number * 10 + (byte - '0');
    if (number > highestIndex) return false;
  }
  index = static_cast<std::uint32_t>(number);
  return !text.empty();
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

// Takes the last group off a name.
bool takeGroup(std::string_view& base, std::string_view& text) {
  if (base.size() <= 2 || base.back() != ']') return false;
  const std::size_t open = base.find_last_of("[]", base.size() - 2);
  if (open == std::string_view::npos || open == 0 || base[open] == ']') return false;
  text = base.substr(open + 1, base.size() - open - 2);
  if (!isNumber(text) && !isField(text) && !isRange(text) && !isNegative(text)) return false;
  base = base.substr(0, open);
  return true;
}

Groups splitGroups(std::string_view name) {
  Groups groups{name, {}};
  std::string_view text;
  while (takeGroup(groups.base, text)) groups.texts.insert(groups.texts.begin(), text);
  return groups;
}

bool toRange(std::string_view text, std::uint32_t& left, std::uint32_t& right) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return false;
  std::uint32_t first = 0;
  std::uint32_t last = 0;
  if (!toIndex(text.substr(0, colon), first) || !toIndex(text.substr(colon + 1), last)) {
    return false;
  }
  left = first;
  right = last;
  return true;
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
  bits.bare = groups.texts.empty();
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

}  // namespace

NamedBits NamedBits::whole() const {
  NamedBits bits;
  bits.signal = text;
  bits.text = text;
  bits.replica = replica;
  bits.valid = valid;
  return bits;
}

namespace {

constexpr std::string_view registerEnding = "_reg";

bool endsAsRegister(std::string_view base) {
  return base.size() > registerEnding.size() && base.ends_with(registerEnding);
}

}  // namespace

bool namesRegister(std::string_view instance) {
  while (dropReplica(instance)) {
  }
  std::string_view last;
  std::string_view text;
  while (takeGroup(instance, text)) last = last.empty() ? text : last;
  std::uint32_t index = 0;
  return endsAsRegister(instance) && (!isNumber(last) || toIndex(last, index));
}

NamedBits decodeRegister(std::string_view instance) {
  NamedBits bits;
  bool replica = false;
  while (dropReplica(instance)) replica = true;
  const Groups groups = splitGroups(instance);
  std::string_view base = groups.base;
  if (!endsAsRegister(base)) return bits;
  base.remove_suffix(registerEnding.size());
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

bool splitBit(std::string_view name, std::string& buffer, std::string_view& bus,
              std::uint32_t& index) {
  bus = name;
  std::string_view last;
  std::string_view group;
  while (takeGroup(bus, group)) last = last.empty() ? group : last;
  if (last.empty() || bus.back() == ']' || isNegative(last) || isRange(last)) return false;
  const bool isBit = isNumber(last);
  index = 0;
  if (isBit && !toIndex(last, index)) return false;
  const std::size_t groups = name.size() - bus.size() - (isBit ? last.size() + 2 : 0);
  if (groups == 0) return true;
  buffer = name.substr(0, bus.size() + groups);
  for (std::size_t at = bus.size(); at < buffer.size(); ++at) {
    if (buffer[at] == '[') buffer[at] = '<';
    if (buffer[at] == ']') buffer[at] = '>';
  }
  bus = buffer;
  return true;
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

bool isClean(std::string_view name) { return hasNone(name, Unclean); }

std::string cleaned(std::string_view name) {
  std::string clean(name);
  std::replace_if(clean.begin(), clean.end(), isUnclean, '_');
  return clean;
}

bool holdsState(std::string_view cell) {
  static constexpr std::array<std::string_view, 15> cells = {
      "LD",    "LDC",   "LDP",    "LDCE",  "LDPE",   "FD_1",  "FDC_1", "FDCE_1",
      "FDE_1", "FDP_1", "FDPE_1", "FDR_1", "FDRE_1", "FDS_1", "FDSE_1"};
  // Nearly all cells that are asked for are others.
  if (!cell.starts_with("LD") && !cell.starts_with("FD")) return cell.starts_with("RTL_LATCH");
  return std::find(cells.begin(), cells.end(), cell) != cells.end();
}

void normalise(std::string& name) { std::replace_if(name.begin(), name.end(), isCleanedAway, '_'); }

bool isNormal(std::string_view name) { return hasNone(name, CleanedAway); }

std::string normalised(std::string name) {
  normalise(name);
  return name;
}

std::vector<NamedBits> netReadings(std::string_view name) {
  NamedBits whole;
  whole.signal = name;
  whole.text = name;
  whole.valid = true;
  std::vector<NamedBits> readings{std::move(whole)};
  NamedBits bit = decodeBit(name);
  if (bit.valid) readings.push_back(std::move(bit));
  return readings;
}

std::vector<NamedBits> registerReadings(std::string_view name) {
  std::vector<NamedBits> readings;
  NamedBits bits = decodeRegister(name);
  if (!bits.valid) return readings;
  if (bits.text != bits.signal) readings.push_back(bits.whole());
  readings.push_back(std::move(bits));
  return readings;
}

std::string netApart(std::string name) { return name += apartEnding; }

std::string withCleanLevels(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  if (slash == std::string::npos) return name;
  return normalised(name.substr(0, slash)) + name.substr(slash);
}

LevelChanges::LevelChanges(std::string_view name) : m_name(name), m_flat(name) {}

bool LevelChanges::next() {
  if (m_next == Next::Clean) {
    const bool tooDeep =
        static_cast<std::size_t>(std::count(m_name.begin(), m_name.end(), '/')) > mostLevels;
    m_next = tooDeep ? Next::None : Next::Join;
    m_current = {withCleanLevels(m_name), {}};
    if (m_current.name != m_name) return true;
  }
  const std::size_t at = m_next == Next::None ? std::string::npos : m_flat.rfind('/');
  if (at == std::string::npos) return false;
  m_flat[at] = '_';
  m_current = {m_flat, m_name.substr(0, at)};
  return true;
}

std::vector<ChangedLevels> changedLevels(std::string_view name) {
  std::vector<ChangedLevels> changed;
  for (LevelChanges changes(name); changes.next();) changed.push_back(changes.current());
  return changed;
}

namespace {

// Some messages put a colon after a level.
std::string withoutColons(std::string levels) {
  for (std::size_t at = levels.find(":/"); at != std::string::npos; at = levels.find(":/", at)) {
    levels.erase(at, 1);
  }
  return levels;
}

// How many bytes at the start of a name are a level that a partition put there, "/" included.
std::size_t partitionLength(std::string_view name) {
  const std::size_t slash = name.find('/');
  if (slash == std::string_view::npos) return 0;
  const std::string_view level = name.substr(0, slash);
  const bool partition =
      level.ends_with(':') || (level.starts_with("i_") && isNumber(level.substr(2)));
  return partition ? slash + 1 : 0;
}

}  // namespace

std::vector<PartitionedName> partitionedNames(std::string_view name) {
  const std::string clean = cleaned(name);
  std::vector<PartitionedName> names{{withoutColons(clean), {}}};
  std::size_t start = 0;
  for (std::size_t length = partitionLength(clean); length > 0 && names.size() <= mostLevels;
       length = partitionLength(std::string_view(clean).substr(start))) {
    start += length;
    names.push_back(
        {withoutColons(clean.substr(start)), withoutColons(clean.substr(0, start - 1))});
    std::string& partition = names.back().partition;
    if (partition.ends_with(':')) partition.pop_back();
  }
  return names;
}

}  // namespace XRF_RTL2LL
