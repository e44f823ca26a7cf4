#include <bench/phases/Measure.h>
#include <lmx60/XmlReader.h>
#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <expat.h>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

constexpr double kLeastRatio = 0.5;
constexpr double kMostBytesPerByte = 6;
constexpr int kRounds = 3;

constexpr const char* kUsage =
    "usage: metadata DOCUMENT OUT\n"
    "\n"
    "Reads a metadata document into its classes and writes it to OUT, and tells how fast that "
    "goes\n"
    "beside bare Expat, which takes the same bytes in pieces of the same size and does nothing "
    "with\n"
    "them. Each is measured three times; the best counts. Exit status 1 when reading is less than\n"
    "half as fast, or takes more than 6 bytes of memory for each byte of the document.\n";

void check(bool done, const char* what) {
  if (!done) throw std::runtime_error(what);
}

void parseBare(const std::string& path) {
  constexpr int piece = 1 << 16;
  struct Free {
    void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
  };
  const std::unique_ptr<XML_ParserStruct, Free> parser(XML_ParserCreate(nullptr));
  XML_SetElementHandler(
      parser.get(), [](void*, const char*, const char**) {}, [](void*, const char*) {});
  XML_SetCharacterDataHandler(parser.get(), [](void*, const char*, int) {});
  lmx60::c_read_file file(path.c_str());
  for (std::size_t count = 1; count > 0;) {
    void* place = XML_GetBuffer(parser.get(), piece);
    check(place != nullptr, "no memory");
    check(file.read(static_cast<char*>(place), piece, count) == lmx60::ELMX_OK, "cannot read");
    const int taken = static_cast<int>(count);
    check(XML_ParseBuffer(parser.get(), taken, taken == 0) == XML_STATUS_OK, "not well-formed");
  }
}

struct Figures {
  double expat = 1e9;
  double read = 1e9;
  double write = 1e9;
  uint64_t memory = 0;
};

// Time is that of the processor, since other work on the machine delays it less.
void measure(const std::string& document, const std::string& out, Figures& figures) {
  const phases::Timer bare;
  parseBare(document);
  figures.expat = std::min(figures.expat, bare.cpu());

  phases::releaseFreeMemory();
  phases::forgetPeak();
  const uint64_t before = phases::memory().resident;
  const phases::Timer reading;
  lmx60::elmx_error error = lmx60::ELMX_OK;
  const Movrel::Project project(document.c_str(), &error);
  figures.read = std::min(figures.read, reading.cpu());
  check(error == lmx60::ELMX_OK, "the document is not read");
  figures.memory = std::max(figures.memory, phases::memory().peak - before);

  const phases::Timer writing;
  check(project.Marshal(out.c_str()) == lmx60::ELMX_OK, "the document is not written");
  figures.write = std::min(figures.write, writing.cpu());
}

void row(const char* name, double seconds, const Figures& figures, uint64_t bytes) {
  std::printf("%-12s %8.3f s %8.1f MB/s %6.2f of Expat's speed\n", name, seconds,
              static_cast<double>(bytes) / 1e6 / seconds, figures.expat / seconds);
}

bool report(const Figures& figures, uint64_t bytes) {
  const double perByte = static_cast<double>(figures.memory) / static_cast<double>(bytes);
  row("bare Expat", figures.expat, figures, bytes);
  row("read", figures.read, figures, bytes);
  row("write", figures.write, figures, bytes);
  std::printf("%-12s %8.2f bytes at most for each byte of the document\n", "memory", perByte);
  return figures.expat / figures.read >= kLeastRatio && perByte <= kMostBytesPerByte;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  try {
    Figures figures;
    for (int round = 0; round < kRounds; ++round) measure(argv[1], argv[2], figures);
    const bool within = report(figures, phases::fileSize(argv[1]));
    std::puts(within ? "within budget" : "OVER budget");
    return within ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "metadata: %s\n", error.what());
    return 1;
  }
}
