#include "LocationWriter.h"

#include "OutputFile.h"
#include "Random.h"
#include "RegisterNames.h"

#include <array>
#include <string_view>
#include <vector>

namespace generate {

namespace {

constexpr std::string_view kHeader =
    "Revision 3\n"
    "; Created by the bitstream writer\n"
    "; Columns: <offset> <frame address> <frame offset> <information>\n"
    ";\n"
    "Info STARTSEL0=1\n"
    "Info Resolution=20 (frames)\n";

constexpr uint64_t kMemoryLines = Placement::kWindow / 10;

void appendPadded(std::string& text, uint64_t number, size_t width) {
  std::string digits;
  appendNumber(digits, number);
  if (digits.size() < width) text.append(width - digits.size(), ' ');
  text += digits;
}

class LocationWriter {
 public:
  LocationWriter(const Design& design, const Placement& placement, const std::string& path)
      : design_(design), placement_(placement), out_(path), lines_(Placement::kWindow) {}

  void run() {
    out_ << kHeader;
    design_.visitInstances([this](const Design::Visit& visit) { addInstance(visit); });
    flushWindow();
    out_.close();
  }

 private:
  void addInstance(const Design::Visit& visit) {
    const Module& module = visit.module;
    for (const Bank& bank : module.banks) {
      for (uint32_t bit = 0; bit < bank.size(); ++bit) {
        const uint64_t reg = visit.firstRegister + bank.first + bit;
        if (reg / Placement::kWindow != window_) {
          flushWindow();
          window_ = reg / Placement::kWindow;
        }
        if (module.fate(bank, bit) == Fate::Live) addRegister(visit, bank, bit, reg);
      }
    }
  }

  void addRegister(const Design::Visit& visit, const Bank& bank, uint32_t bit, uint64_t reg) {
    const Module& module = visit.module;
    const Location place = placement_.location(reg);
    const bool multiplexed = isMultiplexed(module, bank, bit, place);
    const uint64_t slot = placement_.slot(reg);
    std::string& lines = lines_[slot % Placement::kWindow];
    addLine(lines, slot, multiplexed ? Placement::multiplexed(place) : place, multiplexed,
            visit.path, outputNetName(module, bank, bit));
    // A look-up table's output is no register, though a register may share its slice.
    const bool free = place.latch < 4 && !multiplexed;
    if (free && bank.operation != Operation::Copy &&
        scramble(module.seed, 12, bank.index, bit) % 2 == 0) {
      addLine(lines, slot, Placement::multiplexed(place), true, visit.path,
              dataNetName(module, bank, bit));
    }
  }

  void addLine(std::string& text, uint64_t slot, const Location& place, bool multiplexed,
               const std::string& path, const std::string& net) {
    static constexpr std::array<std::string_view, 8> kFlipFlops = {"AQ",  "BQ",  "CQ",  "DQ",
                                                                   "A5Q", "B5Q", "C5Q", "D5Q"};
    static constexpr std::array<std::string_view, 4> kMultiplexers = {"AMUX", "BMUX", "CMUX",
                                                                      "DMUX"};
    beginLine(text, 1000000 + slot * 8 + (multiplexed ? 4 : 0), place.frame, place.offset);
    text += " Block=SLICE_X";
    appendNumber(text, place.x);
    text += 'Y';
    appendNumber(text, place.y);
    text += " Latch=";
    text += multiplexed ? kMultiplexers[place.latch % 4] : kFlipFlops[place.latch];
    text += " Net=";
    text += path;
    text += net;
    text += '\n';
  }

  static void beginLine(std::string& text, uint64_t number, uint64_t frame, uint64_t offset) {
    text += "Bit ";
    appendPadded(text, number, 8);
    text += " 0x";
    appendHex(text, frame, 8);
    text += ' ';
    appendPadded(text, offset, 6);
  }

  void flushWindow() {
    for (std::string& lines : lines_) {
      out_ << std::string_view(lines);
      lines.clear();
    }
    for (uint64_t line = 0; line < kMemoryLines; ++line) writeMemoryLine(line);
  }

  void writeMemoryLine(uint64_t line) {
    const uint64_t block = window_ * 3;
    std::string text;
    beginLine(text, 500000000 + window_ * kMemoryLines + line, 0x00800000 + window_, line * 7);
    text += line % 8 == 7 ? " Block=SLICE_X30Y" : " Block=RAMB36_X2Y";
    appendNumber(text, block);
    text += line % 8 == 7 ? " Ram=A:" : " Ram=B:BIT";
    appendNumber(text, line);
    text += '\n';
    out_ << std::string_view(text);
  }

  const Design& design_;
  const Placement& placement_;
  OutputFile out_;
  std::vector<std::string> lines_;
  uint64_t window_ = 0;
};

}  // namespace

bool isMultiplexed(const Module& module, const Bank& bank, uint32_t bit, const Location& place) {
  return place.latch < 4 && scramble(module.seed, 13, bank.index, bit) % 25 == 0;
}

Location registerLocation(const Placement& placement, const Module& module, const Bank& bank,
                          uint32_t bit, uint64_t reg) {
  const Location place = placement.location(reg);
  return isMultiplexed(module, bank, bit, place) ? Placement::multiplexed(place) : place;
}

void writeLocations(const Design& design, const Placement& placement, const std::string& path) {
  LocationWriter(design, placement, path).run();
}

}  // namespace generate
