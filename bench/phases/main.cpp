// Builds a cross-reference from the files of a generated design, loads it again and looks names up,
// and prints what each step took.

#include "LookUps.h"
#include "Measure.h"
#include <crossreference/XRF_RTL2LL.h>

#include <cinttypes>
#include <cstdio>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using phases::Memory;
using phases::Timer;
using XRF_RTL2LL::Bit;
using XRF_RTL2LL::Design;
using XRF_RTL2LL::Fatal;
using XRF_RTL2LL::Model;
using XRF_RTL2LL::ModelScope;
using XRF_RTL2LL::Net;
using XRF_RTL2LL::Signal;

constexpr const char* kUsage =
    "usage: phases DIR OUT.xrf\n"
    "\n"
    "Builds OUT.xrf from rtl.edf, synth.edf, design.ll and synth.log in DIR, loads it into a\n"
    "model of its own and looks 1000 signals up in it. Prints a line for each step, columns\n"
    "separated by tabs:\n"
    "  phase   name  wall s  cpu s  bytes of the file  resident after  peak since the start\n"
    "  count   name  number\n"
    "Memory is in bytes of resident pages. The first model is freed before the file is loaded,\n"
    "and the peak starts anew there. The size of a model is what is resident beyond what was\n"
    "before it, once free memory is given back to the kernel.\n";

constexpr std::size_t kNames = 1000;
constexpr int kFindRounds = 20;

void printPhase(const char* name, double wall, double cpu, uint64_t bytes, const Memory& memory) {
  std::printf("phase\t%s\t%.9f\t%.9f\t%" PRIu64 "\t%" PRIu64 "\t%" PRIu64 "\n", name, wall, cpu,
              bytes, memory.resident, memory.peak);
  std::fflush(stdout);
}

void printCount(const char* name, uint64_t number) {
  std::printf("count\t%s\t%" PRIu64 "\n", name, number);
}

/// Runs one step of the build. The file may be one that the step makes.
void measure(const char* name, const std::string& file, const std::function<void()>& step) {
  const Timer timer;
  step();
  const double cpu = timer.cpu();
  const double wall = timer.wall();
  printPhase(name, wall, cpu, phases::fileSize(file), phases::memory());
}

/// What is resident beyond `start`, once free memory is given back to the kernel.
void printModelSize(const char* name, uint64_t start) {
  phases::releaseFreeMemory();
  printCount(name, phases::memory().resident - start);
}

void printCounts() {
  uint64_t references = 0;
  uint64_t oneBit = 0;
  for (const Signal* signal : Signal::getAllSignals()) {
    references += signal->getWidth();
    if (signal->getWidth() == 1) ++oneBit;
  }
  printCount("signals", Signal::getAllSignals().size());
  printCount("one-bit-signals", oneBit);
  printCount("signal-bits", references);
  printCount("bits", Bit::getAllBits().size());
  printCount("nets", Net::getAllNets().size());
}

void build(const std::string& folder, const std::string& output) {
  const uint64_t start = phases::memory().resident;
  Model model;
  const ModelScope scope(model);
  Design design;
  const std::string rtl = folder + "/rtl.edf";
  const std::string synth = folder + "/synth.edf";
  const std::string locations = folder + "/design.ll";
  const std::string log = folder + "/synth.log";
  measure("rtl", rtl, [&] { design.parse_rtl(rtl); });
  measure("synth", synth, [&] { design.parse_synth(synth); });
  measure("ll", locations, [&] { design.parse_ll(locations); });
  measure("log", log, [&] { design.parse_log(log); });
  printCounts();
  measure("export", output, [&] { design.exportDesign(output, true); });
  printModelSize("model-bytes", start);
}

/// The first round meets a model that nothing was looked up in; the best of all shows the rate that
/// a long session sees.
void find(const Design& design) {
  const std::vector<phases::SignalName> names = phases::pickNames(design, kNames);
  double best = 0;
  for (int round = 0; round < kFindRounds; ++round) {
    const Timer timer;
    const std::size_t found = phases::findAll(design, names);
    const double cpu = timer.cpu();
    const double wall = timer.wall();
    if (found != names.size()) throw std::runtime_error("a name of the model was not found");
    if (round == 0) printPhase("find", wall, cpu, 0, phases::memory());
    if (round == 0 || wall < best) best = wall;
  }
  printCount("names", names.size());
  printCount("find-rate", static_cast<uint64_t>(static_cast<double>(names.size()) / best));
}

void loadAndFind(const std::string& file) {
  phases::releaseFreeMemory();
  if (!phases::forgetPeak()) std::fputs("phases: the peak of load is that of the build\n", stderr);
  const uint64_t start = phases::memory().resident;
  Model model;
  const ModelScope scope(model);
  Design design;
  measure("load", file, [&] { design.parse_xrf(file); });
  printModelSize("loaded-model-bytes", start);
  find(design);
}

void ignoreMessage(int /*stream*/, const char* /*text*/, void* /*context*/) {}

void throwFatal(const Fatal& fatal, void* /*context*/) { throw std::runtime_error(fatal.text); }

}  // namespace

int main(int count, char** words) {
  if (count != 3) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  const XRF_RTL2LL::MessageHandlerScope messages(ignoreMessage);
  const XRF_RTL2LL::FatalHandlerScope fatals(throwFatal);
  try {
    build(words[1], words[2]);
    loadAndFind(words[2]);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "phases: %s\n", error.what());
    return 1;
  }
}
