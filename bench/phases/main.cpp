// Builds a cross-reference from the files of a generated design, loads it again and looks names up,
// and prints what each step took.

#include "LookUps.h"
#include "Measure.h"
#include <crossreference/XRF_RTL2LL.h>

#include <cinttypes>
#include <cstdio>
#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using phases::Memory;
using phases::Timer;
using XRF_RTL2LL::Bit;
using XRF_RTL2LL::BitRef;
using XRF_RTL2LL::Design;
using XRF_RTL2LL::Fatal;
using XRF_RTL2LL::Matching;
using XRF_RTL2LL::Model;
using XRF_RTL2LL::ModelScope;
using XRF_RTL2LL::Module;
using XRF_RTL2LL::Net;
using XRF_RTL2LL::Signal;

constexpr const char* kUsage =
    "usage: phases [--matching strict|extended] DIR OUT.xrf\n"
    "       phases --netlist FILE\n"
    "\n"
    "Builds OUT.xrf from rtl.edf, synth.edf, design.ll and synth.log in DIR, loads it into a\n"
    "model of its own and looks 1000 signals up in it; or reads one netlist alone. Names are\n"
    "matched strictly unless told otherwise. Prints a line for each step, columns separated by\n"
    "tabs:\n"
    "  phase   name  wall s  cpu s  bytes of the file  resident after  peak since the start\n"
    "  count   name  number\n"
    "  size    class  bytes of an object, without what it points to\n"
    "Memory is in bytes of resident pages. The first model is freed before the file is loaded,\n"
    "and the peak starts anew there. The size of a model is what is resident beyond what was\n"
    "before it, once free memory is given back to the kernel; allocated bytes are those that the\n"
    "allocator counts.\n";

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

template <class Object>
void printSize(const char* name) {
  std::printf("size\t%s\t%zu\n", name, sizeof(Object));
}

void printSizes() {
  printSize<Bit>("Bit");
  printSize<BitRef>("BitRef");
  printSize<Signal>("Signal");
  printSize<Net>("Net");
  printSize<Module>("Module");
}

/// Runs one step of the build. The file may be one that the step makes.
void measure(const char* name, const std::string& file, const std::function<void()>& step) {
  const Timer timer;
  step();
  const double cpu = timer.cpu();
  const double wall = timer.wall();
  printPhase(name, wall, cpu, phases::fileSize(file), phases::memory());
}

/// What a model takes beyond what was there before it.
class ModelSize {
 public:
  explicit ModelSize(std::string name)
      : m_name(std::move(name)),
        m_resident(phases::memory().resident),
        m_allocated(phases::allocatedBytes()) {}

  void print() const {
    printCount((m_name + "-allocated-bytes").c_str(), phases::allocatedBytes() - m_allocated);
    phases::releaseFreeMemory();
    printCount((m_name + "-bytes").c_str(), phases::memory().resident - m_resident);
  }

 private:
  std::string m_name;
  uint64_t m_resident;
  uint64_t m_allocated;
};

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

void build(const std::string& folder, const std::string& output, Matching matching) {
  const ModelSize size("model");
  Model model;
  const ModelScope scope(model);
  Design design(matching);
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
  size.print();
}

void readNetlist(const std::string& file) {
  const uint64_t start = phases::memory().resident;
  const ModelSize size("netlist-model");
  Model model;
  const ModelScope scope(model);
  Design design;
  measure("netlist", file, [&] { design.parse_synth(file); });
  printCount("netlist-peak-bytes", phases::memory().peak - start);
  size.print();
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
  printCount("look-ups", names.size() * kFindRounds);
  printCount("find-rate", static_cast<uint64_t>(static_cast<double>(names.size()) / best));
}

void loadAndFind(const std::string& file, Matching matching) {
  phases::releaseFreeMemory();
  if (!phases::forgetPeak()) std::fputs("phases: the peak of load is that of the build\n", stderr);
  const ModelSize size("loaded-model");
  Model model;
  const ModelScope scope(model);
  Design design(matching);
  measure("load", file, [&] { design.parse_xrf(file); });
  size.print();
  find(design);
}

void ignoreMessage(int /*stream*/, const char* /*text*/, void* /*context*/) {}

void throwFatal(const Fatal& fatal, void* /*context*/) { throw std::runtime_error(fatal.text); }

/// Takes the option off the front of the arguments; nothing for a word that it does not have.
std::optional<Matching> takeMatching(std::vector<std::string>& arguments) {
  if (arguments.size() < 2 || arguments[0] != "--matching") return Matching::Strict;
  const std::string how = arguments[1];
  arguments.erase(arguments.begin(), arguments.begin() + 2);
  if (how == "strict") return Matching::Strict;
  if (how == "extended") return Matching::Extended;
  return std::nullopt;
}

}  // namespace

int main(int count, char** words) {
  std::vector<std::string> arguments(words + 1, words + count);
  const bool readsOne = arguments.size() == 2 && arguments[0] == "--netlist";
  const std::optional<Matching> matching = takeMatching(arguments);
  if (!matching || arguments.size() != 2) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  const XRF_RTL2LL::MessageHandlerScope messages(ignoreMessage);
  const XRF_RTL2LL::FatalHandlerScope fatals(throwFatal);
  try {
    printSizes();
    if (readsOne) {
      readNetlist(arguments[1]);
      return 0;
    }
    build(arguments[0], arguments[1], *matching);
    loadAndFind(arguments[1], *matching);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "phases: %s\n", error.what());
    return 1;
  }
}
