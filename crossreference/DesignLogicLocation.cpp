#include <crossreference/DesignState.h>
#include <crossreference/LocationMatch.h>
#include <crossreference/NetlistState.h>
#include <crossreference/RegisterCopy.h>
#include <crossreference/SignalIndex.h>
#include <crossreference/Utils.h>
#include <support/FileLines.h>
#include <support/Limits.h>
#include <support/Report.h>
#include <support/Scan.h>

#include <algorithm>
#include <stdexcept>

namespace XRF_RTL2LL {

namespace {

constexpr std::size_t prefix = 6;                             // of a site's name, as in SLICE_
constexpr std::uint64_t mostLevels = Limits().moduleNesting;  // of a name, as of any hierarchy

bool scanCoordinates(std::string_view text, std::uint32_t& row) {
  PlainScan plain(text);
  std::uint32_t x = 0;
  if (plain.literal("X") && plain.number(x) && plain.literal("Y") && plain.number(row)) return true;
  std::string coordinates(text);
  std::replace_if(
      coordinates.begin(), coordinates.end(), [](char byte) { return byte == 'X' || byte == 'Y'; },
      ' ');
  Scan scan(coordinates);
  std::uint32_t column = 0;
  return scan.integer(column) && scan.integer(row);
}

// Another run of the implementation puts every register elsewhere.
void forgetLocations() {
  for (Bit* bit : Bit::getAllBits()) {
    if (bit->getKind() == Bit::STATE) forgetLocation(*bit);
  }
}

bool hasCoordinates(std::string_view block) {
  std::uint32_t row = 0;
  return block.size() >= prefix && scanCoordinates(block.substr(prefix), row);
}

}  // namespace

/// Records the locations that one logic-location file names.
class LogicLocationReader {
 public:
  LogicLocationReader(Design::State& design, const NetlistState& netlist, const std::string& path,
                      const TextSource& text);

  void read();

 private:
  struct Location {
    std::uint32_t frame = 0;
    std::uint32_t offset = 0;
    std::uint32_t slr = 0;
    bool hasSlr = false;
    bool isPlace = true;  // the numbers fit the model
    std::string_view block;
    std::string_view latch;
    std::string_view net;
  };
  enum class Form { Location, Other, Unusual };
  enum class Outcome { Used, SkippedLatch, SkippedIndex, Unmatched };

  void parse_line();
  void openLine();
  bool scan(Location& location);
  static Form scanPlain(std::string_view line, Location& location);
  bool scanAny(std::string_view line, Location& location) const;
  void match(const Location& location);
  void recordMatches();
  void scanRegion(Scan& scan, Location& location) const;
  std::uint32_t slrOf(std::string_view block) const;
  Outcome record(const Location& location);
  static Outcome record(const Location& location, Signal& signal);
  Outcome recordFlattened(const Location& location);
  void report(Outcome outcome, std::string_view net);

  Design::State& m_design;
  const Netlist& m_netlist;
  FileLines m_lines;
  std::string m_line;  // the current one with blanks for "="
  std::string m_name;  // the full name that is looked for
  unsigned m_slr_size;
  Reading m_reading;
  SignalSearch m_search;
  LocationMatch m_match;
  bool m_forgot = false;  // whether what an earlier file said is gone
};

int Design::parse_ll(std::string file) {
  const DesignUse use(m_state->model);
  const TextSource input(file);
  if (!input.isOpen()) fatalSilently("Can't open the logic-location file %s.", file.c_str());
  if (!m_state->loaded) {
    fatalSilently("The logic-location file %s needs a netlist or cross-reference file read before.",
                  file.c_str());
  }
  NetlistState& netlist = *m_state->netlist->m_state;
  LogicLocationReader(*m_state, netlist, file, input).read();
  if (netlist.reading.has(Rule::RegisterCopy)) RegisterCopy(netlist).copy();
  return 0;
}

LogicLocationReader::LogicLocationReader(Design::State& design, const NetlistState& netlist,
                                         const std::string& path, const TextSource& text)
    : m_design(design),
      m_netlist(*design.netlist),
      m_lines(path, text, "Reading locations"),
      m_slr_size(utils::getSLRSize(m_netlist.getPart())),
      m_reading(netlist.reading),
      m_search(netlist),
      m_match(netlist) {}

void LogicLocationReader::read() {
  try {
    while (m_lines.next()) parse_line();
  } catch (...) {
    recordMatches();  // what was read of a failing file counts
    throw;
  }
  recordMatches();
  m_design.locations.used -= m_match.withdrawn();
  m_design.locations.unmatched += m_match.withdrawn();
}

void LogicLocationReader::parse_line() {
  Location location;
  if (!scan(location)) return;
  ++m_design.locations.lines;
  switch (location.block.front()) {
    case 'A':
      openLine();
      message(StandardError, "Warning Skipping: %s\n", m_line.c_str());
      ++m_design.locations.skippedBlocks;
      return;
    case 'S':
      break;
    default:
      if (m_reading.has(Rule::SkipForeignBlocks)) {
        ++m_design.locations.skippedBlocks;
        return;
      }
      fatalSilently("The block %s is of a type that no register location is known for.",
                    std::string(location.block).c_str());
  }
  if (m_reading.has(Rule::SkipForeignBlocks) && !hasCoordinates(location.block)) {
    ++m_design.locations.skippedBlocks;
    return;
  }
  if (!location.hasSlr) location.slr = slrOf(location.block);
  if (m_reading.has(Rule::RawLocations)) {
    match(location);
  } else {
    report(record(location), location.net);
  }
}

void LogicLocationReader::openLine() {
  m_line = m_lines.line();
  std::replace(m_line.begin(), m_line.end(), '=', ' ');
}

bool LogicLocationReader::scan(Location& location) {
  const Form form = scanPlain(m_lines.line(), location);
  if (form != Form::Unusual) return form == Form::Location;
  location = {};
  openLine();
  return scanAny(m_line, location);
}

// A line as tools write it. A name with "=" or a blank in it is read in different ways.
LogicLocationReader::Form LogicLocationReader::scanPlain(std::string_view line,
                                                         Location& location) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  PlainScan scan(line);
  std::uint32_t number = 0;
  const bool plain = scan.literal("Bit") && scan.blanks() && scan.number(number) && scan.blanks() &&
                     scan.literal("0x") && scan.hexadecimal(location.frame) && scan.blanks() &&
                     scan.number(location.offset) && scan.blanks() && scan.literal("Block=") &&
                     scan.word(location.block, '=') && scan.blanks();
  if (!plain) return Form::Unusual;
  // Bits of memories have no latch. What may be white space is left to the other way.
  const auto next = static_cast<unsigned char>(scan.peek());
  if (next > ' ' && next != '=' && next != 'L') return Form::Other;
  const bool names = scan.literal("Latch=") && scan.word(location.latch, '=') && scan.blanks() &&
                     scan.literal("Net=") && scan.word(location.net, '=') && scan.ended();
  return names ? Form::Location : Form::Unusual;
}

bool LogicLocationReader::scanAny(std::string_view line, Location& location) const {
  Scan scan(line);
  std::uint32_t number = 0;
  std::uint64_t frame = 0;
  if (!scan.literal("Bit ") || !scan.integer(number) || !scan.literal(" 0x") ||
      !scan.hexadecimal(frame) || !scan.integer(location.offset)) {
    return false;
  }
  scanRegion(scan, location);
  const bool matches = scan.literal(" Block ") && scan.word(location.block) &&
                       scan.literal(" Latch ") && scan.word(location.latch) &&
                       scan.literal(" Net ") && scan.word(location.net);
  location.frame = static_cast<std::uint32_t>(frame);
  location.isPlace = frame <= 0xffffffff;
  if (matches && m_reading.has(Rule::RawLocations)) {
    // An escaped name may hold blanks; the net is the last column.
    const std::size_t end = line.find_last_not_of(" \t\r");
    const auto start = static_cast<std::size_t>(location.net.data() - line.data());
    // As it stands in the file: "=" is part of a name there.
    location.net = std::string_view(m_lines.line()).substr(start, end + 1 - start);
  }
  return matches;
}

// Files of larger devices name the region of each bit in two columns of their own.
void LogicLocationReader::scanRegion(Scan& scan, Location& location) const {
  if (!m_reading.has(Rule::RegionColumns)) return;
  Scan columns = scan;
  std::uint32_t region = 0;
  std::uint32_t number = 0;
  // The region is the number in its name; the column after it counts something else.
  location.hasSlr = columns.literal(" SLR") && columns.integer(region) && columns.integer(number);
  if (!location.hasSlr) return;
  location.slr = region;
  scan = columns;
}

void LogicLocationReader::match(const Location& location) {
  if (!location.isPlace) {
    recordMatches();
    report(Outcome::Unmatched, location.net);
    return;
  }
  if (!m_forgot) forgetLocations();
  m_forgot = true;
  const bool multiplexer = location.latch.size() > 1 && location.latch[1] == 'M';
  const StateLocation place{location.frame, location.offset, location.slr};
  if (!m_match.add(location.net, place, multiplexer)) recordMatches();
}

void LogicLocationReader::recordMatches() {
  m_match.record([this](std::string_view net, LocationMatch::Outcome outcome) {
    switch (outcome) {
      case LocationMatch::Outcome::Used:
        return report(Outcome::Used, net);
      case LocationMatch::Outcome::SkippedLatch:
        return report(Outcome::SkippedLatch, net);
      case LocationMatch::Outcome::Unmatched:
        return report(Outcome::Unmatched, net);
    }
  });
}

// The row of a site, as in SLICE_X3Y140, tells in which super logic region it lies.
std::uint32_t LogicLocationReader::slrOf(std::string_view block) const {
  if (block.size() < prefix) throw std::length_error("basic_string::_M_create");
  std::uint32_t y = 0;
  if (!scanCoordinates(block.substr(prefix), y)) {
    fatalSilently("The block %s has no coordinates.", std::string(block).c_str());
  }
  return m_slr_size == 0 ? 0 : y / m_slr_size;
}

LogicLocationReader::Outcome LogicLocationReader::record(const Location& location) {
  if (m_design.top == nullptr) fatalHere("The design has no RTL top module to locate nets under.");
  const char* top = m_design.top->getName();
  m_name = "/";
  if (top != nullptr) m_name += top;
  m_name += '/';
  m_name += location.net;
  normalise(m_name);
  Signal* rtl = m_search.find(RTL, m_name);
  Signal* synth = m_search.find(SYNTH, m_name);
  if (rtl == nullptr && synth == nullptr) return recordFlattened(location);
  Outcome outcome = Outcome::Unmatched;
  for (Signal* signal : {rtl, synth}) {
    if (signal != nullptr) outcome = std::min(outcome, record(location, *signal));
  }
  return outcome;
}

// Flattening joins the levels of a name with "_", beginning with the innermost.
LogicLocationReader::Outcome LogicLocationReader::recordFlattened(const Location& location) {
  std::uint64_t levels = 0;
  for (std::size_t slash = m_name.rfind('/'); slash != std::string::npos && levels++ <= mostLevels;
       slash = m_name.rfind('/', slash)) {
    m_name[slash] = '_';
    Signal* signal = m_search.find(SYNTH, m_name);
    if (signal != nullptr) return record(location, *signal);
  }
  return Outcome::Unmatched;
}

LogicLocationReader::Outcome LogicLocationReader::record(const Location& location, Signal& signal) {
  const Bit* bit = bitAt(signal, 0);
  if (bit == nullptr) return Outcome::SkippedIndex;
  // A multiplexer's tap shows a register's value only where the register drives the net.
  const bool multiplexer = location.latch.size() > 1 && location.latch[1] == 'M';
  if (multiplexer && !bit->isSrc()) return Outcome::SkippedLatch;
  signal.addState(0, location.frame, location.offset, location.slr);
  return Outcome::Used;
}

void LogicLocationReader::report(Outcome outcome, std::string_view net) {
  LocationReport& report = m_design.locations;
  switch (outcome) {
    case Outcome::Used:
      ++report.used;
      return;
    case Outcome::SkippedLatch:
      ++report.skippedLatches;
      return;
    case Outcome::SkippedIndex:
      ++report.skippedIndices;
      return;
    case Outcome::Unmatched:
      ++report.unmatched;
      keepName(report.unmatchedNames, net);
      return;
  }
}

}  // namespace XRF_RTL2LL
