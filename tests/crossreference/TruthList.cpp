#include <tests/crossreference/TruthList.h>

#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

namespace test {

using XRF_RTL2LL::Bit;
using XRF_RTL2LL::BitRef;
using XRF_RTL2LL::Design;
using XRF_RTL2LL::Module;
using XRF_RTL2LL::RTL;
using XRF_RTL2LL::Signal;

namespace {

bool parseStatus(const std::string& text, Truth& truth) {
  std::istringstream in(text);
  std::string word;
  in >> word;
  if (word == "located") {
    truth.status = Truth::Located;
    in >> truth.frame >> truth.offset;
  } else if (word == "constant") {
    truth.status = Truth::Constant;
    in >> truth.value;
  } else if (word != "removed") {
    return false;
  }
  return !in.fail() && in.peek() == std::istringstream::traits_type::eof();
}

Truth parseLine(const std::string& line) {
  const std::vector<std::string> column = tabColumns(line);
  Truth truth;
  if (column.size() != 5 || !parseStatus(column[3], truth) ||
      (column[4] != "yes" && column[4] != "no")) {
    throw std::runtime_error("not a line of a truth list: " + line);
  }
  truth.source = column[0];
  truth.signal = column[1];
  truth.index = static_cast<unsigned int>(std::stoul(column[2]));
  truth.isFound = column[4] == "yes";
  return truth;
}

std::string place(unsigned int frame, unsigned int offset, unsigned int region) {
  return "located " + std::to_string(frame) + " " + std::to_string(offset) + " region " +
         std::to_string(region);
}

std::string expected(const Truth& truth) {
  if (!truth.isFound || truth.status == Truth::Removed) return "nothing";
  if (truth.status == Truth::Located) return place(truth.frame, truth.offset, 0);
  return truth.value ? "constant 1" : "constant 0";
}

std::string actual(const Bit& bit) {
  switch (bit.getKind()) {
    case Bit::STATE:
      return place(bit.getStateLoc1(), bit.getStateLoc2(), bit.getStateLoc3());
    case Bit::CNST:
      return bit.getValue() ? "constant 1" : "constant 0";
    case Bit::UNKNOWN:
    case Bit::UNREAD:
      break;
  }
  return "nothing";
}

const Bit* bitAt(const Signal& signal, unsigned int index) {
  if (index < signal.getLsb() || index > signal.getMsb()) return nullptr;
  const BitRef* ref = signal.getBitRef(index, true);
  return ref == nullptr ? nullptr : ref->getBit();
}

const Bit* bitOf(const Design& design, const Truth& truth) {
  const Signal* signal = design.getNetlist()->findSignal(RTL, truth.signal);
  return signal == nullptr ? nullptr : bitAt(*signal, truth.index);
}

bool isSupply(const Module& cell) {
  const std::string_view definition = cell.getDefName();
  return definition == "RTL_GND" || definition == "RTL_PWR";
}

// Constants besides the registers come from a constant's driver, and from pins that only synthesis
// connected.
bool mayBeConstant(const Bit& bit) {
  bool isUndriven = true;
  for (const BitRef* ref : bit.getBitRefs()) {
    const Signal& signal = *ref->getSignal();
    const Module& module = *signal.getModule();
    if (isSupply(module)) return true;
    const bool isInputPin = signal.getKind() == XRF_RTL2LL::IN && module.getChildren(false).empty();
    isUndriven = isUndriven && isInputPin;
  }
  return isUndriven;
}

class Judge {
 public:
  explicit Judge(const Design& design) : m_design(design) {}

  void registers(const std::vector<Truth>& truth, bool foundOnly);
  void everyOtherBit();
  const Verdict& verdict() const { return m_verdict; }

 private:
  void fault(const std::string& text) { m_verdict.faults.push_back(text); }
  void compare(const Truth& truth, const Bit& bit);
  void signal(const Signal& signal);

  const Design& m_design;
  std::unordered_map<const Bit*, const Truth*> m_owners;
  Verdict m_verdict;
};

void Judge::registers(const std::vector<Truth>& truth, bool foundOnly) {
  std::set<std::string> sources;
  for (const Truth& one : truth) {
    if (!sources.insert(one.source).second) fault(one.source + " is listed twice");
    if (one.status != Truth::Removed) ++m_verdict.surviving;
    if (foundOnly && !one.isFound) continue;
    const Bit* bit = bitOf(m_design, one);
    if (bit == nullptr) {
      fault(one.source + ": no bit " + std::to_string(one.index) + " of " + one.signal);
    } else {
      compare(one, *bit);
    }
  }
}

void Judge::compare(const Truth& truth, const Bit& bit) {
  const auto [owner, isNew] = m_owners.emplace(&bit, &truth);
  if (!isNew) fault(truth.source + " shares the bit of " + owner->second->source);
  const std::string is = actual(bit);
  const std::string should = expected(truth);
  if (is != should) {
    fault(truth.source + ": " + is + " instead of " + should);
  } else if (truth.isFound) {
    ++m_verdict.found;
  }
}

void Judge::everyOtherBit() {
  std::vector<const Module*> open = {m_design.getNetlist()->getTop(RTL)};
  while (!open.empty()) {
    const Module* module = open.back();
    open.pop_back();
    for (const Signal* one : module->getSignals(false)) signal(*one);
    for (const Module* child : module->getChildren(false)) open.push_back(child);
  }
}

void Judge::signal(const Signal& signal) {
  for (unsigned int index = signal.getLsb(); index <= signal.getMsb(); ++index) {
    const Bit* bit = bitAt(signal, index);
    if (bit == nullptr || m_owners.contains(bit)) continue;
    const std::string name = signal.getFullName() + " at " + std::to_string(index);
    if (bit->getKind() == Bit::STATE) fault(name + " is " + actual(*bit) + " but no register");
    if (bit->getKind() == Bit::CNST && !mayBeConstant(*bit))
      fault(name + " is constant but no register");
    if (bit->isSrc()) fault(name + " is a register that is not listed");
  }
}

}  // namespace

std::vector<std::string> tabColumns(const std::string& line) {
  std::vector<std::string> result;
  std::istringstream in(line);
  for (std::string column; std::getline(in, column, '\t');) result.push_back(column);
  return result;
}

std::vector<std::string> truthLines(const std::string& path) {
  std::ifstream in(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  if (lines.empty()) throw std::runtime_error("no truth list at " + path);
  return lines;
}

std::vector<Truth> parseTruth(const std::vector<std::string>& lines) {
  std::vector<Truth> truth;
  for (const std::string& line : lines) {
    if (!line.starts_with('#')) truth.push_back(parseLine(line));
  }
  return truth;
}

Verdict judge(const Design& design, const std::vector<Truth>& truth) {
  Judge judge(design);
  judge.registers(truth, false);
  judge.everyOtherBit();
  return judge.verdict();
}

Verdict judgeFound(const Design& design, const std::vector<Truth>& truth) {
  Judge judge(design);
  judge.registers(truth, true);
  return judge.verdict();
}

}  // namespace test
