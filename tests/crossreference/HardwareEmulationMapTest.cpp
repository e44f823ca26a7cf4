#include <crossreference/ReservedWords.h>
#include <crossreference/XRFDataBaseInterface.h>
#include <hpi/HPICommonUtils.h>
#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>
#include <tests/TempFile.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

using ::testing::IsEmpty;
using XRF::ControllingConnection;
using XRF::HardwareEmulationMap;

const std::string control =
    "<connection srcInst=\"krnl_1\" dstInst=\"OCL_REGION_0\" dstPort=\"x\"/>";

std::string document(const std::string& core) {
  return "<project><platform><host/><device><core name=\"OCL_REGION_0\">" + core +
         "</core></device></platform></project>";
}

std::string kernel(const std::string& name, const std::string& content) {
  return "<kernel name=\"" + name + "\">" + content + "</kernel>";
}
std::string arg(const std::string& name) { return "<arg name=\"" + name + "\"/>"; }
std::string instance(const std::string& name) { return "<instance name=\"" + name + "\"/>"; }

/// Maps of small documents, in a block design "bd".
class HardwareEmulationMapTest : public ::testing::Test {
 protected:
  HardwareEmulationMapTest() { HPICommonUtils::setBDDesignName("bd"); }
  ~HardwareEmulationMapTest() override { HPICommonUtils::setBDDesignNameProvider({}); }

  static HardwareEmulationMap mapOf(const std::string& text) {
    const test::TempFile file(text, "movrel.xml");
    return HardwareEmulationMap(file.path());
  }
  static ControllingConnection sought(const std::string& core) {
    lmx60::elmx_error error = lmx60::ELMX_OK;
    return HardwareEmulationMap::controllingConnection(Movrel::Project(document(core), &error));
  }
};

TEST_F(HardwareEmulationMapTest, KernelsShareThePathOfTheControllingInstance) {
  HardwareEmulationMap map =
      mapOf(document(kernel("k1", arg("a") + instance("k1_1")) +
                     kernel("k2", arg("b") + instance("k2_1") + instance("k2_2")) + control));
  EXPECT_EQ(map.numKernels(), 2);
  EXPECT_EQ(map.getKernelName(0), "k1");
  EXPECT_EQ(map.getKernelName(1), "k2");
  ASSERT_EQ(map.arguments("k1").size(), 1U);
  ASSERT_EQ(map.arguments("k2").size(), 1U);
  EXPECT_EQ(map.arguments("k1")[0].name, "a");
  EXPECT_EQ(map.arguments("k1")[0].signal, "/bd/OCL_Region_0/krnl_1/inst/a");
  EXPECT_EQ(map.arguments("k1")[0].emulation, "/bd/OCL_Region_0/krnl_1/U0/a");
  EXPECT_EQ(map.arguments("k2")[0].signal, "/bd/OCL_Region_0/krnl_1/inst/b");
  EXPECT_EQ(map.numComputeUnits("k1"), 1);
  EXPECT_EQ(map.numComputeUnits("k2"), 2);
  EXPECT_EQ(map.computeUnitName("k2", 1), "k2_2");
}

TEST_F(HardwareEmulationMapTest, BreakConditionsNameTheComputeUnit) {
  HardwareEmulationMap map =
      mapOf(document(kernel("k", instance("k_1") + instance("k_2")) + control));
  EXPECT_EQ(map.breakFunctionStart("k", 0), " == /bd/OCL_Region_0/k_1/inst/ap_start 1'b1");
  EXPECT_EQ(map.breakFunctionEnd("k", 1), " == /bd/OCL_Region_0/k_2/inst/ap_done 1'b1");
}

TEST_F(HardwareEmulationMapTest, TheDesignIsAskedForAtEveryCondition) {
  HardwareEmulationMap map = mapOf(document(kernel("k", instance("k_1")) + control));
  int calls = 0;
  HPICommonUtils::setBDDesignNameProvider([&calls] { return "d" + std::to_string(++calls); });
  EXPECT_EQ(map.breakFunctionStart("k", 0), " == /d1/OCL_Region_0/k_1/inst/ap_start 1'b1");
  EXPECT_EQ(map.breakFunctionEnd("k", 0), " == /d2/OCL_Region_0/k_1/inst/ap_done 1'b1");
}

TEST_F(HardwareEmulationMapTest, AKernelWithoutInstancesIsListed) {
  HardwareEmulationMap map = mapOf(document(kernel("k", arg("a")) + control));
  EXPECT_EQ(map.getKernelName(0), "k");
  EXPECT_EQ(map.numComputeUnits("k"), 0);
  EXPECT_EQ(map.computeUnitName("k", 0), "");
}

TEST_F(HardwareEmulationMapTest, ACoreWithoutConnectionsGivesBarePorts) {
  HardwareEmulationMap map = mapOf(document(kernel("k", arg("a") + arg("begin"))));
  ASSERT_EQ(map.arguments("k").size(), 2U);
  EXPECT_EQ(map.arguments("k")[0].signal, "a");
  EXPECT_EQ(map.arguments("k")[1].signal, "begin_r");
  EXPECT_EQ(map.showVariable("a"), "a");
}

TEST_F(HardwareEmulationMapTest, TheCoreOrTheControlPortIsTheMark) {
  EXPECT_EQ(sought(kernel("k", "") + control), ControllingConnection::Found);
  EXPECT_EQ(sought(kernel("k", "") + "<connection dstInst=\"x\" dstPort=\"S_AXI_CONTROL\"/>"),
            ControllingConnection::Found);
  EXPECT_EQ(sought(kernel("k", "") + "<connection dstInst=\"x\" dstPort=\"S_AXI\"/>"),
            ControllingConnection::Endless);
  EXPECT_EQ(sought(kernel("k", "") + "<connection/>" + control), ControllingConnection::Endless);
  EXPECT_EQ(sought(kernel("k", "")), ControllingConnection::Absent);
  EXPECT_EQ(sought("<connection/>"), ControllingConnection::NotSought);
}

TEST_F(HardwareEmulationMapTest, AnEmptySourceInstanceIsWrittenAsBraces) {
  HardwareEmulationMap map =
      mapOf(document(kernel("k", arg("a")) + "<connection dstPort=\"S_AXI_CONTROL\"/>"));
  EXPECT_EQ(map.showVariable("a"), "/bd/OCL_Region_0/{}/inst/a");
}

using HardwareEmulationMapDeathTest = HardwareEmulationMapTest;

TEST_F(HardwareEmulationMapDeathTest, TheSearchForAControllingConnectionNeverEndsWithoutOne) {
  const test::TempFile file(document(kernel("k", "") + "<connection dstInst=\"x\"/>" + control));
  const auto search = [&file] {
    ::alarm(2);
    const HardwareEmulationMap map(file.path());
    std::exit(0);
  };
  EXPECT_EXIT(search(), ::testing::KilledBySignal(SIGALRM), "");
}

TEST_F(HardwareEmulationMapTest, AFileThatCannotBeReadGivesAnEmptyMap) {
  HardwareEmulationMap missing("/nonexistent/movrel.xml");
  EXPECT_EQ(missing.numKernels(), 0);
  EXPECT_EQ(missing.numComputeUnits("k"), 0);
  EXPECT_EQ(missing.showVariable("a"), "");
  EXPECT_EQ(missing.showVariableHwEm("a"), "");
  EXPECT_EQ(missing.getKernelName(0), "");
  EXPECT_EQ(mapOf("<Project/>").numKernels(), 0);
  EXPECT_EQ(mapOf("no document").numKernels(), 0);
}

TEST_F(HardwareEmulationMapTest, OnlyTheFirstCoreCounts) {
  const std::string core = "<core name=\"c\">" + kernel("other", "") + "</core>";
  HardwareEmulationMap map = mapOf(
      "<project><platform><host/><device><core name=\"OCL_REGION_0\">" + kernel("k", "") + control +
      "</core>" + core + "</device><device>" + core +
      "</device></platform><platform><host/><device>" + core + "</device></platform></project>");
  EXPECT_EQ(map.numKernels(), 1);
  EXPECT_EQ(map.getKernelName(0), "k");
  EXPECT_EQ(mapOf("<project/>").numKernels(), 0);
  EXPECT_EQ(mapOf("<project><platform><host/></platform></project>").numKernels(), 0);
  EXPECT_EQ(mapOf("<project><platform><host/><device/></platform></project>").numKernels(), 0);
}

TEST_F(HardwareEmulationMapTest, ALaterKernelOfTheNameReplacesTheRecord) {
  HardwareEmulationMap map =
      mapOf(document(kernel("k", arg("a") + instance("k_1") + instance("k_2")) +
                     kernel("k", arg("b") + instance("k_3")) + control));
  EXPECT_EQ(map.numKernels(), 2);
  EXPECT_EQ(map.getKernelName(1), "k");
  EXPECT_EQ(map.numComputeUnits("k"), 1);
  EXPECT_EQ(map.computeUnitName("k", 0), "k_3");
  ASSERT_EQ(map.arguments("k").size(), 1U);
  EXPECT_EQ(map.arguments("k")[0].name, "b");
}

TEST_F(HardwareEmulationMapTest, ReservedWordsAreAltered) {
  HardwareEmulationMap map = mapOf(
      document(kernel("k", arg("begin") + arg("data") + arg("Begin") + arg("rtanif1")) + control));
  EXPECT_EQ(map.showVariable("begin"), "/bd/OCL_Region_0/krnl_1/inst/begin_r");
  EXPECT_EQ(map.showVariable("data"), "/bd/OCL_Region_0/krnl_1/inst/data");
  EXPECT_EQ(map.showVariable("Begin"), "/bd/OCL_Region_0/krnl_1/inst/Begin");
  EXPECT_EQ(map.showVariable("rtanif1"), "/bd/OCL_Region_0/krnl_1/inst/rtanif1_r");
}

TEST_F(HardwareEmulationMapTest, AVariableIsSoughtUnderItsPortNameFirst) {
  HardwareEmulationMap map = mapOf(document(kernel("k", arg("begin") + arg("begin_r")) + control));
  EXPECT_EQ(map.showVariable("begin"), "/bd/OCL_Region_0/krnl_1/inst/begin_r");
  EXPECT_EQ(map.showVariable("begin_r"), "/bd/OCL_Region_0/krnl_1/inst/begin_r");
  EXPECT_EQ(map.showVariable("other"), "");
}

TEST_F(HardwareEmulationMapTest, VariablesAreThoseOfTheFirstKernelInNameOrder) {
  HardwareEmulationMap map =
      mapOf(document(kernel("b", arg("x")) + kernel("a", arg("y")) + control));
  EXPECT_EQ(map.showVariable("y"), "/bd/OCL_Region_0/krnl_1/inst/y");
  EXPECT_EQ(map.showVariable("x"), "");
  EXPECT_EQ(map.showVariableHwEm("x"), "");
}

TEST_F(HardwareEmulationMapTest, EveryLevelOfTheNameIsReplacedForEmulation) {
  HardwareEmulationMap map = mapOf(document(
      kernel("k", arg("a")) + "<connection srcInst=\"x/inst/inst\" dstPort=\"S_AXI_CONTROL\"/>"));
  EXPECT_EQ(map.showVariable("a"), "/bd/OCL_Region_0/x/inst/inst/inst/a");
  EXPECT_EQ(map.showVariableHwEm("a"), "/bd/OCL_Region_0/x/U0/U0/U0/a");
}

TEST_F(HardwareEmulationMapTest, AnUnknownKernelHasNothing) {
  HardwareEmulationMap map = mapOf(document(kernel("k", instance("k_1")) + control));
  EXPECT_EQ(map.numComputeUnits("other"), 0);
  EXPECT_EQ(map.computeUnitName("other", 0), "");
  EXPECT_EQ(map.breakFunctionStart("other", 0), " == /bd/OCL_Region_0//inst/ap_start 1'b1");
  EXPECT_EQ(map.numComputeUnits("other"), 0);
  EXPECT_EQ(map.computeUnitName("k", -1), "");
  EXPECT_EQ(map.computeUnitName("k", 1), "");
  EXPECT_EQ(map.getKernelName(7), "");
  EXPECT_THAT(map.arguments("other"), IsEmpty());
}

TEST_F(HardwareEmulationMapTest, ExceptionsNameTheFile) {
  const test::TempFile file(document(kernel("k", arg("a")) + control), "movrel.xml");
  HPICommonUtils::setBDDesignNameProvider([]() -> std::string { throw 7; });
  try {
    const HardwareEmulationMap map(file.path());
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), "Failed to parse file " + file.path());
  }
}

TEST(BlockDesignName, IsEmptyUntilAHostKnowsIt) {
  EXPECT_EQ(HPICommonUtils::getBDDesignName(), "");
  HPICommonUtils::setBDDesignName("bd");
  EXPECT_EQ(HPICommonUtils::getBDDesignName(), "bd");
  HPICommonUtils::setBDDesignNameProvider([] { return std::string("other"); });
  EXPECT_EQ(HPICommonUtils::getBDDesignName(), "other");
  HPICommonUtils::setBDDesignNameProvider({});
  EXPECT_EQ(HPICommonUtils::getBDDesignName(), "");
}

TEST(ReservedWords, AreTheCompilersToTheLetter) {
  const auto count = [](const auto& words, std::string_view word) {
    return std::count(words.begin(), words.end(), word);
  };
  EXPECT_EQ(XRF::verilog_key_words.size(), 127U);
  EXPECT_EQ(XRF::vhdl_key_words.size(), 149U);
  EXPECT_EQ(XRF::verilog_key_words.front(), "abs");
  EXPECT_EQ(XRF::verilog_key_words.back(), "wor");
  EXPECT_EQ(XRF::vhdl_key_words.front(), "always");
  EXPECT_EQ(XRF::vhdl_key_words.back(), "writeline");
  EXPECT_EQ(count(XRF::verilog_key_words, "rtanif1"), 1);
  EXPECT_EQ(count(XRF::vhdl_key_words, "untis"), 1);
  EXPECT_EQ(count(XRF::vhdl_key_words, "ascending"), 2);
  for (const char* group : {"VHDL attributes", "VHDL types", "VHDL Procedures"}) {
    EXPECT_EQ(count(XRF::vhdl_key_words, group), 1) << group;
  }
}

}  // namespace
