#include <crossreference/LogMatch.h>
#include <crossreference/RegisterTies.h>
#include <crossreference/SignalIndex.h>
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
  std::string_view rest = text;
  if (!skipPast(rest, "merging instance ")) {
    line.isLocal = skipPast(rest, "merging register ");
    if (!line.isLocal) return false;
  }
  return takeQuoted(rest, line.name) && takeQuoted(rest, line.into);
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

const RegisterPairs& LogMatch::pairs() {
  if (m_pairs == nullptr) m_pairs = RegisterPairs::of(m_state);
  return *m_pairs;
}

LogMatch::Bits LogMatch::bitsOf(const NamedBits& name, Bare bare) const {
  const Signal* signal = m_state.signals[RTL].find(name.signal);
  if (signal == nullptr || m_state.isAmbiguous(*signal)) return {};
  std::uint64_t first = name.lsb;
  std::uint64_t last = name.msb;
  if (name.bare && signal->getWidth() > 1) {
    if (bare == Bare::Refuse) return {};
    first = signal->getLsb();
    last = signal->getMsb();
  }
  if (first < signal->getLsb() || last > signal->getMsb()) return {};
  Bits bits;
  for (std::uint64_t index = first; index <= last; ++index) {
    BitRef* ref = refAt(*signal, index);
    if (!RegisterTies::isTied(ref)) return {};
    bits.push_back(ref);
  }
  if (name.ascending) std::reverse(bits.begin(), bits.end());
  return bits;
}

LogMatch::Bits LogMatch::findBelow(const std::string& scope, const std::string& name,
                                   Bare bare) const {
  for (const std::string& levels : {name, withCleanLevels(name)}) {
    for (NamedBits reading : registerReadings(levels)) {
      reading.signal.insert(0, scope);
      Bits bits = bitsOf(reading, bare);
      if (!bits.empty()) return bits;
    }
  }
  return {};
}

// The paths of the instances of a definition, each with a "/" after it.
std::vector<std::string> LogMatch::scopesOf(const std::string& definition) {
  if (m_instances.empty()) {
    m_state.modules[RTL].each([this](const Module* module) {
      const bool holdsModules = !module->getChildren(false).empty();
      const char* name = module->getDefName();
      if (holdsModules && name != nullptr) m_instances.emplace(name, module);
    });
  }
  std::vector<std::string> scopes;
  const auto [first, last] = m_instances.equal_range(definition);
  for (auto instance = first; instance != last; ++instance) {
    scopes.push_back(NameKey(*instance->second).compose() + "/");
  }
  return scopes;
}

std::vector<LogMatch::Bits> LogMatch::find(const std::string& name, Bare bare) {
  const Module* top = m_state.top[RTL];
  if (top == nullptr || top->getName() == nullptr) return {};
  const std::string prefix = "/" + std::string(top->getName()) + "/";
  for (const PartitionedName& meant : partitionedNames(name)) {
    if (meant.partition.empty()) {
      Bits bits = findBelow(prefix, meant.name, bare);
      if (!bits.empty()) return {bits};
      continue;
    }
    // A level that the design has itself is no partition's.
    if (m_state.modules[RTL].find(prefix + meant.partition) != nullptr) return {};
    std::vector<std::string> scopes = scopesOf(meant.partition);
    const bool isDefinition = !scopes.empty();
    if (!isDefinition) scopes.push_back(prefix);
    std::vector<Bits> all;
    for (const std::string& scope : scopes) {
      Bits bits = findBelow(scope, meant.name, bare);
      if (!bits.empty()) all.push_back(std::move(bits));
    }
    if (!all.empty() || isDefinition) return all;
  }
  return {};
}

LogMatch::Outcome LogMatch::markConstant(const LogLine& line) {
  bool marked = false;
  const std::vector<Bits> registers = find(line.name, Bare::Whole);
  for (const Bits& bits : registers) {
    const bool there = std::any_of(bits.begin(), bits.end(), [this](const BitRef* ref) {
      return ref->getBit()->getKind() == Bit::STATE || pairs().isImplemented(*ref);
    });
    if (there) continue;
    marked = true;
    for (const BitRef* ref : bits) {
      ref->getBit()->setKind(Bit::CNST);
      ref->getBit()->setValue(line.value);
      ref->getBit()->setValueStr("z");
    }
  }
  if (marked) return Outcome::Marked;
  return registers.empty() ? Outcome::Unknown : Outcome::Contradicted;
}

bool LogMatch::merge(BitRef& gone, BitRef& survivor) {
  const Bit& bit = *gone.getBit();
  const Bit& other = *survivor.getBit();
  if (&bit == &other) return true;
  if (bit.getKind() == Bit::CNST && other.getKind() == Bit::CNST) {
    return bit.getValue() == other.getValue();
  }
  const bool known = bit.getKind() == Bit::STATE || bit.getKind() == Bit::CNST;
  // What was merged into another one can't be merged again.
  if (known || pairs().isImplemented(gone) || !m_gone.insert(&gone).second) return false;
  survivor.merge(&gone);
  return true;
}

bool LogMatch::merge(const Bits& gone, const Bits& survivors) {
  if (gone.empty() || gone.size() != survivors.size()) return false;
  bool all = true;
  for (std::size_t at = 0; at < gone.size(); ++at) all = merge(*gone[at], *survivors[at]) && all;
  return all;
}

bool LogMatch::follow(const LogLine& line) {
  const bool hasPath =
      line.name.find('/') != std::string::npos || line.into.find('/') != std::string::npos;
  if (line.isLocal && !hasPath) return followLocally(line);
  const std::vector<Bits> gone = find(line.name, Bare::Refuse);
  const std::vector<Bits> survivors = find(line.into, Bare::Refuse);
  if (gone.empty() || gone.size() != survivors.size()) return false;
  bool all = true;
  for (std::size_t at = 0; at < gone.size(); ++at) all = merge(gone[at], survivors[at]) && all;
  return all;
}

// Names without a path are those of some module. Where modules of several kinds have both
// registers, nobody can tell which one is meant.
bool LogMatch::followLocally(const LogLine& line) {
  if (m_holders.empty()) {
    for (const RegisterPairs::Pair& pair : pairs().registers()) {
      m_holders.emplace(pair.rtl->getName(), pair.rtl->getModule());
    }
  }
  const std::string name = cleaned(line.name);
  const std::string into = cleaned(line.into);
  std::vector<std::pair<Bits, Bits>> merges;
  std::unordered_set<std::string> definitions;
  for (const NamedBits& reading : registerReadings(name)) {
    const auto [first, last] = m_holders.equal_range(reading.signal);
    for (auto holder = first; holder != last; ++holder) {
      const std::string scope = NameKey(*holder->second).compose() + "/";
      Bits gone = findBelow(scope, name, Bare::Refuse);
      Bits survivors = findBelow(scope, into, Bare::Refuse);
      if (gone.empty() || survivors.empty()) continue;
      const char* definition = holder->second->getDefName();
      definitions.insert(definition == nullptr ? "" : definition);
      merges.emplace_back(std::move(gone), std::move(survivors));
    }
  }
  if (definitions.size() != 1) return false;
  bool all = true;
  for (const auto& [gone, survivors] : merges) all = merge(gone, survivors) && all;
  return all;
}

std::size_t LogMatch::applyMerges(std::vector<std::string>& unmatched) {
  std::size_t used = 0;
  // The last merge of a chain is applied first, so that what it finds out reaches all before it.
  std::reverse(m_merges.begin(), m_merges.end());
  for (const LogLine& line : m_merges) {
    if (follow(line)) {
      ++used;
    } else {
      unmatched.push_back(line.name);
    }
  }
  if (!m_gone.empty()) m_state.model.settleBits();
  return used;
}

}  // namespace XRF_RTL2LL
