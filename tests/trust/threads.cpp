// What may run at the same time: look-ups in one finished model, reads of designs in models of
// their own, reads of metadata documents. Meant for the thread sanitizer; elsewhere results are
// compared.
#include <crossreference/XRFDataBaseInterface.h>
#include <hpi/HPICommonUtils.h>
#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>
#include <tests/trust/Host.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace {

using namespace XRF_RTL2LL;

constexpr unsigned threads = 4;

void atTheSameTime(const std::function<void(unsigned)>& work) {
  std::vector<std::thread> running;
  for (unsigned number = 0; number < threads; ++number) running.emplace_back(work, number);
  for (std::thread& thread : running) thread.join();
}

/// A design in a model of its own.
class OwnDesign {
 public:
  OwnDesign() {
    const ModelScope scope(m_model);
    m_design = std::make_unique<Design>(Matching::Extended);
  }
  Design& operator*() { return *m_design; }
  Model& model() { return m_model; }

 private:
  Model m_model;
  std::unique_ptr<Design> m_design;
};

void addSignal(const Design& design, const Signal& signal, std::string& answers) {
  const std::string name = signal.getFullName();
  answers += name + (design.findSignal(RTL, name) == &signal ? " " : " lost ");
  for (std::uint64_t index = signal.getLsb(); index <= signal.getMsb(); ++index) {
    const BitRef* ref = signal.getBitRef(static_cast<unsigned>(index), true);
    if (ref == nullptr || ref->getBit() == nullptr) continue;
    const Bit& bit = *ref->getBit();
    answers += std::to_string(bit.getId()) + bit.getValueStr(false) +
               std::to_string(bit.getBitRefs().size()) + " ";
    if (bit.getKind() != Bit::STATE) continue;
    for (const RegisterBit& found :
         design.registersAt(bit.getStateLoc1(), bit.getStateLoc2(), bit.getStateLoc3())) {
      answers += design.writtenName(found) + " ";
    }
  }
  if (signal.getNet() != nullptr) answers += std::to_string(signal.getNet()->getSignals().size());
}

void addModule(const Design& design, const Module& module, std::string& answers) {
  answers += module.getPath() + module.getName() + module.getDefName();
  answers += design.getValidModulePath(RTL, module.getPath());
  for (const Signal* signal : module.getSignals(false)) addSignal(design, *signal, answers);
  for (const Signal* signal : module.getSignals(true)) answers += signal->getName();
  for (const Module* child : module.getChildren(true)) answers += child->getName();
  for (const Module* child : module.getChildren(false)) addModule(design, *child, answers);
}

// Everything that a debugger asks, as one text.
std::string askAll(OwnDesign& own) {
  const ModelScope scope(own.model());
  const Design& design = *own;
  std::string answers;
  addModule(design, *design.getNetlist()->getTop(RTL), answers);
  addModule(design, *design.getNetlist()->getTop(SYNTH), answers);
  answers += std::to_string(Bit::getAllBits().size() + Signal::getAllSignals().size());
  for (const auto& instance : design.getNetlist()->getInstances(SYNTH)) answers += instance.second;
  for (const auto& module : design.coverage().modules) answers += module.path;
  const auto registers = design.registersOf("no/such_reg");
  return answers + (registers ? "found" : "") + std::to_string(design.locationReport().used);
}

void lookUpInOneModel(const std::string& folder) {
  OwnDesign design;
  trust::readAll(*design, folder);
  std::vector<std::string> answers(threads);
  // Nothing has been asked before: what is worked out on demand is worked out by several at once.
  atTheSameTime([&](unsigned number) { answers[number] = askAll(design); });
  trust::require(answers[0].size() > 10'000, "the design has something to ask for");
  for (const std::string& answer : answers) {
    trust::require(answer == answers[0], "all threads get the same answers");
  }
  OwnDesign loaded;
  const std::string file = folder + "/threads.xrf";
  (*design).exportDesign(file, true);
  (*loaded).parse_xrf(file);
  atTheSameTime([&](unsigned number) { answers[number] = askAll(loaded); });
  for (const std::string& answer : answers) {
    trust::require(answer == answers[0], "all threads get the same answers of a loaded model");
  }
}

std::string built(const std::string& folder, const std::string& name) {
  OwnDesign design;
  trust::readAll(*design, folder);
  const std::string file = folder + "/" + name;
  (*design).exportDesign(file, true);
  OwnDesign again;
  (*again).parse_xrf(file);
  return test::contentOf(file) + askAll(again);
}

void readIntoTheirOwnModels(const std::vector<std::string>& folders) {
  std::vector<std::string> alone;
  for (const std::string& folder : folders) alone.push_back(built(folder, "alone.xrf"));
  std::vector<std::string> together(threads);
  atTheSameTime(
      [&](unsigned number) { together[number] = built(folders[number], "together.xrf"); });
  trust::require(alone == together, "designs read at the same time are those read alone");
}

std::string metadata() {
  const std::string file = XRF_SOURCE_DIR "/examples/vadd/vadd.xml";
  const Movrel::Project project(file.c_str(), nullptr);
  std::string text;
  project.Marshal(&text);
  XRF::HardwareEmulationMap map(file);
  for (int kernel = 0; kernel < map.numKernels(); ++kernel) {
    const std::string name = map.getKernelName(kernel);
    text += name + map.breakFunctionStart(name, 0) + map.computeUnitName(name, 0);
    for (const XRF::KernelArgument& argument : map.arguments(name)) text += argument.signal;
  }
  return text;
}

void readMetadata() {
  HPICommonUtils::setBDDesignName("bd");
  const std::string alone = metadata();
  std::atomic<bool> same = true;
  atTheSameTime([&](unsigned) {
    for (int round = 0; round < 5; ++round) {
      if (metadata() != alone) same = false;
    }
  });
  trust::require(same, "documents read at the same time are those read alone");
}

}  // namespace

int main() {
  // Messages of several threads would be kept in one text.
  const MessageHandlerScope silent([](int, const char*, void*) {});
  const test::TempFile place;
  std::vector<std::string> folders;
  for (unsigned number = 0; number < threads; ++number) {
    folders.push_back(place.folder() + "/" + std::to_string(number));
    std::filesystem::create_directory(folders.back());
    trust::generate(folders.back(), 100 + 50 * number, number);
  }
  lookUpInOneModel(folders[0]);
  readIntoTheirOwnModels(folders);
  readMetadata();
  std::printf("%u threads: look-ups in one model, designs in their own, metadata: as alone\n",
              threads);
  return 0;
}
