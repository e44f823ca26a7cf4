// Fails every allocation of a small build, load and metadata read in turn. Each ends in
// std::bad_alloc or an answer of the library's own, leaks nothing, and leaves the older output.
#include <crossreference/XRFDataBaseInterface.h>
#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>
#include <support/FileReplacement.h>
#include <tests/trust/FailingHeap.h>
#include <tests/trust/Host.h>

#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <new>
#include <unistd.h>

namespace {

using namespace XRF_RTL2LL;
namespace heap = trust::heap;

// Beyond so many allocations they are sampled.
constexpr std::uint64_t mostFailures = 3000;

struct Case {
  const char* name;
  // Puts the result into the file that is named; raises what the library raises.
  std::function<void(const std::string& output)> work;
};

void exportTo(Design& design, const std::string& output) {
  FileReplacement file(output);
  if (file.error() != 0) throw std::bad_alloc();
  design.exportDesign(file.path(), true);
  if (!file.commit()) throw std::bad_alloc();
}

void inAModelOfItsOwn(const std::function<void(Design&)>& work) {
  Model model;
  const ModelScope scope(model);
  Design design(Matching::Extended);
  work(design);
}

void build(const std::string& folder, const std::string& output) {
  inAModelOfItsOwn([&](Design& design) {
    trust::readAll(design, folder);
    static_cast<void>(design.coverage());
    exportTo(design, output);
  });
}

void load(const std::string& file, const std::string& output) {
  inAModelOfItsOwn([&](Design& design) {
    design.parse_xrf(file);
    static_cast<void>(design.registersOf("top/a_reg"));
    static_cast<void>(design.registersAt(0x400100, 1));
    exportTo(design, output);
  });
}

void readMetadata(const std::string& output) {
  const char* const file = XRF_SOURCE_DIR "/examples/vadd/vadd.xml";
  lmx60::elmx_error error = lmx60::ELMX_OK;
  lmx60::s_debug_error debug;
  const Movrel::Project project(file, &error, &debug);
  if (error == lmx60::ELMX_OK) error = project.Marshal(output.c_str());
  if (error == lmx60::ELMX_OK) return;
  trust::require(error == lmx60::ELMX_NO_MEMORY || error == lmx60::ELMX_CANNOT_WRITE,
                 "want of memory is reported as such, not as fault " + std::to_string(error) + " " +
                     debug.message + " at allocation " + std::to_string(heap::allocations()));
  throw std::bad_alloc();
}

void askMap(const std::string& output) {
  XRF::HardwareEmulationMap map(XRF_SOURCE_DIR "/examples/vadd/vadd.xml");
  std::string answers;
  for (int kernel = 0; kernel < map.numKernels(); ++kernel) {
    const std::string name = map.getKernelName(kernel);
    answers += name + map.breakFunctionStart(name, 0);
    for (const auto& argument : map.arguments(name)) answers += map.showVariable(argument.name);
  }
  FileReplacement file(output);
  if (!file.write(answers.data(), answers.size()) || !file.commit()) throw std::bad_alloc();
}

enum class Outcome { Done, OutOfMemory, Stopped };

Outcome attempt(const Case& tried, const std::string& output) {
  try {
    tried.work(output);
    return Outcome::Done;
  } catch (const std::bad_alloc&) {
    return Outcome::OutOfMemory;
  } catch (const trust::Stopped&) {
    return Outcome::Stopped;
  } catch (const std::runtime_error&) {
    return Outcome::Stopped;  // the map raises no other for whatever goes wrong
  }
}

bool holds(const std::string& path, const std::string& content) {
  heap::failAt(0);
  return test::contentOf(path) == content;
}

void tryOne(const Case& tried, std::uint64_t number, const std::string& output,
            const std::string& expected, std::uint64_t (&outcomes)[3]) {
  const std::string which = std::string(tried.name) + ", allocation " + std::to_string(number);
  const int old = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  trust::require(::write(old, "older", 5) == 5 && ::close(old) == 0, "the older output is made");
  const std::int64_t before = heap::live();
  heap::failAt(number);
  const Outcome outcome = attempt(tried, output);
  heap::failAt(0);
  const std::int64_t after = heap::live();
  trust::require(after == before, which + ": " + std::to_string(after - before) + " leaked");
  ++outcomes[static_cast<int>(outcome)];
  const bool done = outcome == Outcome::Done;
  trust::require(holds(output, done ? expected : "older"),
                 which + (done ? ": the output is whole" : ": the older output is untouched"));
}

void failEach(const Case& tried, const std::string& folder) {
  const std::string output = folder + "/output";
  // Once for what is made once in a process, once to count.
  for (int round = 0; round < 2; ++round) {
    heap::failAt(0);
    trust::require(attempt(tried, output) == Outcome::Done, tried.name);
  }
  const std::uint64_t count = heap::allocations();
  const std::string expected = test::contentOf(output);
  const std::uint64_t step = std::max<std::uint64_t>(1, count / mostFailures);
  std::uint64_t outcomes[3] = {0, 0, 0};
  for (std::uint64_t number = 1; number <= count; number += step) {
    tryOne(tried, number, output, expected, outcomes);
  }
  trust::require(outcomes[1] > 0, "some failures were felt");
  std::printf("%s: %llu allocations, %llu done all the same, %llu out of memory, %llu stopped\n",
              tried.name, static_cast<unsigned long long>(count),
              static_cast<unsigned long long>(outcomes[0]),
              static_cast<unsigned long long>(outcomes[1]),
              static_cast<unsigned long long>(outcomes[2]));
}

// Not that of trust::Host, which keeps texts and so changes what is allocated.
void raise(const Fatal& fatal, void* /*context*/) { throw trust::Stopped(fatal.text); }

}  // namespace

int main() {
  const MessageHandlerScope silent([](int, const char*, void*) {});
  const FatalHandlerScope fatals(raise);
  const test::TempFile place;
  const std::string& folder = place.folder();
  trust::generate(folder, 12, 5);
  const std::string saved = folder + "/saved.xrf";
  build(folder, saved);
  const Case cases[] = {
      {"build", [&](const std::string& output) { build(folder, output); }},
      {"load", [&](const std::string& output) { load(saved, output); }},
      {"metadata", [](const std::string& output) { readMetadata(output); }},
      {"map", [](const std::string& output) { askMap(output); }},
  };
  for (const Case& tried : cases) failEach(tried, folder);
  return 0;
}
