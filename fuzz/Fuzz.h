#pragma once

#include <support/Handlers.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

/// What the fuzz targets share. A target defines `LLVMFuzzerTestOneInput`; the fuzzer or replay.cpp
/// calls it.
namespace fuzz {

/// The library gave up on its input, as it may.
struct Stopped : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Silences the library and turns its fatal errors into exceptions.
class QuietHost {
 private:
  static void ignore(int /*stream*/, const char* /*text*/, void* /*context*/) {}
  static void raise(const XRF_RTL2LL::Fatal& fatal, void* /*context*/) {
    throw Stopped(fatal.text);
  }

  XRF_RTL2LL::MessageHandlerScope m_messages{ignore};
  XRF_RTL2LL::FatalHandlerScope m_fatals{raise};
};

/// What must hold of any input; the fuzzer keeps one for which it does not.
inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

/// A file that has a path but lies in memory, since readers take paths and a disk is slow.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content = {}) : m_descriptor(memfd_create("input", 0)) {
    require(m_descriptor >= 0, "a file in memory can be made");
    while (!content.empty()) {
      const ssize_t written = ::write(m_descriptor, content.data(), content.size());
      require(written > 0, "a file in memory can be written");
      content.remove_prefix(static_cast<std::size_t>(written));
    }
  }
  ~MemoryFile() { ::close(m_descriptor); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }
  std::string content() const {
    std::string text(static_cast<std::size_t>(::lseek(m_descriptor, 0, SEEK_END)), '\0');
    const ssize_t got = ::pread(m_descriptor, text.data(), text.size(), 0);
    require(got == static_cast<ssize_t>(text.size()), "a file in memory can be read");
    return text;
  }

 private:
  int m_descriptor;
};

/// An input that stands for several files: they are parted by lines of four equals signs. Parts
/// that are not there are empty.
template <std::size_t count>
std::array<std::string_view, count> parts(const std::uint8_t* data, std::size_t size) {
  constexpr std::string_view border = "\n====\n";
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  std::array<std::string_view, count> result;
  for (std::string_view& part : result) {
    const bool last = &part == &result.back();
    const std::size_t end = last ? std::string_view::npos : rest.find(border);
    part = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + border.size());
  }
  return result;
}

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
