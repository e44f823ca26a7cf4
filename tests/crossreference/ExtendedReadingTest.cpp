#include <tests/crossreference/GeneratedDesign.h>

#include <gtest/gtest.h>
#include <string>
#include <unordered_set>
#include <vector>

using namespace XRF_RTL2LL;

namespace test {
namespace {

/// Where extended reading must carry a register bit, worked out from its name in the source alone.
struct Place {
  std::string signal;
  unsigned int index = 0;
};

Place placeOf(const Truth& truth, bool renames) {
  if (!renames) return {truth.signal, truth.index};
  std::string base = truth.source;
  std::vector<std::string> groups;
  while (base.back() == ']') {
    const std::size_t open = base.rfind('[');
    groups.insert(groups.begin(), base.substr(open + 1, base.size() - open - 2));
    base.resize(open);
  }
  Place place;
  const bool indexed =
      !groups.empty() && groups.back().find_first_not_of("0123456789") == std::string::npos;
  if (indexed) place.index = static_cast<unsigned int>(std::stoul(groups.back()));
  for (std::size_t at = 0; at + (indexed ? 1 : 0) < groups.size(); ++at) {
    base += "<" + groups[at] + ">";
  }
  place.signal = base;
  return place;
}

std::string told(const Bit& bit) {
  if (bit.getKind() == Bit::STATE) {
    return "located " + std::to_string(bit.getStateLoc1()) + " " +
           std::to_string(bit.getStateLoc2());
  }
  if (bit.getKind() == Bit::CNST) return bit.getValue() ? "constant 1" : "constant 0";
  return "nothing";
}

std::string expected(const Truth& truth) {
  if (truth.status == Truth::Located) {
    return "located " + std::to_string(truth.frame) + " " + std::to_string(truth.offset);
  }
  if (truth.status == Truth::Constant) return truth.value ? "constant 1" : "constant 0";
  return "nothing";
}

/// Every register of the list carries its own answer, on a bit that no other register has.
void expectTruth(const Design& design, const GeneratedDesign& files, bool renames) {
  std::unordered_set<const Bit*> bits;
  for (const Truth& truth : files.truth()) {
    const Place place = placeOf(truth, renames);
    const Signal* signal = design.findSignal(RTL, place.signal);
    ASSERT_NE(signal, nullptr) << truth.source;
    ASSERT_TRUE(signal->getLsb() <= place.index && place.index <= signal->getMsb()) << truth.source;
    const Bit* bit = signal->getBitRef(place.index)->getBit();
    EXPECT_EQ(told(*bit), expected(truth)) << truth.source;
    EXPECT_TRUE(bits.insert(bit).second) << truth.source << " shares its bit";
  }
}

class ExtendedReadingTest : public ::testing::TestWithParam<DesignOptions> {
 protected:
  QuietHost m_host;
};

TEST_P(ExtendedReadingTest, FindsEverySurvivingRegisterAndNoneWrongly) {
  const GeneratedDesign files(GetParam());
  Model model;
  const ModelScope scope(model);
  Design design(Matching::Extended);
  design.parse_rtl(files.file("rtl.edf"));
  design.parse_synth(files.file("synth.edf"));
  design.parse_ll(files.file("design.ll"));
  design.parse_log(files.file("synth.log"));
  expectTruth(design, files, GetParam().renames);
  EXPECT_EQ(design.locationReport().unmatched, 0U);
}

TEST_P(ExtendedReadingTest, FindsThemInAModelThatWasSavedBeforeItsLocationsWereKnown) {
  const GeneratedDesign files(GetParam());
  const std::string saved = files.file("netlists.xrf");
  {
    Model model;
    const ModelScope scope(model);
    Design design(Matching::Extended);
    design.parse_rtl(files.file("rtl.edf"));
    design.parse_synth(files.file("synth.edf"));
    design.exportDesign(saved, true);
  }
  Model model;
  const ModelScope scope(model);
  Design design(Matching::Extended);
  design.parse_xrf(saved);
  design.parse_ll(files.file("design.ll"));
  design.parse_log(files.file("synth.log"));
  expectTruth(design, files, GetParam().renames);
}

std::vector<DesignOptions> everyForm() {
  std::vector<DesignOptions> forms;
  for (const char* shape : {"tree", "narrow", "deep", "wide"}) {
    for (const bool renames : {false, true}) {
      for (unsigned int seed = 11; seed < 14; ++seed) forms.push_back({shape, seed, 1500, renames});
    }
  }
  return forms;
}

INSTANTIATE_TEST_SUITE_P(Shapes, ExtendedReadingTest, ::testing::ValuesIn(everyForm()));

TEST(ExtendedReading, IsChosenBeforeTheFirstRead) {
  QuietHost host;
  const GeneratedDesign files({"tree", 1, 100, false});
  Model model;
  const ModelScope scope(model);
  Design design;
  design.setMatching(Matching::Extended);
  design.setMatching(Matching::Strict);
  design.parse_rtl(files.file("rtl.edf"));
  EXPECT_THROW(design.setMatching(Matching::Extended), std::runtime_error);
}

}  // namespace
}  // namespace test
