// A process that reads a hundred designs, good and bad in turn, reads each as a fresh process does,
// and neither grows nor keeps a file open.
#include <crossreference/XRFDataBaseInterface.h>
#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>
#include <tests/trust/Host.h>

#include <fstream>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using XRF_RTL2LL::Design;
using XRF_RTL2LL::Matching;

constexpr unsigned designs = 100;
constexpr unsigned warmUp = 20;

std::string folderOf(const std::string& root, unsigned number) {
  return root + "/" + std::to_string(number);
}

void put(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

void cut(const std::string& path, unsigned number) {
  const std::string text = test::contentOf(path);
  put(path, text.substr(0, text.size() * (number % 89 + 5) / 97));
}

void append(const std::string& path, const std::string& text) {
  put(path, test::contentOf(path) + text);
}

// Every second design is bad, each in one of several ways.
void makeFiles(const std::string& root, unsigned number) {
  const std::string folder = folderOf(root, number);
  std::filesystem::create_directory(folder);
  trust::generate(folder, 20 + number % 7 * 30, number);
  std::string xml = test::contentOf(XRF_SOURCE_DIR "/examples/vadd/vadd.xml");
  if (number % 2 != 0) {
    switch (number / 2 % 6) {
      case 0:
        cut(folder + "/rtl.edf", number);
        break;
      case 1:
        cut(folder + "/synth.edf", number);
        break;
      case 2:
        // Only strict reading gives up at it.
        append(folder + "/design.ll", "Bit 1 0x00400100 1 Block=RAMB36_X0Y1 Latch=AQ Net=a\n");
        break;
      case 3:
        std::filesystem::remove(folder + "/synth.log");
        break;
      case 4:
        append(folder + "/rtl.edf", "(more)");
        break;
      default:
        std::filesystem::remove(folder + "/synth.edf");
        std::filesystem::create_directory(folder + "/synth.edf");
    }
    xml.resize(xml.size() * number / designs);
  }
  put(folder + "/meta.xml", xml);
}

Matching matchingOf(unsigned number) {
  return number % 4 < 2 ? Matching::Strict : Matching::Extended;
}

std::string countsOf(const Design& design) {
  const auto counts = design.coverage().all;
  return std::to_string(counts.located) + " located, " + std::to_string(counts.total()) +
         " in all\n";
}

// How a read of a cross-reference file ends.
std::string endOf(const std::string& file, const XRF_RTL2LL::Limits& limits) {
  std::string end = "read\n";
  try {
    Design design(Matching::Extended);
    design.setLimits(limits);
    design.parse_xrf(file);
  } catch (const trust::Stopped& stopped) {
    end = stopped.what();
  }
  XRF_RTL2LL::resetModel();
  return end;
}

// A file that is damaged, and one that asks for more than it may.
std::string readBadly(const std::string& folder, unsigned number) {
  const std::string file = folder + "/bad.xrf";
  put(file, test::contentOf(folder + "/out.xrf"));
  cut(file, number);
  XRF_RTL2LL::Limits few;
  few.objects = 5;
  return endOf(file, {}) + endOf(folder + "/out.xrf", few);
}

// What a host learns of a design: all that was said, how it ended, what was written, and what that
// file gives when it is read again.
std::string readDesign(const std::string& folder, unsigned number) {
  const trust::Host host;
  std::string result;
  try {
    Design design(matchingOf(number));
    trust::readAll(design, folder);
    design.initializeBits();
    const std::string file = folder + "/out.xrf";
    design.exportDesign(file, true);
    result += test::contentOf(file) + countsOf(design);
    XRF_RTL2LL::resetModel();
    Design again(Matching::Extended);
    again.parse_xrf(file);
    result += countsOf(again);
    XRF_RTL2LL::resetModel();
    result += readBadly(folder, number);
  } catch (const trust::Stopped& stopped) {
    result += stopped.what();
  }
  XRF_RTL2LL::resetModel();
  return host.said() + result;
}

std::string readMetadata(const std::string& folder) {
  lmx60::elmx_error error = lmx60::ELMX_OK;
  lmx60::s_debug_error debug;
  const Movrel::Project project((folder + "/meta.xml").c_str(), &error, &debug);
  std::string text;
  if (error == lmx60::ELMX_OK) {
    project.Marshal(&text);
    text += std::to_string(XRF::HardwareEmulationMap(project).numKernels()) + " kernels\n";
  }
  return text + std::to_string(error) + " " + std::to_string(debug.line) + " " + debug.message;
}

std::string read(const std::string& root, unsigned number) {
  const std::string folder = folderOf(root, number);
  return readDesign(folder, number) + readMetadata(folder);
}

// In a child process that has read nothing before.
void readFresh(const std::string& root, unsigned number) {
  const pid_t child = ::fork();
  if (child == 0) {
    put(folderOf(root, number) + "/fresh", read(root, number));
    ::_exit(0);
  }
  int status = 1;
  ::waitpid(child, &status, 0);
  trust::require(status == 0, "a fresh process reads design " + std::to_string(number));
}

std::size_t heapInUse() { return ::mallinfo2().uordblks + ::mallinfo2().hblkhd; }

}  // namespace

int main() {
  const test::TempFile place;
  const std::string& root = place.folder();
  for (unsigned number = 0; number < designs; ++number) {
    makeFiles(root, number);
    readFresh(root, number);
  }
  const std::size_t files = trust::openFiles();
  std::size_t heap = 0;
  unsigned bad = 0;
  for (unsigned number = 0; number < designs; ++number) {
    if (number == warmUp) heap = heapInUse();
    const std::string result = read(root, number);
    trust::require(result == test::contentOf(folderOf(root, number) + "/fresh"),
                   "design " + std::to_string(number) + " reads as in a fresh process");
    if (result.find("located") == std::string::npos) ++bad;
    trust::require(trust::openFiles() == files,
                   "all files are closed after design " + std::to_string(number));
  }
  constexpr std::size_t slack = 1U << 16;
  trust::require(heapInUse() <= heap + slack, "memory is flat: " + std::to_string(heap) +
                                                  " bytes in use after " + std::to_string(warmUp) +
                                                  " designs, " + std::to_string(heapInUse()) +
                                                  " after all");
  trust::require(bad >= designs / 4 && bad <= designs / 2,
                 "a good part of the designs is bad: " + std::to_string(bad));
  std::printf(
      "%u designs, %u of them given up, each as in a fresh process; %zu bytes in use after "
      "%u, %zu after all\n",
      designs, bad, heap, warmUp, heapInUse());
  return 0;
}
