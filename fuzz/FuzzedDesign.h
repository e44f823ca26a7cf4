#pragma once

#include <crossreference/XRF_RTL2LL.h>
#include <fuzz/Fuzz.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace fuzz {

/// A design in a model of its own, as a host holds it.
class FuzzedDesign {
 public:
  explicit FuzzedDesign(XRF_RTL2LL::Matching matching)
      : m_scope(m_model), m_design(std::make_unique<XRF_RTL2LL::Design>(matching)) {}
  ~FuzzedDesign() {
    m_design.reset();
    XRF_RTL2LL::resetModel();
    require(XRF_RTL2LL::Bit::getAllBits().empty(), "a model that was reset holds no bit");
  }
  FuzzedDesign(const FuzzedDesign&) = delete;
  FuzzedDesign& operator=(const FuzzedDesign&) = delete;

  XRF_RTL2LL::Design& operator*() { return *m_design; }
  XRF_RTL2LL::Design* operator->() { return m_design.get(); }

  /// The cross-reference file of the design as `xrf build` writes it.
  std::string exported() const {
    const MemoryFile file;
    m_design->exportDesign(file.path(), true);
    return file.content();
  }

 private:
  XRF_RTL2LL::Model m_model;
  XRF_RTL2LL::ModelScope m_scope;
  std::unique_ptr<XRF_RTL2LL::Design> m_design;
};

/// Does `work` on a design, in strict and in extended reading. The library may give up through its
/// fatal handler; in strict reading two standard exceptions are its answer as well.
template <class Work>
void inBothReadings(Work work) {
  const QuietHost host;
  for (const auto matching : {XRF_RTL2LL::Matching::Strict, XRF_RTL2LL::Matching::Extended}) {
    try {
      FuzzedDesign design(matching);
      work(design);
    } catch (const Stopped&) {
    } catch (const std::out_of_range&) {
      require(matching == XRF_RTL2LL::Matching::Strict, "extended reading raises no out_of_range");
    } catch (const std::length_error&) {
      require(matching == XRF_RTL2LL::Matching::Strict, "extended reading raises no length_error");
    }
  }
}

/// A file of fuzz/designs.
inline std::string designFile(const std::string& name) {
  std::ifstream in(XRF_FUZZ_DIR "/designs/" + name, std::ios::binary);
  require(static_cast<bool>(in), "the files of fuzz/designs are there");
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// Reads the small design that location files and logs are tried on.
inline void readSmallDesign(XRF_RTL2LL::Design& design) {
  static const MemoryFile rtl(designFile("small_rtl.edf"));
  static const MemoryFile synth(designFile("small_synth.edf"));
  design.parse_rtl(rtl.path());
  design.parse_synth(synth.path());
}

/// Asks what a debugger asks, for the sake of the sanitizers.
inline void lookUp(const XRF_RTL2LL::Design& design) {
  static_cast<void>(design.coverage());
  static_cast<void>(design.findSignal(XRF_RTL2LL::RTL, "/top/count"));
  static_cast<void>(design.findModule(XRF_RTL2LL::SYNTH, "/top/unit"));
  for (const auto& bit : design.registersAt(0x400100, 1)) {
    static_cast<void>(design.writtenName(bit));
  }
  static_cast<void>(design.registersOf("top/count_reg[1]"));
}

/// What a design writes is the same again once it was read back.
inline void requireReadsBack(FuzzedDesign& design) {
  if (design->getFamily() != XRF_RTL2LL::TORVAL7) return;
  const std::string text = design.exported();
  const MemoryFile file(text);
  FuzzedDesign again(XRF_RTL2LL::Matching::Extended);
  try {
    again->parse_xrf(file.path());
  } catch (const Stopped& stopped) {
    std::fprintf(stderr, "%s", stopped.what());
    require(false, "what was written reads back");
  }
  require(again.exported() == text, "what was read back is written as it was");
}

}  // namespace fuzz
