#pragma once

#include <crossreference/XRF_RTL2LL.h>
#include <tests/TempFile.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

/// What the programs of this folder share: each is a host that goes on after a bad file.
namespace trust {

/// The library gave up on its input.
struct Stopped : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Keeps what the library says and throws its fatal errors, for a scope.
class Host {
 public:
  const std::string& said() const { return m_said; }

 private:
  static void onMessage(int /*stream*/, const char* text, void* context) {
    static_cast<Host*>(context)->m_said += text;
  }
  static void onFatal(const XRF_RTL2LL::Fatal& fatal, void* /*context*/) {
    std::string text = fatal.text;
    if (fatal.file != nullptr) {
      text += std::string(" in ") + fatal.file + ":" + std::to_string(fatal.line);
    }
    throw Stopped(text);
  }

  std::string m_said;
  XRF_RTL2LL::MessageHandlerScope m_messages{onMessage, this};
  XRF_RTL2LL::FatalHandlerScope m_fatals{onFatal};
};

/// Ends the program when something does not hold.
inline void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what.c_str());
  std::exit(1);
}

inline std::size_t openFiles() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    ++count;
  }
  return count;
}

/// Invents a design of some registers in `folder`: rtl.edf, synth.edf, design.ll, synth.log.
inline void generate(const std::string& folder, unsigned registers, unsigned seed) {
  static constexpr const char* shapes[] = {"tree", "narrow", "deep", "wide"};
  const std::string command = std::string(XRF_GENERATE) + " --registers " +
                              std::to_string(registers) + " --seed " + std::to_string(seed) +
                              " --shape " + shapes[seed % 4] + " --out " + folder;
  require(std::system(command.c_str()) == 0, command);  // NOLINT(concurrency-mt-unsafe)
}

/// Reads the files of a design as `xrf build` does.
inline void readAll(XRF_RTL2LL::Design& design, const std::string& folder) {
  design.parse_rtl(folder + "/rtl.edf");
  design.parse_synth(folder + "/synth.edf");
  design.parse_ll(folder + "/design.ll");
  design.parse_log(folder + "/synth.log");
}

}  // namespace trust
