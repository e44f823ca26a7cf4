#include <crossreference/XrfRecords.h>
#include <support/Scan.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

std::ptrdiff_t countClosing(std::string_view line) {
  return std::count(line.begin(), line.end(), ')');
}

// What is left of a line: nothing but closing parentheses, which are counted.
bool closes(const PlainScan& scan, std::ptrdiff_t& count) {
  const std::string_view rest = scan.rest();
  count = static_cast<std::ptrdiff_t>(rest.size());
  return std::all_of(rest.begin(), rest.end(), [](char byte) { return byte == ')'; });
}

[[gnu::always_inline]] inline bool word(PlainScan& scan, std::string_view& value) {
  return scan.word(value, ')') && scan.blank();
}

[[gnu::always_inline]] inline bool number(PlainScan& scan, std::uint32_t& value) {
  return scan.number(value) && scan.blank();
}

// What nearly every line has, and the blank after it.
template <std::size_t size>
[[gnu::always_inline]] inline bool known(PlainScan& scan, std::string_view& value,
                                         const char (&text)[size]) {
  value = std::string_view(text, size - 2);
  return scan.literal(std::string_view(text, size - 1));
}

bool scanPlainBit(std::string_view line, BitRecord& record) {
  PlainScan scan(line);
  if (!scan.literal("(BIT ") || !number(scan, record.id) || !word(scan, record.kind)) return false;
  // A value that is none is quoted as it stands, with what follows it.
  const bool isValue = scan.peek() == 'z' || scan.peek() == '0' || scan.peek() == '1';
  if (!isValue || !scan.word(record.value, ')')) return false;
  record.fields = 3;
  for (std::uint32_t& location : record.location) {
    if (record.fields == 3 && scan.peek() == ')') break;
    if (!scan.blank() || !scan.number(location)) return false;
    ++record.fields;
  }
  return scan.literal(")") && scan.ended();
}

bool scanAnyBit(std::string_view line, BitRecord& record) {
  Scan scan(line);
  if (!scan.literal("(BIT ") || !scan.integer(record.id) || !scan.word(record.kind) ||
      !scan.word(record.value)) {
    return false;
  }
  record.fields = 3;
  for (std::uint32_t& location : record.location) {
    if (!scan.integer(location)) break;
    ++record.fields;
  }
  if (record.fields < 6) record.location[2] = 0;
  return record.fields != 4;
}

}  // namespace

bool BitRecord::scan(std::string_view line) {
  return scanPlainBit(line, *this) || scanAnyBit(line, *this);
}

bool SignalRecord::scan(std::string_view line) {
  if (!scanPlain(line)) scanAny(line);
  return fields >= 8;
}

bool SignalRecord::scanPlain(std::string_view line) {
  isPlain = false;
  PlainScan scan(line);
  if (!scan.literal("(SIG ")) return false;
  const bool marked = known(scan, visibility, "VISIBLE ") || word(scan, visibility);
  const bool directed =
      marked && (known(scan, direction, "WIRE ") || known(scan, direction, "IN ") ||
                 known(scan, direction, "OUT ") || word(scan, direction));
  if (!directed || !word(scan, name) || !number(scan, id) || !number(scan, net) ||
      !number(scan, lsb) || !number(scan, msb)) {
    return false;
  }
  bits.clear();
  std::uint32_t bit = 0;
  do {
    if (!scan.number(bit)) return false;
    bits.push_back(bit);
  } while (scan.blank());
  fields = bits.size() == 1 ? 8 : 9;
  const bool closed = closes(scan, closing) && closing > 0;
  --closing;
  isPlain = closed && msb >= lsb && bits.size() - 1 == msb - lsb;
  return isPlain;
}

void SignalRecord::scanAny(std::string_view line) {
  fields = 0;
  Scan scan(line);
  if (!scan.literal("(SIG ")) return;
  for (std::string_view* text : {&visibility, &direction, &name}) {
    if (!scan.word(*text)) return;
    ++fields;
  }
  for (std::uint32_t* value : {&id, &net, &lsb, &msb}) {
    if (!scan.integer(*value)) return;
    ++fields;
  }
  rest = scan.rest();
  std::uint32_t bit = 0;
  while (fields < 9 && scan.integer(bit)) ++fields;
  closing = countClosing(line) - 1;
}

bool ModuleRecord::scan(std::string_view line) {
  if (scanPlain(line)) return true;
  Scan scan(line);
  closing = countClosing(line);
  return scan.literal("(MOD ") && scan.word(visibility) && scan.word(definition) &&
         scan.word(name) && scan.integer(id);
}

bool ModuleRecord::scanPlain(std::string_view line) {
  PlainScan scan(line);
  return scan.literal("(MOD ") && (known(scan, visibility, "VISIBLE ") || word(scan, visibility)) &&
         word(scan, definition) && word(scan, name) && scan.number(id) && closes(scan, closing);
}

}  // namespace XRF_RTL2LL
