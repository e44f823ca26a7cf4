#include <crossreference/DesignState.h>
#include <crossreference/LogMatch.h>
#include <crossreference/NetlistState.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>
#include <support/FileLines.h>
#include <support/Report.h>
#include <support/Scan.h>

#include <algorithm>

namespace XRF_RTL2LL {

/// Marks the registers that one synthesis log reports as constants.
class SynthesisLogReader {
 public:
  SynthesisLogReader(Design& design, Design::State& state, const std::string& path,
                     const TextSource& text);

  void read();
  /// Completes the RTL view once all lines are read.
  void finish();

 private:
  bool match_line();
  void parse_line();
  Signal* find(const std::string& name) const;
  bool mayMark(const Signal& signal) const;
  void mark(const Signal& signal, bool value);

  Design& m_design;
  Design::State& m_state;
  FileLines m_lines;
  std::string m_line;
  NetlistState& m_netlist;
  LogMatch m_match;
};

int Design::parse_log(std::string file) {
  return getFamily() == TORVAL7 ? parse_log_tarvona(file) : 0;
}

int Design::parse_log_tarvona(std::string file) {
  const DesignUse use(m_state->model);
  const TextSource input(file);
  if (!input.isOpen()) fatal("Can't open file %s\n", file.c_str());
  SynthesisLogReader reader(*this, *m_state, file, input);
  reader.read();
  message(StandardOutput, "Parsing log file: %s complete.\n", file.c_str());
  reader.finish();
  return initializeBits();
}

SynthesisLogReader::SynthesisLogReader(Design& design, Design::State& state,
                                       const std::string& path, const TextSource& text)
    : m_design(design),
      m_state(state),
      m_lines(path, text, "Reading synthesis log"),
      m_netlist(*state.netlist->m_state),
      m_match(m_netlist) {}

void SynthesisLogReader::read() {
  while (m_lines.next()) {
    // A last line that was cut short is not trusted.
    if (m_lines.terminated() && !match_line()) parse_line();
  }
}

void SynthesisLogReader::finish() {
  m_state.netlist->finalPostProcess();
  std::vector<std::string> unmatched;
  m_state.log.used += m_match.applyMerges(unmatched);
  m_state.log.unmatched += unmatched.size();
  for (const std::string& name : unmatched) keepName(m_state.log.unmatchedNames, name);
}

// Extended reading tries the raw names first; false leaves the line to the strict steps.
bool SynthesisLogReader::match_line() {
  const Reading reading = m_netlist.reading;
  if (!reading.has(Rule::RawLog) && !reading.has(Rule::LogMerges)) return false;
  const LogLine line = LogLine::parse(m_lines.line());
  if (line.kind == LogLine::Suppressed) m_state.log.suppressed = true;
  if (line.kind == LogLine::Merge && reading.has(Rule::LogMerges)) {
    ++m_state.log.lines;
    m_match.noteMerge(line);
    return true;
  }
  if (line.kind != LogLine::Constant || !reading.has(Rule::RawLog)) return false;
  const LogMatch::Outcome outcome = m_match.markConstant(line);
  if (outcome == LogMatch::Outcome::Unknown) return false;
  ++m_state.log.lines;
  if (outcome == LogMatch::Outcome::Marked) {
    ++m_state.log.used;
  } else {
    ++m_state.log.unmatched;
    keepName(m_state.log.unmatchedNames, line.name);
  }
  return true;
}

void SynthesisLogReader::parse_line() {
  m_line.clear();
  for (const char byte : m_lines.line()) {
    if (byte == '\\') continue;
    const bool joins = byte == '[' || byte == ']' || byte == '.';
    const bool separates = byte == ':' || byte == '(' || byte == ')';
    m_line += joins ? '_' : (separates ? ' ' : byte);
  }
  Scan scan(m_line);
  std::uint32_t constant = 0;
  std::string_view element;
  std::string_view suffix;
  if (!scan.literal("INFO   _Synth 8-3333_  propagating constant ") || !scan.integer(constant) ||
      !scan.literal(" across sequential element ") || !scan.word(element)) {
    return;
  }
  scan.word(suffix);
  ++m_state.log.lines;
  if (m_state.top == nullptr)
    fatalHere("The design has no RTL top module to find registers under.");
  const char* top = m_state.top->getName();
  const std::string name = "/" + std::string(top == nullptr ? "" : top) + "/" +
                           std::string(element) + std::string(suffix);
  const Signal* signal = find(name);
  if (signal != nullptr && mayMark(*signal)) {
    mark(*signal, constant != 0);
    return;
  }
  message(StandardOutput, "WARNING: Unable to locate signal %s\n", name.c_str());
  ++m_state.log.unmatched;
  keepName(m_state.log.unmatchedNames, name);
}

Signal* SynthesisLogReader::find(const std::string& name) const {
  Signal* signal = m_state.netlist->findSignal(RTL, name);
  const std::size_t slash = name.rfind('/');
  // Shortening the path may hit another register of the parent; wrong is worse than missing.
  const bool shortens = !m_netlist.reading.has(Rule::RawLog);
  if (signal != nullptr || slash == std::string::npos || !shortens) return signal;
  const std::string path = m_design.getValidModulePath(RTL, name.substr(0, slash));
  return m_state.netlist->findSignal(RTL, path + name.substr(slash));
}

// In extended reading only the alias of a register whose instance's name tells no signal is left to
// these steps.
bool SynthesisLogReader::mayMark(const Signal& signal) const {
  if (!m_netlist.reading.has(Rule::RawLog)) return true;
  const Bit* bit = bitAt(signal, 0);
  const Module* cell = m_netlist.modules[RTL].find(NameKey(signal));
  if (bit == nullptr || cell == nullptr || !RegisterTies::isRegister(m_netlist, *cell))
    return false;
  const Signal* output = RegisterTies::outputOf(*cell);
  return output != nullptr && bitAt(*output, 0) == bit && bit->getKind() != Bit::STATE &&
         !m_netlist.isAmbiguous(signal);
}

void SynthesisLogReader::mark(const Signal& signal, bool value) {
  Bit* bit = bitAt(signal, 0);
  if (bit == nullptr) {
    ++m_state.log.skipped;
    return;
  }
  bit->setKind(Bit::CNST);
  bit->setValue(value);
  // The text of a constant bit stays open; its value says what it is.
  bit->setValueStr("z");
  ++m_state.log.used;
}

}  // namespace XRF_RTL2LL
