#pragma once

#include <crossreference/XRF_RTL2LL.h>
#include <tests/TempFile.h>
#include <tests/crossreference/TruthList.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace test {

/// What to ask the design generator for.
struct DesignOptions {
  std::string shape;
  unsigned int seed = 1;
  unsigned int registers = 1000;
  bool renames = false;
};

/// What a failing test prints of them.
inline void PrintTo(const DesignOptions& options, std::ostream* out) {
  *out << options.registers << " registers, " << options.shape << ", seed " << options.seed
       << (options.renames ? ", renames" : "");
}

inline void runProgram(const std::string& command) {
  if (std::system(command.c_str()) != 0) throw std::runtime_error("failed: " + command);
}

/// The files of a generated design, removed at the end.
class GeneratedDesign {
 public:
  explicit GeneratedDesign(const DesignOptions& options) {
    runProgram(std::string(XRF_GENERATE) + " --registers " + std::to_string(options.registers) +
               " --seed " + std::to_string(options.seed) + " --shape " + options.shape +
               (options.renames ? " --renames" : "") + " --out " + m_place.folder());
  }

  const std::string& folder() const { return m_place.folder(); }
  std::string file(const std::string& name) const { return m_place.folder() + "/" + name; }
  std::vector<Truth> truth() const { return parseTruth(truthLines(file("truth.txt"))); }

 private:
  TempFile m_place;
};

/// Silences the library and turns its fatal errors into exceptions.
class QuietHost {
 private:
  static void ignore(int /*stream*/, const char* /*text*/, void* /*context*/) {}
  static void raise(const XRF_RTL2LL::Fatal& fatal, void* /*context*/) {
    throw std::runtime_error(fatal.text);
  }

  XRF_RTL2LL::MessageHandlerScope m_messages{ignore};
  XRF_RTL2LL::FatalHandlerScope m_fatals{raise};
};

/// A design in a model of its own.
class OwnDesign {
 public:
  OwnDesign() {
    const XRF_RTL2LL::ModelScope scope(m_model);
    m_design = std::make_unique<XRF_RTL2LL::Design>();
  }

  XRF_RTL2LL::Design& operator*() { return *m_design; }
  XRF_RTL2LL::Design* operator->() { return m_design.get(); }

  void build(const GeneratedDesign& generated) {
    m_design->parse_rtl(generated.file("rtl.edf"));
    m_design->parse_synth(generated.file("synth.edf"));
    m_design->parse_ll(generated.file("design.ll"));
    m_design->parse_log(generated.file("synth.log"));
  }
  /// The cross-reference file of the design.
  std::string exported() const {
    const TempFile file;
    m_design->exportDesign(file.path(), true);
    return file.content();
  }
  /// Reads a cross-reference file and declares its bits, so that an export of it reads back.
  void load(const std::string& content) {
    const TempFile file(content);
    m_design->parse_xrf(file.path());
    const XRF_RTL2LL::ModelScope scope(m_model);
    unsigned int last = 0;
    for (const XRF_RTL2LL::Bit* bit : XRF_RTL2LL::Bit::getAllBits()) {
      last = std::max(last, bit->getId());
    }
    XRF_RTL2LL::Bit::setMaxBitId(last);
  }

 private:
  XRF_RTL2LL::Model m_model;
  std::unique_ptr<XRF_RTL2LL::Design> m_design;
};

}  // namespace test
