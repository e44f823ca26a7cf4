// A synthesis log.
#include <fuzz/FuzzedDesign.h>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::MemoryFile file(fuzz::parts<1>(data, size)[0]);
  fuzz::inBothReadings([&](fuzz::FuzzedDesign& design) {
    fuzz::readSmallDesign(*design);
    design->parse_log(file.path());
    const XRF_RTL2LL::LogReport& report = design->logReport();
    fuzz::require(report.lines == report.used + report.skipped + report.unmatched,
                  "every line of a constant is used, skipped or unmatched");
    fuzz::lookUp(*design);
  });
  return 0;
}
