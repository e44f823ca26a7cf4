// A cross-reference file.
#include <fuzz/FuzzedDesign.h>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::MemoryFile file(fuzz::parts<1>(data, size)[0]);
  fuzz::inBothReadings([&](fuzz::FuzzedDesign& design) {
    design->parse_xrf(file.path());
    fuzz::lookUp(*design);
    if (design->getFamily() == XRF_RTL2LL::TORVAL7) static_cast<void>(design.exported());
  });
  return 0;
}
