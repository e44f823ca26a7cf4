#include <crossreference/NetlistState.h>
#include <tests/TempFile.h>
#include <tests/crossreference/GeneratedDesign.h>
#include <tests/crossreference/Recovery.h>
#include <tests/crossreference/TruthList.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <unordered_map>

namespace test {

using XRF_RTL2LL::Bit;
using XRF_RTL2LL::Design;
using XRF_RTL2LL::Reading;
using XRF_RTL2LL::RTL;
using XRF_RTL2LL::Rule;
using XRF_RTL2LL::Signal;

const std::array<NamedRule, 16> kRules = {{{Rule::PrintableRegisters, "printable registers"},
                                           {Rule::LateAliases, "late aliases"},
                                           {Rule::PrintableArrays, "printable arrays"},
                                           {Rule::PrintablePorts, "printable ports"},
                                           {Rule::CleanNames, "clean names"},
                                           {Rule::RawLocations, "raw locations"},
                                           {Rule::RegisterCopy, "register copy"},
                                           {Rule::RawLog, "raw log"},
                                           {Rule::LoadedRegisters, "loaded registers"},
                                           {Rule::RegionColumns, "region columns"},
                                           {Rule::LogMerges, "log merges"},
                                           {Rule::StateCells, "state cells"},
                                           {Rule::SkipForeignBlocks, "skip foreign blocks"},
                                           {Rule::UnreadIsOpen, "unread is open"},
                                           {Rule::ClosingModules, "closing modules"},
                                           {Rule::DeclareLoadedBits, "declare loaded bits"}}};

namespace {

std::string expectedOf(const std::string& status) {
  std::istringstream in(status);
  std::string fate;
  in >> fate;
  if (fate == "merged") return "located" + status.substr(fate.size());
  return fate == "located" || fate == "constant" ? status : "nothing";
}

std::string shown(const Bit* bit) {
  if (bit == nullptr) return "nothing";
  switch (bit->getKind()) {
    case Bit::STATE:
      return "located " + std::to_string(bit->getStateLoc1()) + " " +
             std::to_string(bit->getStateLoc2()) + " " + std::to_string(bit->getStateLoc3());
    case Bit::CNST:
      return bit->getValue() ? "constant 1" : "constant 0";
    case Bit::UNKNOWN:
    case Bit::UNREAD:
      break;
  }
  return "nothing";
}

const Bit* bitOf(const Design& design, const RegisterTruth& truth) {
  const Signal* signal = design.getNetlist()->findSignal(RTL, truth.signal);
  if (signal == nullptr || truth.index < signal->getLsb() || truth.index > signal->getMsb()) {
    return nullptr;
  }
  const XRF_RTL2LL::BitRef* ref = signal->getBitRef(truth.index, true);
  return ref == nullptr ? nullptr : ref->getBit();
}

/// A design in a model of its own, read under a mask of rules.
class MaskedDesign {
 public:
  explicit MaskedDesign(Reading reading) : m_scope(m_model), m_design(std::make_unique<Design>()) {
    readAs(*m_design->getNetlist(), reading);
  }
  Design& operator*() { return *m_design; }
  Design* operator->() { return m_design.get(); }

 private:
  XRF_RTL2LL::Model m_model;
  XRF_RTL2LL::ModelScope m_scope;
  std::unique_ptr<Design> m_design;
};

void readNetlists(Design& design, const std::string& folder) {
  design.parse_rtl(folder + "/rtl.edf");
  design.parse_synth(folder + "/synth.edf");
}

void readDevice(Design& design, const std::string& folder) {
  design.parse_ll(folder + "/design.ll");
  design.parse_log(folder + "/synth.log");
}

// What a command does that loads a file and writes another one.
std::string savedAgain(const std::string& file, const std::string& folder, Reading reading) {
  MaskedDesign design(reading);
  design->parse_xrf(file);
  std::string again = folder + "/again.xrf";
  design->exportDesign(again, true);
  return again;
}

void judge(const Design& design, const std::vector<RegisterTruth>& truth, Recovery& recovery) {
  for (const RegisterTruth& one : truth) {
    if (one.survives()) ++recovery.surviving;
    const std::string is = shown(bitOf(design, one));
    if (is == one.expected) {
      recovery.right += one.survives() ? 1 : 0;
    } else if (is == "nothing") {
      recovery.missing.push_back(one.source + " (" + one.fate + ")");
    } else {
      recovery.wrong.push_back(one.source + " (" + one.fate + "): " + is + " instead of " +
                               one.expected);
    }
  }
}

void save(const std::string& file, const std::string& folder, Reading reading, bool complete) {
  MaskedDesign design(reading);
  readNetlists(*design, folder);
  if (complete) {
    readDevice(*design, folder);
  } else {
    design->getNetlist()->finalPostProcess();
    design->initializeBits();
  }
  design->exportDesign(file, true);
}

// A model as it was saved on the way to the registers.
std::string savedModel(const std::string& folder, Reading reading, Route route,
                       const TempFile& place) {
  std::string saved = place.folder() + "/saved.xrf";
  save(saved, folder, route == Route::SavedStrictly ? Reading::strict() : reading,
       route == Route::SavedComplete);
  return route == Route::SavedEarly ? savedAgain(saved, place.folder(), reading) : saved;
}

void readAndJudge(const std::string& folder, const std::vector<RegisterTruth>& truth,
                  Reading reading, Route route, Recovery& recovery) {
  const TempFile place;
  MaskedDesign design(reading);
  if (route == Route::Netlists) {
    readNetlists(*design, folder);
  } else {
    design->parse_xrf(savedModel(folder, reading, route, place));
  }
  if (route != Route::SavedComplete) readDevice(*design, folder);
  judge(*design, truth, recovery);
}

}  // namespace

std::string_view nameOf(Route route) {
  switch (route) {
    case Route::Netlists:
      return "netlists";
    case Route::SavedComplete:
      return "saved complete";
    case Route::SavedEarly:
      return "saved early";
    case Route::SavedStrictly:
      return "saved strictly";
  }
  return "";
}

std::vector<RegisterTruth> registerTruth(const std::vector<std::string>& lines) {
  std::vector<RegisterTruth> truth;
  for (const std::string& line : lines) {
    if (line.starts_with('#')) continue;
    const std::vector<std::string> column = tabColumns(line);
    if (column.size() != 8) throw std::runtime_error("not a line of a truth list: " + line);
    const std::string fate = column[7].substr(0, column[7].find(' '));
    truth.push_back({column[0], column[5], static_cast<unsigned int>(std::stoul(column[6])), fate,
                     expectedOf(column[7])});
  }
  return truth;
}

Recovery recover(const std::string& folder, const std::vector<RegisterTruth>& truth,
                 Reading reading, Route route) {
  const QuietHost host;
  Recovery recovery;
  try {
    readAndJudge(folder, truth, reading, route, recovery);
  } catch (const std::runtime_error& error) {
    recovery = {};
    recovery.ended = error.what();
  }
  return recovery;
}

void generateHazards(const HazardOptions& options, const std::string& folder) {
  runProgram(std::string(XRF_GENERATE) + " --registers " + std::to_string(options.registers) +
             " --seed " + std::to_string(options.seed) + " --shape " + options.shape +
             " --hazards " + options.hazards + " --out " + folder);
}

std::vector<std::string> hazardNames() {
  const TempFile list;
  runProgram(std::string(XRF_GENERATE) + " --list-hazards >" + list.path());
  std::istringstream in(list.content());
  std::vector<std::string> names;
  for (std::string line; std::getline(in, line);) names.push_back(line.substr(0, line.find(' ')));
  return names;
}

}  // namespace test
