// Two location files, the later of which replaces what the first one said.
#include <fuzz/FuzzedDesign.h>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto files = fuzz::parts<2>(data, size);
  const fuzz::MemoryFile first(files[0]);
  const fuzz::MemoryFile second(files[1]);
  fuzz::inBothReadings([&](fuzz::FuzzedDesign& design) {
    fuzz::readSmallDesign(*design);
    design->parse_ll(first.path());
    if (!files[1].empty()) design->parse_ll(second.path());
    const XRF_RTL2LL::LocationReport& report = design->locationReport();
    fuzz::require(report.lines == report.used + report.skipped() + report.unmatched,
                  "every location line is used, skipped or unmatched");
    fuzz::lookUp(*design);
  });
  return 0;
}
