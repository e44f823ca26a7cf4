#include "HazardTruth.h"

#include "ExtendedReading.h"
#include "HazardLocations.h"
#include "HazardLog.h"
#include "Outcomes.h"
#include "OutputFile.h"
#include "RegisterNames.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace generate {

namespace {

constexpr std::string_view kHeader =
    "# Register bits of the source, one a line. Columns, separated by tabs:\n"
    "# name in the source | - | 0 | status | - | signal of extended reading | index in it |\n"
    "# extended status\n"
    "# status: \"located FRAME OFFSET\" (decimal), \"constant V\" or \"removed\"\n"
    "# extended status: what the bit must show, and nothing must be shown for all but the first\n"
    "# three:\n"
    "#   located FRAME OFFSET REGION\n"
    "#   constant V\n"
    "#   merged FRAME OFFSET REGION    the location of the register that stands for it\n"
    "#   removed      for want of a load\n"
    "#   recoded      a state machine's, replaced by others\n"
    "#   inverted     it is there, but holds the inverse\n"
    "#   collides     its name is another's once flattened or cleaned\n"
    "#   suppressed   constant or merged, but the log does not say so\n"
    "# What strict reading finds is not worked out here: \"-\" stands for it.\n";

class HazardTruth {
 public:
  HazardTruth(const Design& design, const Placement& placement, const std::string& path)
      : design_(design),
        placement_(placement),
        suppressed_(suppressedRegisters(design)),
        out_(path) {}

  void run() {
    countNames();
    out_ << kHeader;
    design_.visitInstances([this](const Design::Visit& visit) {
      for (const Bank& bank : visit.module.banks) {
        for (uint32_t bit = 0; bit < bank.size(); ++bit) writeBit(visit, bank, bit);
      }
    });
    out_.close();
  }

 private:
  void countNames() {
    const std::vector<std::string> paths = flatPaths();
    size_t instance = 0;
    design_.visitInstances([&](const Design::Visit& visit) {
      for (const Bank& bank : visit.module.banks) {
        for (uint32_t bit = 0; bit < bank.size(); ++bit) {
          ++modelNames_[modelName(visit, bank, bit)];
          flatNames_.push_back(storable(paths[instance] + instanceName(bank, bit)));
          ++flatCounts_[flatNames_.back()];
        }
      }
      ++instance;
    });
  }

  /// The paths of the instances after flattening, in the order of a walk.
  std::vector<std::string> flatPaths() const {
    std::vector<std::string> paths;
    addFlatPaths(design_.top(), "", paths);
    return paths;
  }

  void addFlatPaths(uint32_t definition, const std::string& path,
                    std::vector<std::string>& paths) const {
    paths.push_back(path);
    const std::vector<Child> children = design_.module(definition).children;
    for (const Child& child : children) {
      const char separator = child.flattening == Flattening::Underscore ? '_' : '/';
      addFlatPaths(child.definition, path + child.name + separator, paths);
    }
  }

  static std::string modelName(const Design::Visit& visit, const Bank& bank, uint32_t bit) {
    const ModelBit model = extendedBit(visit.path, bank, bit);
    return model.signal + ' ' + std::to_string(model.index);
  }

  void writeBit(const Design::Visit& visit, const Bank& bank, uint32_t bit) {
    const ModelBit model = extendedBit(visit.path, bank, bit);
    const uint64_t number = visit.firstRegister + bank.first + bit;
    out_ << "/top/" << visit.path << registerName(bank, bit) << "\t-\t0\t";
    writeStatus(visit.module.fate(bank, bit), number);
    out_ << "\t-\t" << model.signal << '\t' << uint64_t{model.index} << '\t';
    const bool collides =
        modelNames_[modelName(visit, bank, bit)] > 1 || flatCounts_[flatNames_[number]] > 1;
    if (collides) {
      out_ << "collides\n";
    } else {
      writeExtended(visit, bank.first + bit);
    }
  }

  void writeStatus(Fate fate, uint64_t number) {
    switch (fate) {
      case Fate::Live: {
        const Readback readback = readbackOf(design_, placement_, number);
        out_ << "located " << uint64_t{readback.place.frame} << ' '
             << uint64_t{readback.place.offset};
        break;
      }
      case Fate::Constant0:
        out_ << "constant 0";
        break;
      case Fate::Constant1:
        out_ << "constant 1";
        break;
      case Fate::Removed:
      case Fate::Merged:
      case Fate::Inverted:
        out_ << "removed";
        break;
    }
  }

  void writeExtended(const Design::Visit& visit, uint32_t reg) {
    switch (visit.module.outcomes[reg].fate) {
      case Fate::Live:
        writePlace("located ", visit.firstRegister + reg);
        return;
      case Fate::Constant0:
      case Fate::Constant1: {
        const bool value = visit.module.outcomes[reg].fate == Fate::Constant1;
        const bool isSilent = suppressed_[visit.firstRegister + reg];
        out_ << (isSilent ? "suppressed\n" : value ? "constant 1\n" : "constant 0\n");
        return;
      }
      case Fate::Removed:
        out_ << (bankOf(visit.module, reg).isStateMachine ? "recoded\n" : "removed\n");
        return;
      case Fate::Inverted:
        out_ << "inverted\n";
        return;
      case Fate::Merged:
        writeMerged(visit, reg);
        return;
    }
  }

  void writePlace(std::string_view status, uint64_t number) {
    const Readback readback = readbackOf(design_, placement_, number);
    out_ << status << uint64_t{readback.place.frame} << ' ' << uint64_t{readback.place.offset}
         << ' ' << uint64_t{readback.region} << '\n';
  }

  /// Follows the chain to the register that stands for all of it.
  void writeMerged(const Design::Visit& visit, uint32_t reg) {
    const Outcome* outcome = &visit.module.outcomes[reg];
    while (outcome->fate == Fate::Merged) {
      if (suppressed_[visit.firstRegister + reg]) {
        out_ << "suppressed\n";
        return;
      }
      if (outcome->isInTwin) {
        writePlace("merged ", twinRegister(visit, outcome->survivor));
        return;
      }
      reg = outcome->survivor;
      outcome = &visit.module.outcomes[reg];
    }
    writePlace("merged ", visit.firstRegister + reg);
  }

  /// The twin is visited right before, has no children, and its port dout comes last.
  uint64_t twinRegister(const Design::Visit& visit, uint32_t bit) const {
    const uint32_t definition = visit.module.twin->definition;
    return visit.firstRegister - design_.portWidth(definition) + bit;
  }

  const Design& design_;
  const Placement& placement_;
  std::vector<bool> suppressed_;
  OutputFile out_;
  std::unordered_map<std::string, uint32_t> modelNames_;
  std::unordered_map<std::string, uint32_t> flatCounts_;
  std::vector<std::string> flatNames_;  ///< of each register
};

}  // namespace

void writeHazardTruth(const Design& design, const Placement& placement, const std::string& path) {
  HazardTruth(design, placement, path).run();
}

}  // namespace generate
