#include <tests/TempFile.h>
#include <tests/crossreference/Recovery.h>
#include <tests/crossreference/TruthList.h>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace test {
namespace {

using ::testing::IsEmpty;
using XRF_RTL2LL::Reading;
using XRF_RTL2LL::Rule;

/// The files of a design with hazards, and what is true of its registers.
class HazardDesign {
 public:
  explicit HazardDesign(const HazardOptions& options) {
    generateHazards(options, m_place.folder());
    m_truth = registerTruth(truthLines(m_place.folder() + "/truth.txt"));
  }

  const std::vector<RegisterTruth>& truth() const { return m_truth; }
  std::string file(const std::string& name) const { return m_place.folder() + "/" + name; }
  Recovery recovered(Route route, Reading reading = Reading::extended()) const {
    return recover(m_place.folder(), m_truth, reading, route);
  }
  Recovery judged(const std::vector<RegisterTruth>& truth) const {
    return recover(m_place.folder(), truth, Reading::extended(), Route::Netlists);
  }

 private:
  TempFile m_place;
  std::vector<RegisterTruth> m_truth;
};

void expectComplete(const HazardOptions& options) {
  const HazardDesign design(options);
  ASSERT_EQ(design.truth().size(), options.registers);
  for (const Route route : kRoutes) {
    SCOPED_TRACE(options.hazards + ", seed " + std::to_string(options.seed) + ", " +
                 std::string(nameOf(route)));
    const Recovery recovery = design.recovered(route);
    EXPECT_EQ(recovery.ended, "");
    EXPECT_THAT(recovery.wrong, IsEmpty());
    EXPECT_THAT(recovery.missing, IsEmpty());
    EXPECT_EQ(recovery.right, recovery.surviving);
    EXPECT_GT(recovery.surviving, options.registers / 2);
  }
}

// Named here, not asked for: the list of tests is made whenever this program starts.
const std::vector<std::string> kHazards = {"scopes",
                                           "records",
                                           "arrays",
                                           "ranges",
                                           "wide",
                                           "escaped-names",
                                           "reg-suffix",
                                           "parent-names",
                                           "blanks",
                                           "cleaned-collisions",
                                           "bit-ports",
                                           "port-ranges",
                                           "negative-ports",
                                           "record-ports",
                                           "escaped-ports",
                                           "constants",
                                           "removed",
                                           "merged",
                                           "inverted",
                                           "replicas",
                                           "tool-nets",
                                           "far-nets",
                                           "port-nets",
                                           "io-buffers",
                                           "one-input-luts",
                                           "latches",
                                           "falling-edges",
                                           "state-machines",
                                           "flatten-slash",
                                           "flatten-underscore",
                                           "flatten-collisions",
                                           "shells",
                                           "latch-kinds",
                                           "slr",
                                           "foreign-blocks",
                                           "log-spellings",
                                           "suppressed",
                                           "crlf"};

TEST(HazardList, NamesEveryHazardOfTheGenerator) { EXPECT_EQ(hazardNames(), kHazards); }

class HazardTest : public ::testing::TestWithParam<std::string> {};

TEST_P(HazardTest, LosesNoRegisterAlone) {
  for (unsigned int seed = 1; seed <= 3; ++seed) expectComplete({GetParam(), seed, 300, "tree"});
}

std::string testName(const ::testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Each, HazardTest, ::testing::ValuesIn(kHazards), testName);

TEST(HazardsTogether, LoseNoRegister) {
  for (const char* shape : {"tree", "narrow", "deep", "wide"}) {
    for (unsigned int seed = 1; seed <= 2; ++seed) expectComplete({"all", seed, 800, shape});
  }
}

TEST(HazardsTogether, DoWhatTheySay) {
  const HazardDesign design({"all", 1, 1500, "tree"});
  std::map<std::string, std::size_t> fates;
  for (const RegisterTruth& one : design.truth()) ++fates[one.fate];
  std::set<std::string> found;
  for (const auto& [fate, count] : fates) found.insert(fate);
  EXPECT_EQ(found, (std::set<std::string>{"collides", "constant", "inverted", "located", "merged",
                                          "recoded", "removed", "suppressed"}));
}

/// Where a rule is needed: with it off, the design with this hazard must lose registers.
struct Need {
  const char* rule;
  const char* hazard;
  Route route;
};

std::string ruleName(const ::testing::TestParamInfo<Need>& need) {
  std::string name = need.param.rule;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

class RuleTest : public ::testing::TestWithParam<Need> {};

TEST_P(RuleTest, IsMissedWhenSwitchedOff) {
  const Need& need = GetParam();
  const auto rule = std::find_if(kRules.begin(), kRules.end(),
                                 [&](const NamedRule& one) { return one.name == need.rule; });
  ASSERT_NE(rule, kRules.end());
  const HazardDesign design({need.hazard, 3, 400, "tree"});
  const Recovery with = design.recovered(need.route);
  const Recovery without = design.recovered(need.route, Reading::extended().without(rule->rule));
  EXPECT_LT(without.right, with.right);
}

INSTANTIATE_TEST_SUITE_P(
    Each, RuleTest,
    ::testing::Values(Need{"printable registers", "arrays", Route::Netlists},
                      Need{"late aliases", "reg-suffix", Route::Netlists},
                      Need{"printable arrays", "port-ranges", Route::Netlists},
                      Need{"printable ports", "escaped-ports", Route::Netlists},
                      Need{"clean names", "blanks", Route::SavedComplete},
                      Need{"raw locations", "none", Route::Netlists},
                      Need{"register copy", "flatten-underscore", Route::Netlists},
                      Need{"raw log", "constants", Route::Netlists},
                      Need{"loaded registers", "none", Route::SavedEarly},
                      Need{"region columns", "slr", Route::Netlists},
                      Need{"log merges", "merged", Route::Netlists},
                      Need{"state cells", "latches", Route::Netlists},
                      Need{"skip foreign blocks", "foreign-blocks", Route::Netlists},
                      Need{"unread is open", "flatten-underscore", Route::SavedStrictly},
                      Need{"closing modules", "shells", Route::SavedComplete},
                      Need{"declare loaded bits", "none", Route::SavedEarly}),
    ruleName);

TEST(RuleNeeds, NameEveryRule) {
  std::set<std::string_view> names;
  for (const NamedRule& one : kRules) names.insert(one.name);
  EXPECT_EQ(names.size(), kRules.size());
  Reading reading = Reading::extended();
  for (const NamedRule& one : kRules) reading = reading.without(one.rule);
  for (const NamedRule& one : kRules) EXPECT_FALSE(reading.has(one.rule));
}

/// The judge sees each kind of mistake: a true list that is changed in one place is refused.
class RecoveryJudgeTest : public ::testing::Test {
 protected:
  std::vector<RegisterTruth>::iterator first(const std::string& fate) {
    const auto found = std::find_if(truth.begin(), truth.end(),
                                    [&](const RegisterTruth& one) { return one.fate == fate; });
    if (found == truth.end()) throw std::runtime_error("the design has no register " + fate);
    return found;
  }

  HazardDesign design{{"merged,removed,constants", 5, 400, "tree"}};
  std::vector<RegisterTruth> truth = design.truth();
};

TEST_F(RecoveryJudgeTest, TakesTheTrueList) { EXPECT_TRUE(design.judged(truth).complete()); }

TEST_F(RecoveryJudgeTest, CallsSwappedPlacesWrong) {
  const auto one = first("located");
  const auto other =
      std::find_if(one + 1, truth.end(), [](const auto& next) { return next.fate == "located"; });
  std::swap(one->expected, other->expected);
  EXPECT_EQ(design.judged(truth).wrong.size(), 2U);
}

TEST_F(RecoveryJudgeTest, CallsALocatedRegisterThatMustShowNothingWrong) {
  first("located")->expected = "nothing";
  EXPECT_EQ(design.judged(truth).wrong.size(), 1U);
}

TEST_F(RecoveryJudgeTest, CallsTheOtherConstantWrong) {
  std::string& expected = first("constant")->expected;
  expected.back() = expected.back() == '0' ? '1' : '0';
  EXPECT_EQ(design.judged(truth).wrong.size(), 1U);
}

TEST_F(RecoveryJudgeTest, CallsARemovedRegisterThatMustBeLocatedMissing) {
  first("removed")->expected = "located 1 2 0";
  EXPECT_EQ(design.judged(truth).missing.size(), 1U);
}

TEST_F(RecoveryJudgeTest, CallsAnUnknownNameMissing) {
  first("located")->signal += "_nowhere";
  EXPECT_EQ(design.judged(truth).missing.size(), 1U);
}

TEST_F(RecoveryJudgeTest, ReportsWhatEndedTheReading) {
  const TempFile empty;
  const Recovery recovery = recover(empty.folder(), truth, Reading::extended(), Route::Netlists);
  EXPECT_NE(recovery.ended, "");
  EXPECT_FALSE(recovery.complete());
}

TEST(RegisterTruthList, RefusesLinesOfAnotherForm) {
  EXPECT_ANY_THROW(registerTruth({"/t/a\t-\t0\tlocated 7 9\t-\t/t/a\t0"}));
  const std::vector<RegisterTruth> truth =
      registerTruth({"# comment", "/t/a[1]\t-\t0\tremoved\t-\t/t/a\t1\tmerged 7 9 1"});
  ASSERT_EQ(truth.size(), 1U);
  EXPECT_EQ(truth[0].expected, "located 7 9 1");
}

}  // namespace
}  // namespace test
