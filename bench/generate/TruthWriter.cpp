#include "TruthWriter.h"

#include "LocationWriter.h"
#include "OutputFile.h"
#include "RegisterNames.h"
#include "StrictReading.h"

#include <string_view>

namespace generate {

namespace {

constexpr std::string_view kHeader =
    "# Register bits of the source, one a line. Columns, separated by tabs:\n"
    "# name in the source | signal of strict reading | index in it | status | strict\n"
    "# status: \"located FRAME OFFSET\" (decimal), \"constant V\" or \"removed\"\n"
    "# strict: \"yes\" where strict reading finds the status; \"no\" where it must find nothing\n";

}  // namespace

void writeTruth(const Design& design, const Placement& placement, const std::string& path) {
  OutputFile out(path);
  out << kHeader;
  design.visitInstances([&](const Design::Visit& visit) {
    const Module& module = visit.module;
    for (const Bank& bank : module.banks) {
      for (uint32_t bit = 0; bit < bank.size(); ++bit) {
        const ModelBit model = strictBit(design, visit.path, bank, bit);
        out << "/top/" << visit.path << registerName(bank, bit) << '\t' << model.signal << '\t'
            << uint64_t{model.index} << '\t';
        switch (module.fate(bank, bit)) {
          case Fate::Live: {
            const Location place = registerLocation(placement, module, bank, bit,
                                                    visit.firstRegister + bank.first + bit);
            out << "located " << uint64_t{place.frame} << ' ' << uint64_t{place.offset};
            break;
          }
          case Fate::Constant0:
            out << "constant 0";
            break;
          case Fate::Constant1:
            out << "constant 1";
            break;
          case Fate::Removed:
          case Fate::Merged:
          case Fate::Inverted:
            out << "removed";
            break;
        }
        out << (strictFinds(design, module, visit.path, bank, bit) ? "\tyes\n" : "\tno\n");
      }
    }
  });
  out.close();
}

}  // namespace generate
