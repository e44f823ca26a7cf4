// The elaborated netlist, then the synthesized one.
#include <fuzz/FuzzedDesign.h>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto files = fuzz::parts<2>(data, size);
  const fuzz::MemoryFile rtl(files[0]);
  const fuzz::MemoryFile synth(files[1]);
  fuzz::inBothReadings([&](fuzz::FuzzedDesign& design) {
    design->parse_rtl(rtl.path());
    if (!files[1].empty()) design->parse_synth(synth.path());
    fuzz::lookUp(*design);
  });
  return 0;
}
