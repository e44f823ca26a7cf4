#include <crossreference/LogMatch.h>
#include <crossreference/RegisterTies.h>
#include <support/Scan.h>

#include <algorithm>

namespace XRF_RTL2LL {

namespace {

// A name without the blanks around it, and without those that end an escaped level.
std::string tidied(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  std::string name;
  for (const char byte : text) {
    const bool endsLevel = byte == '/' || byte == ':';
    while (endsLevel && !name.empty() && isBlank(name.back())) name.pop_back();
    name += byte;
  }
  while (!name.empty() && isBlank(name.back())) name.pop_back();
  return name;
}

// Cuts off everything up to and including `word`.
bool skipPast(std::string_view& text, std::string_view word) {
  const std::size_t at = text.find(word);
  if (at == std::string_view::npos) return false;
  text.remove_prefix(at + word.size());
  return true;
}

bool takeQuoted(std::string_view& text, std::string& name) {
  if (!skipPast(text, "'")) return false;
  const std::size_t end = text.find('\'');
  if (end == std::string_view::npos) return false;
  name = tidied(text.substr(0, end));
  text.remove_prefix(end + 1);
  return !name.empty();
}

bool parseConstant(std::string_view text, LogLine& line) {
  if (!skipPast(text, "propagating constant ")) return false;
  Scan scan(text);
  std::uint32_t value = 0;
  if (!scan.integer(value) || !scan.literal(" across sequential element (")) return false;
  const std::string_view rest = scan.rest();
  const std::size_t end = rest.rfind(')');
  if (end == std::string_view::npos) return false;
  line.name = tidied(rest.substr(0, end));
  line.value = value != 0;
  return !line.name.empty();
}

bool parseMerge(std::string_view text, LogLine& line) {
  std::string_view instance = text;
  const bool found =
      skipPast(instance, "merging instance ") || skipPast(instance, "merging register ");
  if (!found || !takeQuoted(instance, line.name)) return false;
  return takeQuoted(instance, line.into);
}

}  // namespace

LogLine LogLine::parse(std::string_view text) {
  // A backslash may stand before any level and counts on neither side.
  std::string plain(text.substr(0, text.find('\0')));
  plain.erase(std::remove(plain.begin(), plain.end(), '\\'), plain.end());
  LogLine line;
  if (parseConstant(plain, line)) {
    line.kind = Constant;
  } else if (parseMerge(plain, line)) {
    line.kind = Merge;
  } else if (plain.find("suppressed") != std::string::npos ||
             plain.find("further instances of the messages will be disabled") !=
                 std::string::npos) {
    line.kind = Suppressed;
  }
  return line;
}

std::vector<BitRef*> LogMatch::registersOf(const NamedBits& bits) const {
  std::vector<BitRef*> refs;
  const Signal* signal = m_state.signals[RTL].find(bits.signal);
  if (signal == nullptr || bits.lsb < signal->getLsb() || bits.msb > signal->getMsb()) return refs;
  for (std::uint32_t index = bits.lsb; index <= bits.msb; ++index) {
    BitRef* ref = signal->getBitRef(index, true);
    if (ref == nullptr || !RegisterTies::isTied(*ref)) return {};
    refs.push_back(ref);
  }
  // From the right end to the left, however the range counts.
  if (bits.ascending) std::reverse(refs.begin(), refs.end());
  return refs;
}

std::vector<BitRef*> LogMatch::find(const std::string& name) const {
  const Module* top = m_state.top[RTL];
  if (top == nullptr || top->getName() == nullptr) return {};
  const std::string prefix = "/" + std::string(top->getName()) + "/";
  for (const PartitionedName& meant : partitionedNames(name)) {
    // A level that the design has itself is no partition's.
    const bool own =
        !meant.partition.empty() && m_state.modules[RTL].find(prefix + meant.partition) != nullptr;
    if (own) break;
    for (const std::string& levels : {meant.name, withCleanLevels(meant.name)}) {
      for (NamedBits reading : registerReadings(levels)) {
        reading.signal.insert(0, prefix);
        std::vector<BitRef*> refs = registersOf(reading);
        if (!refs.empty()) return refs;
      }
    }
  }
  return {};
}

LogMatch::Outcome LogMatch::markConstant(const LogLine& line) {
  const std::vector<BitRef*> refs = find(line.name);
  if (refs.empty()) return Outcome::Unknown;
  // A register that has a place in the device was not turned into a constant.
  const bool located = std::any_of(refs.begin(), refs.end(), [](const BitRef* ref) {
    return ref->getBit()->getKind() == Bit::STATE;
  });
  if (located) return Outcome::Contradicted;
  for (const BitRef* ref : refs) {
    ref->getBit()->setKind(Bit::CNST);
    ref->getBit()->setValue(line.value);
    ref->getBit()->setValueStr("z");
  }
  return Outcome::Marked;
}

bool LogMatch::merge(const std::vector<BitRef*>& gone, const std::vector<BitRef*>& survivors) {
  if (gone.empty() || gone.size() != survivors.size()) return false;
  for (std::size_t at = 0; at < gone.size(); ++at) {
    const Bit* bit = gone[at]->getBit();
    const bool known = bit->getKind() == Bit::STATE || bit->getKind() == Bit::CNST;
    if (bit != survivors[at]->getBit() && known) return false;
  }
  for (std::size_t at = 0; at < gone.size(); ++at) survivors[at]->merge(gone[at]);
  return true;
}

std::size_t LogMatch::applyMerges(std::vector<std::string>& unmatched) {
  std::size_t used = 0;
  // The last merge of a chain is applied first, so that what it finds out reaches all before it.
  std::reverse(m_merges.begin(), m_merges.end());
  for (const LogLine& line : m_merges) {
    if (merge(find(line.name), find(line.into))) {
      ++used;
    } else {
      unmatched.push_back(line.name);
    }
  }
  if (used > 0) m_state.model.settleBits();
  return used;
}

}  // namespace XRF_RTL2LL
