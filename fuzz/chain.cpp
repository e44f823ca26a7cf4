// Both netlists, a location file and a log, as `xrf build` reads them, and the file it writes.
#include <fuzz/FuzzedDesign.h>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto files = fuzz::parts<4>(data, size);
  const fuzz::MemoryFile rtl(files[0]);
  const fuzz::MemoryFile synth(files[1]);
  const fuzz::MemoryFile locations(files[2]);
  const fuzz::MemoryFile log(files[3]);
  const fuzz::QuietHost host;
  try {
    fuzz::FuzzedDesign design(XRF_RTL2LL::Matching::Extended);
    design->parse_rtl(rtl.path());
    design->parse_synth(synth.path());
    if (!files[2].empty()) design->parse_ll(locations.path());
    design->parse_log(log.path());
    fuzz::lookUp(*design);
    fuzz::requireReadsBack(design);
  } catch (const fuzz::Stopped&) {
  }
  return 0;
}
