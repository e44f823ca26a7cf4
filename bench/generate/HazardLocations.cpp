#include "HazardLocations.h"

#include "OutputFile.h"
#include "Random.h"
#include "RegisterNames.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace generate {

namespace {

constexpr std::string_view kLetters = "ABCDEFGH";
constexpr uint32_t kLutLinePercent = 3;
constexpr uint32_t kMemoryLines = 16;

bool has(const Design& design, Hazard hazard) { return design.options().hazards->has(hazard); }

std::string latchName(const Location& place, bool isMultiplexed) {
  const std::string letter(1, kLetters[place.latch % 4]);
  if (isMultiplexed) return letter + "MUX";
  if (place.latch < 4) return letter + "Q";
  return letter + (place.x % 2 == 0 ? "5Q" : "Q2");
}

std::string padded(uint64_t number, size_t width) {
  std::string digits = std::to_string(number);
  return digits.size() < width ? std::string(width - digits.size(), ' ') + digits : digits;
}

class Locations {
 public:
  Locations(const Design& design, const Implementation& implementation, const Placement& placement,
            const std::string& path)
      : design_(design),
        implementation_(implementation),
        placement_(placement),
        random_(scramble(design.options().seed, 32)),
        out_(path, lineEnd(design)) {}

  void run() {
    implementation_.visitCells([this](const Implementation::Cell& cell) { addCell(cell); });
    addMemories();
    if (has(design_, Hazard::ForeignBlocks)) addForeignBlocks();
    std::stable_sort(lines_.begin(), lines_.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    writeHeader();
    for (const auto& [place, line] : lines_) out_ << std::string_view(line) << '\n';
    out_.close();
  }

 private:
  void writeHeader() {
    out_ << (has(design_, Hazard::Regions) ? "Revision 4\n" : "Revision 3\n")
         << "; Created by the bitstream writer\n"
         << "; Columns: <offset> <frame address> <frame offset> <information>\n"
         << ";\n"
         << "Info STARTSEL0=1\n"
         << "Info Resolution=20 (frames)\n";
  }

  void addCell(const Implementation::Cell& cell) {
    const bool isListed = has(design_, Hazard::LatchKinds) && random_.percent(kLutLinePercent);
    if (cell.isLut && !isListed) return;
    const Readback readback = readbackOf(design_, placement_, cell.number, cell.isLut);
    std::string block = "SLICE_X";
    appendNumber(block, readback.place.x);
    block += 'Y';
    appendNumber(block, readback.place.y);
    addLine(readback.place.frame, readback.place.offset, readback.region,
            "Block=" + block + " Latch=" + readback.latch + " Net=" + cell.net);
  }

  void addLine(uint64_t frame, uint64_t offset, uint32_t region, const std::string& what) {
    std::string text = "Bit " + padded(10000000 + lines_.size() * 32, 8) + " 0x";
    appendHex(text, frame, 8);
    text += ' ' + padded(offset, 6);
    if (has(design_, Hazard::Regions)) {
      // The number that follows is the region's place in the chain.
      text += " SLR" + std::to_string(region) + ' ' + std::to_string((region + 1) % 3);
    }
    lines_.push_back({{frame, offset}, text + ' ' + what});
  }

  void addMemories() {
    for (uint32_t line = 0; line < kMemoryLines; ++line) {
      addLine(0x00200000 + line / 8, line * 7, line % 3,
              line % 8 == 7 ? "Block=SLICE_X30Y90 Ram=A:" + std::to_string(line)
                            : "Block=RAMB36_X0Y23 Ram=B:BIT" + std::to_string(line));
    }
  }

  void addForeignBlocks() {
    static constexpr std::array<std::string_view, 7> kBlocks = {
        "Block=RAMB36_X2Y0 Latch=DOBU15 Net=tmp[3][63]",
        "Block=B9 Latch=I Net=clk_IBUF",
        "Block=A12 Latch=I Net=rst_IBUF",
        "Block=OLOGIC_X6Y3 Type=OUTFF",
        "Block=OLOGIC_X6Y4 Latch=OQ Net=en",
        "Block=STARTUP Latch=EOS Net=eos",
        "Block=ILOGIC_X0Y7 Latch=Q1 Net=din_q"};
    uint32_t line = 0;
    for (const std::string_view block : kBlocks) {
      ++line;
      addLine(0x00C00000, uint64_t{64} * line, line % 3, std::string(block));
    }
    // Registers that became part of a memory, and other logic that one drives.
    design_.visitInstances([this, &line](const Design::Visit& visit) {
      for (const Bank& bank : visit.module.banks) {
        const Fate fate = visit.module.fate(bank, 0);
        if (fate != Fate::Removed && random_.below(8) != 0) continue;
        const std::string net =
            fate == Fate::Removed ? registerName(bank, 0) : nextNetName(bank, 0);
        ++line;
        addLine(0x00D00000 + line / 32, uint64_t{line} % 32 * 16, line % 3,
                "Block=RAMB36_X2Y" + std::to_string(line) + " Latch=DOBU" +
                    std::to_string(line % 32) + " Net=" + visit.path + net);
      }
    });
  }

  const Design& design_;
  const Implementation& implementation_;
  const Placement& placement_;
  Random random_;
  OutputFile out_;
  std::vector<std::pair<std::pair<uint64_t, uint64_t>, std::string>> lines_;
};

}  // namespace

Readback readbackOf(const Design& design, const Placement& placement, uint64_t number, bool isLut) {
  Readback readback{placement.location(number), 0, ""};
  Location& place = readback.place;
  if (!has(design, Hazard::LatchKinds)) {
    readback.latch = std::string(1, kLetters[place.latch]) + 'Q';
  } else {
    const bool isMultiplexed =
        isLut || (place.latch < 4 && scramble(design.options().seed, 31, number) % 6 == 0);
    readback.latch = latchName(place, isMultiplexed);
    if (isMultiplexed) place = Placement::multiplexed(place);
  }
  if (has(design, Hazard::Regions)) readback.region = Placement::enterRegion(place);
  return readback;
}

void writeHazardLocations(const Design& design, const Implementation& implementation,
                          const Placement& placement, const std::string& path) {
  Locations(design, implementation, placement, path).run();
}

}  // namespace generate
