#include "tests/Edif.h"
#include "tests/crossreference/DesignFilesTest.h"

#include <string>
#include <vector>

using namespace XRF_RTL2LL;
using edif::cell;
using edif::instance;
using edif::output;
using edif::port;
using edif::renamed;
using edif::top;

namespace {

/// What a design says of the files it read and of its registers.
class CoverageReportTest : public test::DesignFilesTest {
 protected:
  /// Registers a to d and a bus c[1:0] in the top, and e in u; the netlist of synthesis lacks d.
  void loadRegisters() {
    const std::string sub = cell("sub", "", instance("e_reg", "FDRE"));
    const std::string common = instance("u", "sub") + instance("a_reg", "FDRE") +
                               instance("b_reg", "FDRE") + instance("c_reg[0]", "FDRE") +
                               instance("c_reg[1]", "FDRE");
    readNetlists(top("", common + instance("d_reg", "FDRE"), sub), top("", common, sub));
  }
  static std::string location(const std::string& net, const std::string& latch = "AQ",
                              const std::string& block = "SLICE_X1Y1") {
    return "Bit 5 0x10 3 Block=" + block + " Latch=" + latch + " Net=" + net + "\n";
  }
  static std::string constant(const std::string& element) {
    return "INFO: [Synth 8-3333] propagating constant 0 across sequential element (" + element +
           ")\n";
  }
  static std::string text(const Coverage::Counts& counts) {
    return std::to_string(counts.located) + " " + std::to_string(counts.constant) + " " +
           std::to_string(counts.unread) + " " + std::to_string(counts.unknown);
  }
};

TEST_F(CoverageReportTest, FreshDesignReportsNothing) {
  EXPECT_EQ(subject.locationReport().lines, 0U);
  EXPECT_EQ(subject.locationReport().skipped(), 0U);
  EXPECT_EQ(subject.logReport().lines, 0U);
  EXPECT_EQ(subject.coverage().all.total(), 0U);
  EXPECT_TRUE(subject.coverage().modules.empty());
}

TEST_F(CoverageReportTest, LocationLinesAreCountedByWhatBecameOfThem) {
  readNetlists(
      top(output("p") + port(renamed("h_3_", "h[3]"), "OUTPUT"), instance("a_reg", "FDRE")),
      top(output("s"), instance("a_reg", "FDRE")));
  readLocations("Revision 3\nBit 1 0x1 1 Block=RAMB36_X0Y0 Ram=B:BIT0\n" + location("a") +
                location("s") + location("a", "AMUX") + location("p", "AMUX") +
                location("p", "BMUX") + location("a", "I", "A9") + location("h") +
                location("u/none[3]") + location("gone"));
  const LocationReport& report = subject.locationReport();
  EXPECT_EQ(report.lines, 9U);
  EXPECT_EQ(report.used, 3U);
  EXPECT_EQ(report.skippedLatches, 2U);
  EXPECT_EQ(report.skippedBlocks, 1U);
  EXPECT_EQ(report.skippedIndices, 1U);
  EXPECT_EQ(report.skipped(), 4U);
  EXPECT_EQ(report.unmatched, 2U);
  EXPECT_EQ(report.unmatchedNames, (std::vector<std::string>{"u/none[3]", "gone"}));
}

TEST_F(CoverageReportTest, LocationReportGrowsWithEachFile) {
  loadRegisters();
  readLocations(location("a") + location("x"));
  readLocations(location("b") + location("y"));
  EXPECT_EQ(subject.locationReport().lines, 4U);
  EXPECT_EQ(subject.locationReport().used, 2U);
  EXPECT_EQ(subject.locationReport().unmatchedNames, (std::vector<std::string>{"x", "y"}));
}

TEST_F(CoverageReportTest, OnlyTheFirstUnmatchedNamesAreKept) {
  loadRegisters();
  std::string lines;
  for (int i = 0; i < 20000; ++i) lines += location("n" + std::to_string(i));
  readLocations(lines);
  const LocationReport& report = subject.locationReport();
  EXPECT_EQ(report.unmatched, 20000U);
  ASSERT_GE(report.unmatchedNames.size(), 3U);
  EXPECT_LT(report.unmatchedNames.size(), 20000U);
  EXPECT_EQ(report.unmatchedNames[2], "n2");
}

TEST_F(CoverageReportTest, LogLinesAreCountedByWhatBecameOfThem) {
  readNetlists(
      top(output("p") + port(renamed("h_3_", "h[3]"), "OUTPUT"), instance("a_reg", "FDRE")),
      top("", ""));
  readLog("noise\n" + constant("a_reg") + constant("p") + constant("h") + constant("u/none[3]"));
  const LogReport& report = subject.logReport();
  EXPECT_EQ(report.lines, 4U);
  EXPECT_EQ(report.used, 2U);
  EXPECT_EQ(report.skipped, 1U);
  EXPECT_EQ(report.unmatched, 1U);
  ASSERT_EQ(report.unmatchedNames.size(), 1U);
  EXPECT_NE(report.unmatchedNames[0].find("u/none"), std::string::npos);
}

TEST_F(CoverageReportTest, EveryRegisterBitOfTheRtlIsCountedOnce) {
  loadRegisters();
  const Coverage coverage = subject.coverage();
  EXPECT_EQ(text(coverage.all), "0 0 0 6");
  EXPECT_EQ(coverage.all.total(), 6U);
}

TEST_F(CoverageReportTest, RegistersAreCountedByWhatIsKnownOfThem) {
  loadRegisters();
  readLocations(location("a") + location("u/e"));
  readLog(constant("b_reg"));
  const Coverage coverage = subject.coverage();
  EXPECT_EQ(text(coverage.all), "2 1 1 2") << "d is unread, both bits of c are unknown";
  ASSERT_EQ(coverage.modules.size(), 2U);
  EXPECT_EQ(coverage.modules[0].path, "/top");
  EXPECT_EQ(text(coverage.modules[0].counts), "1 1 1 2");
  EXPECT_EQ(coverage.modules[1].path, "/top/u");
  EXPECT_EQ(text(coverage.modules[1].counts), "1 0 0 0");
}

TEST_F(CoverageReportTest, EveryBitOfAWideRegisterCounts) {
  readNetlists(top("", instance(renamed("w", "word"), "RTL_wide_fd")), top("", ""));
  EXPECT_EQ(text(subject.coverage().all), "0 0 0 4");
}

TEST_F(CoverageReportTest, OtherBitsAreNoRegisters) {
  readNetlists(top(output("p"), instance("l", "LUT2") + instance("g", "GND")),
               top("", instance("a_reg", "FDRE")));
  EXPECT_EQ(subject.coverage().all.total(), 0U);
  EXPECT_TRUE(subject.coverage().modules.empty());
}

/// Registers that share a bit.
class SharedRegistersTest : public CoverageReportTest {
 protected:
  static std::string merging(const std::string& gone, const std::string& into) {
    return "INFO: [Synth 8-3886] merging instance '" + gone + "' (FD) to '" + into + "'\n";
  }
  /// A top with the instances given, and those of a module u.
  static std::string around(const std::string& registers, const std::string& inner) {
    return top("", instance("u", "sub") + registers, cell("sub", "", inner));
  }
  /// Every count, "located constant merged unread unknown", in all and by module.
  static std::string all(const Design& design) {
    const Coverage coverage = design.coverage();
    std::string result = full(coverage.all);
    Coverage::Counts sum;
    for (const Coverage::ModuleCounts& module : coverage.modules) {
      result += "; " + module.path + " " + full(module.counts);
      sum.located += module.counts.located;
      sum.constant += module.counts.constant;
      sum.merged += module.counts.merged;
      sum.unread += module.counts.unread;
      sum.unknown += module.counts.unknown;
    }
    EXPECT_EQ(full(sum), full(coverage.all));
    EXPECT_EQ(sum.total(), coverage.all.total());
    return result;
  }
  static std::string full(const Coverage::Counts& counts) {
    return std::to_string(counts.located) + " " + std::to_string(counts.constant) + " " +
           std::to_string(counts.merged) + " " + std::to_string(counts.unread) + " " +
           std::to_string(counts.unknown);
  }
  /// What a design says that reads the subject back in extended reading.
  std::string reloaded() {
    const test::TempFile file;
    subject.exportDesign(file.path(), true);
    Model model;
    const ModelScope scope(model);
    Design loaded(Matching::Extended);
    run([&] { loaded.parse_xrf(file.path()); });
    return fatal ? fatal->text : all(loaded);
  }
  void expectCoverage(const std::string& expected) {
    EXPECT_EQ(all(subject), expected);
    EXPECT_EQ(reloaded(), expected) << "after loading";
  }
};

TEST_F(SharedRegistersTest, MergedRegisterCountsBesideItsSurvivor) {
  subject.setMatching(Matching::Extended);
  const std::string y = instance("y_reg", "FDRE");
  readNetlists(around(instance("x_reg", "FDRE") + y, ""), around(y, ""));
  readLocations(location("y"));
  readLog(merging("x_reg", "y_reg"));
  expectCoverage("1 0 1 0 0; /top 1 0 1 0 0");
}

TEST_F(SharedRegistersTest, SurvivorIsTheOneThatTheSynthesizedViewHas) {
  subject.setMatching(Matching::Extended);
  // The module that holds the register which is gone comes first in name order.
  const std::string kept = instance("z_reg[1]", "FDRE");
  readNetlists(top("", instance("a", "sub") + instance("u", "other"),
                   cell("sub", "", instance("x_reg", "FDRE")) + cell("other", "", kept)),
               top("", instance("u", "other"), cell("other", "", kept)));
  readLocations(location("u/z[1]"));
  readLog(merging("a/x_reg", "u/z_reg[1]"));
  expectCoverage("1 0 1 0 0; /top/a 0 0 1 0 0; /top/u 1 0 0 0 0");
}

TEST_F(SharedRegistersTest, ChainOfMergesHasOneSurvivor) {
  subject.setMatching(Matching::Extended);
  const std::string gone = instance("w_reg[0]", "FDRE") + instance("w_reg[1]", "FDRE");
  readNetlists(around(gone, instance("e_reg", "FDRE")), around("", instance("e_reg", "FDRE")));
  readLocations(location("u/e"));
  readLog(merging("w_reg[0]", "w_reg[1]") + merging("w_reg[1]", "u/e_reg"));
  expectCoverage("1 0 2 0 0; /top 0 0 2 0 0; /top/u 1 0 0 0 0");
}

TEST_F(SharedRegistersTest, SurvivorThatIsGoneItselfCountsByItsKind) {
  subject.setMatching(Matching::Extended);
  readNetlists(around(instance("x_reg", "FDRE"), instance("e_reg", "FDRE")), around("", ""));
  readLog(merging("x_reg", "u/e_reg"));
  expectCoverage("0 0 1 1 0; /top 0 0 1 0 0; /top/u 0 0 0 1 0");
}

TEST_F(SharedRegistersTest, FirstInNameOrderSurvivesWhereTheImplementationHasSeveral) {
  subject.setMatching(Matching::Extended);
  const std::string both = around(instance("x_reg", "FDRE"), instance("e_reg", "FDRE"));
  readNetlists(both, both);
  readLocations(location("u/e") + location("x"));
  ASSERT_EQ(all(subject), "2 0 0 0 0; /top 1 0 0 0 0; /top/u 1 0 0 0 0");
  signal("/top/x")->merge(signal("/top/u/e"), 0);
  // u/e comes before x.
  EXPECT_EQ(all(subject), "1 0 1 0 0; /top 0 0 1 0 0; /top/u 1 0 0 0 0");
}

TEST_F(SharedRegistersTest, ConstantOfASurvivorCountsOnce) {
  subject.setMatching(Matching::Extended);
  readNetlists(around(instance("x_reg", "FDRE") + instance("y_reg", "FDRE"), ""), around("", ""));
  readLog(constant("y_reg") + merging("x_reg", "y_reg"));
  expectCoverage("0 1 1 0 0; /top 0 1 1 0 0");
}

TEST_F(SharedRegistersTest, RegistersLaidOntoOneBitWithoutPlacesAreNotKnown) {
  const std::string words = instance("m_reg[1][2][3]", "FDRE") + instance("m_reg[1][2][4]", "FDRE");
  readNetlists(around(words, instance("e_reg", "FDRE")), around(words, instance("e_reg", "FDRE")));
  ASSERT_EQ(idOf("/top/m_reg[1][2][3]/Q"), idOf("/top/m_reg[1][2][4]/Q"));
  bit("/top/m_reg[1][2][3]/Q")->setKind(Bit::STATE);
  expectCoverage("1 0 0 0 2; /top 1 0 0 0 1; /top/u 0 0 0 0 1");
}

TEST_F(SharedRegistersTest, StrictReadingHasNoMerges) {
  const std::string y = instance("y_reg", "FDRE");
  readNetlists(around(instance("x_reg", "FDRE") + y, ""), around(y, ""));
  readLocations(location("y"));
  readLog(merging("x_reg", "y_reg"));
  EXPECT_EQ(all(subject), "1 0 0 1 0; /top 1 0 0 1 0");
}

TEST_F(CoverageReportTest, DesignLoadedInStrictReadingKnowsNoRegisters) {
  loadRegisters();
  const test::TempFile file;
  subject.exportDesign(file.path(), true);
  Model model;
  const ModelScope scope(model);
  Design loaded;
  run([&] { loaded.parse_xrf(file.path()); });
  ASSERT_FALSE(fatal);
  EXPECT_EQ(loaded.coverage().all.total(), 0U);
}

// End to end: what the files of a build tell about the registers of the source.

TEST_F(CoverageReportTest, LocationsReachTheRtlView) {
  loadRegisters();
  readLocations(
      "Bit 1 0x00400100 33 Block=SLICE_X1Y1 Latch=AQ Net=a\n"
      "Bit 2 0x00400101 34 Block=SLICE_X1Y1 Latch=BMUX Net=u/e\n");
  readLog(constant("b_reg"));
  EXPECT_EQ(bit("/top/a")->getStateLoc1(), 0x400100U);
  EXPECT_EQ(bit("/top/a")->getStateLoc2(), 33U);
  EXPECT_EQ(bit("/top/u/e")->getStateLoc1(), 0x400101U);
  EXPECT_EQ(bit("/top/u/e")->getStateLoc2(), 34U);
  EXPECT_EQ(bit("/top/b")->getKind(), Bit::CNST);
  EXPECT_EQ(bit("/top/c", 0)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bit("/top/c", 1)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bit("/top/d")->getKind(), Bit::UNREAD);
}

TEST_F(CoverageReportTest, FlattenedRegisterIsKnownInTheSynthesizedViewOnly) {
  readNetlists(top("", instance("u", "sub"), cell("sub", "", instance("e_reg", "FDRE"))),
               top(output("u_e"), ""));
  readLocations(location("u/zz/e") + location("u_e"));
  EXPECT_EQ(bit("/top/u_e", 0, SYNTH)->getKind(), Bit::STATE);
  EXPECT_EQ(bit("/top/u/e")->getKind(), Bit::UNKNOWN);
}

}  // namespace
