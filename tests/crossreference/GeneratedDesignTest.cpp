#include <tests/crossreference/GeneratedDesign.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/personality.h>
#include <vector>

namespace {

using test::DesignOptions;
using test::GeneratedDesign;
using test::OwnDesign;
using test::QuietHost;
using test::Truth;
using test::Verdict;
using ::testing::IsEmpty;

std::string describe(const ::testing::TestParamInfo<DesignOptions>& info) {
  return info.param.shape + std::to_string(info.param.registers);
}

std::vector<DesignOptions> everyShape(bool renames) {
  std::vector<DesignOptions> all;
  for (const char* shape : {"tree", "narrow", "deep", "wide"}) {
    all.push_back({shape, 1, 300, renames});
    all.push_back({shape, 2, 1000, renames});
    all.push_back({shape, 3, 2500, renames});
  }
  return all;
}

std::size_t countOf(const std::vector<Truth>& truth, Truth::Status status) {
  return static_cast<std::size_t>(
      std::count_if(truth.begin(), truth.end(),
                    [status](const Truth& one) { return one.isFound && one.status == status; }));
}

/// A design that names registers by identifiers alone.
class GeneratedDesignTest : public ::testing::TestWithParam<DesignOptions> {
 protected:
  QuietHost host;
  GeneratedDesign generated{GetParam()};
  std::vector<Truth> truth = generated.truth();
  OwnDesign built;

  void SetUp() override { built.build(generated); }
};

TEST_P(GeneratedDesignTest, FindsNearlyEveryRegisterAndNoneWrongly) {
  ASSERT_EQ(truth.size(), GetParam().registers);
  const Verdict verdict = test::judge(*built, truth);
  EXPECT_THAT(verdict.faults, IsEmpty());
  EXPECT_GE(verdict.found * 100, verdict.surviving * 99);
}

TEST_P(GeneratedDesignTest, CountsWhatItFound) {
  const XRF_RTL2LL::Coverage::Counts counts = built->coverage().all;
  EXPECT_EQ(counts.located, countOf(truth, Truth::Located));
  EXPECT_EQ(counts.constant, countOf(truth, Truth::Constant));
  EXPECT_EQ(counts.total(), truth.size());
}

TEST_P(GeneratedDesignTest, GivesTheSameAnswersWhenLoaded) {
  OwnDesign loaded;
  loaded.load(built.exported());
  const Verdict verdict = test::judge(*loaded, truth);
  EXPECT_THAT(verdict.faults, IsEmpty());
  EXPECT_EQ(verdict.found, test::judge(*built, truth).found);
}

TEST_P(GeneratedDesignTest, ReadsBackWhatItWrote) {
  const std::string first = built.exported();
  OwnDesign loaded;
  loaded.load(first);
  EXPECT_TRUE(loaded.exported() == first);
}

INSTANTIATE_TEST_SUITE_P(Shapes, GeneratedDesignTest, ::testing::ValuesIn(everyShape(false)),
                         describe);

/// A design with printable names beside the identifiers, most of which strict reading misses.
class RenamedDesignTest : public GeneratedDesignTest {};

TEST_P(RenamedDesignTest, FindsTheRegistersThatItMust) {
  const Verdict verdict = test::judgeFound(*built, truth);
  EXPECT_THAT(verdict.faults, IsEmpty());
  EXPECT_EQ(verdict.found, countOf(truth, Truth::Located) + countOf(truth, Truth::Constant));
  if (GetParam().registers >= 1000) {
    EXPECT_GT(verdict.found, 0U);
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, RenamedDesignTest, ::testing::ValuesIn(everyShape(true)),
                         describe);

bool addressesAreRandom() {
  int setting = 0;
  std::ifstream("/proc/sys/kernel/randomize_va_space") >> setting;
  constexpr unsigned long query = 0xffffffff;
  return setting != 0 && (personality(query) & ADDR_NO_RANDOMIZE) == 0;
}

TEST(GeneratedDesigns, AreWrittenAlikeByEveryProcess) {
  if (!addressesAreRandom()) GTEST_SKIP() << "every process has the same addresses here";
  const QuietHost host;
  for (const char* shape : {"tree", "deep"}) {
    const GeneratedDesign generated({shape, 4, 2000, false});
    for (const char* name : {"first", "second"}) {
      test::runProgram(std::string(XRF_PHASES) + " " + generated.folder() + " " +
                       generated.file(name) + " >/dev/null");
    }
    const std::string first = test::contentOf(generated.file("first"));
    OwnDesign built;
    built.build(generated);
    EXPECT_TRUE(test::contentOf(generated.file("second")) == first) << shape;
    EXPECT_TRUE(built.exported() == first) << shape;
  }
}

TEST(GeneratedDesigns, DoNotMeetInOneProcess) {
  const QuietHost host;
  const GeneratedDesign one({"tree", 5, 1500, false});
  const GeneratedDesign other({"narrow", 6, 1000, true});
  OwnDesign oneAlone;
  oneAlone.build(one);
  OwnDesign otherAlone;
  otherAlone.build(other);

  OwnDesign first;
  OwnDesign second;
  first->parse_rtl(one.file("rtl.edf"));
  second->parse_rtl(other.file("rtl.edf"));
  second->parse_synth(other.file("synth.edf"));
  first->parse_synth(one.file("synth.edf"));
  first->parse_ll(one.file("design.ll"));
  second->parse_ll(other.file("design.ll"));
  second->parse_log(other.file("synth.log"));
  first->parse_log(one.file("synth.log"));
  EXPECT_TRUE(first.exported() == oneAlone.exported());
  EXPECT_TRUE(second.exported() == otherAlone.exported());
  EXPECT_THAT(test::judge(*first, one.truth()).faults, IsEmpty());
}

/// The judge of the tests above sees each kind of mistake: a true list is changed in one place and
/// must be refused, and so must a model that was built from a changed location file.
class TruthListTest : public ::testing::Test {
 protected:
  using Matches = std::function<bool(const Truth&)>;

  void SetUp() override { built.build(generated); }

  std::vector<Truth>::iterator find(const Matches& matches) {
    const auto found = std::find_if(truth.begin(), truth.end(), matches);
    if (found == truth.end()) throw std::runtime_error("the design has no such register");
    return found;
  }
  std::vector<Truth>::iterator located() {
    return find([](const Truth& one) { return one.isFound && one.status == Truth::Located; });
  }
  std::vector<Truth>::iterator constant() {
    return find([](const Truth& one) { return one.isFound && one.status == Truth::Constant; });
  }
  /// Bit `index` of the first bus that is found under its RTL index.
  std::vector<Truth>::iterator busBit() {
    return find([](const Truth& one) {
      return one.isFound && one.status == Truth::Located && one.index == 1;
    });
  }
  /// A register of a module that has several instances.
  std::vector<Truth>::iterator repeated() {
    return find([](const Truth& one) {
      return one.isFound && one.status == Truth::Located &&
             one.source.find("/u0/") != std::string::npos;
    });
  }
  /// A located register of that local name in another instance.
  std::vector<Truth>::iterator namesake(const Truth& of) {
    const auto local = [](const Truth& one) { return one.source.substr(one.source.rfind('/')); };
    return find([&](const Truth& one) {
      return &one != &of && one.isFound && one.status == Truth::Located && local(one) == local(of);
    });
  }
  std::size_t faults() { return test::judge(*built, truth).faults.size(); }

  QuietHost host;
  GeneratedDesign generated{{"tree", 7, 2000, false}};
  std::vector<Truth> truth = generated.truth();
  OwnDesign built;
};

TEST_F(TruthListTest, HoldsAsItWasWritten) { EXPECT_EQ(faults(), 0U); }

TEST_F(TruthListTest, IsRefusedForTheIndexBeside) {
  const auto bit = busBit();
  bit->index = 2;
  EXPECT_GT(faults(), 0U);
  bit->index = 0;
  EXPECT_GT(faults(), 0U);
}

TEST_F(TruthListTest, IsRefusedForSwappedOffsets) {
  const auto one = located();
  const auto other = one + 1;
  ASSERT_TRUE(other->status == Truth::Located && other->isFound);
  std::swap(one->offset, other->offset);
  EXPECT_EQ(faults(), 2U);
}

TEST_F(TruthListTest, IsRefusedForAnotherFrame) {
  ++located()->frame;
  EXPECT_EQ(faults(), 1U);
}

TEST_F(TruthListTest, IsRefusedForAnotherInstance) {
  const auto own = repeated();
  const auto other = namesake(*own);
  ASSERT_NE(own->signal, other->signal);
  std::swap(own->signal, other->signal);
  std::swap(own->index, other->index);
  EXPECT_EQ(faults(), 2U);
}

TEST_F(TruthListTest, IsRefusedForTheOtherConstant) {
  const auto bit = constant();
  bit->value = !bit->value;
  EXPECT_EQ(faults(), 1U);
}

TEST_F(TruthListTest, IsRefusedForALocationOfAConstant) {
  constant()->status = Truth::Located;
  EXPECT_EQ(faults(), 1U);
}

TEST_F(TruthListTest, IsRefusedForARegisterThatMustNotBeFound) {
  located()->isFound = false;
  EXPECT_EQ(faults(), 1U);
}

TEST_F(TruthListTest, IsRefusedForARemovedRegisterThatMustBeFound) {
  const auto removed = find([](const Truth& one) { return one.status == Truth::Removed; });
  removed->isFound = true;
  removed->status = Truth::Located;
  EXPECT_EQ(faults(), 1U);
}

TEST_F(TruthListTest, IsRefusedWithoutALocatedRegister) {
  truth.erase(located());
  EXPECT_GT(faults(), 0U);
}

TEST_F(TruthListTest, IsRefusedWithoutAConstantRegister) {
  truth.erase(constant());
  EXPECT_GT(faults(), 0U);
}

TEST_F(TruthListTest, IsRefusedWithoutARemovedRegister) {
  truth.erase(find([](const Truth& one) { return one.status == Truth::Removed; }));
  EXPECT_GT(faults(), 0U);
}

TEST_F(TruthListTest, IsRefusedForTwoRegistersOfOneBit) {
  const auto one = located();
  Truth copy = *one;
  copy.source += "_again";
  truth.push_back(copy);
  EXPECT_EQ(faults(), 1U);
}

TEST_F(TruthListTest, RefusesAModelOfSwappedLocations) {
  std::istringstream in(test::contentOf(generated.file("design.ll")));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  const auto lineOf = [&lines](const Truth& wanted) {
    return std::find_if(lines.begin(), lines.end(), [&wanted](const std::string& line) {
      unsigned int frame = 0;
      unsigned int offset = 0;
      return std::sscanf(line.c_str(), "Bit %*u 0x%x %u", &frame, &offset) == 2 &&
             frame == wanted.frame && offset == wanted.offset;
    });
  };
  const auto own = repeated();
  const auto one = lineOf(*own);
  const auto other = lineOf(*namesake(*own));
  ASSERT_NE(one, lines.end());
  ASSERT_NE(other, lines.end());
  // What comes before the block is where, what follows is which register.
  const std::size_t split = one->find("Block=");
  const std::size_t otherSplit = other->find("Block=");
  const std::string where = one->substr(0, split);
  *one = other->substr(0, otherSplit) + one->substr(split);
  *other = where + other->substr(otherSplit);
  std::ofstream out(generated.file("design.ll"));
  for (const std::string& line : lines) out << line << "\n";
  out.close();

  OwnDesign swapped;
  swapped.build(generated);
  EXPECT_EQ(test::judge(*swapped, truth).faults.size(), 2U);
}

TEST_F(TruthListTest, RefusesLinesOfAnotherForm) {
  using test::parseTruth;
  EXPECT_EQ(parseTruth({"# comment", "/t/a[0]\t/t/a\t0\tlocated 7 9\tyes"}),
            (std::vector<Truth>{{"/t/a[0]", "/t/a", 0, Truth::Located, 7, 9, false, true}}));
  EXPECT_ANY_THROW(parseTruth({"/t/a\t/t/a\t0\tlocated 7\tyes"}));
  EXPECT_ANY_THROW(parseTruth({"/t/a\t/t/a\t0\tlocated 7 9 1\tyes"}));
  EXPECT_ANY_THROW(parseTruth({"/t/a\t/t/a\t0\tlost\tno"}));
  EXPECT_ANY_THROW(parseTruth({"/t/a\t/t/a\t0\tremoved\tmaybe"}));
  EXPECT_ANY_THROW(parseTruth({"/t/a\t/t/a\tremoved\tno"}));
}

}  // namespace
