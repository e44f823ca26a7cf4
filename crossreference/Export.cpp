#include <crossreference/Export.h>
#include <crossreference/ModelState.h>
#include <crossreference/TextOut.h>
#include <crossreference/Utils.h>
#include <support/OpenDescriptor.h>
#include <support/Prefetch.h>
#include <support/Report.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <unistd.h>

namespace XRF_RTL2LL {

namespace {

// A file being written; every failure to write is fatal.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path) : m_path(path), m_file(open(path)) {
    // The pieces are large, and need not pass through a buffer.
    if (isOpen()) std::setvbuf(m_file.get(), nullptr, _IONBF, 0);
  }

  bool isOpen() const { return m_file != nullptr; }
  void write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), m_file.get()) != text.size()) fail();
  }
  void close() {
    if (std::fclose(m_file.release()) != 0) fail();
  }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  static std::FILE* open(const std::string& path) {
    const std::optional<int> named = openDescriptor(path);
    if (!named) return std::fopen(path.c_str(), "we");
    const int own = duplicateForWriting(*named);
    std::FILE* file = own < 0 ? nullptr : ::fdopen(own, "w");
    if (file == nullptr && own >= 0) ::close(own);
    return file;
  }
  [[noreturn]] void fail() const {
    fatal("ERROR: Can't write file %s: %s\n", m_path.c_str(), std::strerror(errno));
  }

  std::string m_path;
  std::unique_ptr<std::FILE, Close> m_file;
};

class ShowHiddenScope {
 public:
  explicit ShowHiddenScope(bool show) : m_before(Module::getShowHidden()) {
    Module::setShowHidden(show);
  }
  ~ShowHiddenScope() { Module::setShowHidden(m_before); }
  ShowHiddenScope(const ShowHiddenScope&) = delete;
  ShowHiddenScope& operator=(const ShowHiddenScope&) = delete;

 private:
  bool m_before;
};

void writeBits(TextOut& out) {
  out << "(FAMILY TORVAL7)\n(BITS " << Bit::getMaxBitId() + 1 << ")\n(NETS "
      << static_cast<std::uint32_t>(Net::getAllNets().size()) << ")\n";
  const Range<Bit> bits = Bit::getAllBits();
  constexpr int distance = 16;
  auto ahead = bits.begin();
  for (int step = 0; step < distance && ahead != bits.end(); ++step) ++ahead;
  for (const Bit* bit : bits) {
    if (ahead != bits.end()) {
      prefetchWhole(**ahead);
      ++ahead;
    }
    writeBit(out, *bit);
    out << "\n";
  }
}

void writeView(TextOut& out, const char* name, const Module* top) {
  out << "(VIEW " << name << ")\n\n";
  if (top != nullptr) writeModule(out, *top);
}

}  // namespace

int Export::exportDesign(Family family, Module* rtlTop, Module* synthTop, std::string path,
                         bool showHidden) {
  OutputFile file(path);
  if (!file.isOpen()) {
    fatalSilently("The file %s cannot be opened for writing: %s.", path.c_str(),
                  std::strerror(errno));
  }
  const ShowHiddenScope hidden(showHidden);
  {
    const auto sink = [](std::string_view text, void* context) {
      static_cast<OutputFile*>(context)->write(text);
    };
    TextOut out(sink, &file);
    out << "(VERSION " << utils::getVersion() << ")\n";
    if (family != TORVAL7) {
      out.flush();
      file.close();
      fatalSilently(
          "The device family of the design is not known, so %s cannot be written: no netlist names "
          "the program that wrote it.",
          path.c_str());
    }
    writeBits(out);
    out << "\n";
    writeView(out, "RTL", rtlTop);
    out << "\n";
    writeView(out, "SYNTH", synthTop);
    if (out.failed()) fatalHere("A module or signal without a name cannot be written.");
    out.flush();
  }
  file.close();
  return 0;
}

}  // namespace XRF_RTL2LL
