#include <tests/schemas/Documents.h>

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

using namespace lmx60;
using test::Document;
using test::inCore;
using test::inKernel;
using test::inPlatform;
using test::kernelOf;
using test::Tolerated;

namespace {

elmx_error readAddrWidth(const std::string& value, unsigned& width) {
  Document document(inPlatform("<device addrWidth='" + value + "'/>"));
  if (document.project.SizePlatform() == 1 && document.project.GetPlatform(0).SizeDevice() == 1) {
    const Movrel::Device& device = document.project.GetPlatform(0).GetDevice(0);
    EXPECT_EQ(device.IssetAddrWidth(), document.error == ELMX_OK);
    width = device.GetAddrWidth();
  }
  return document.error;
}

elmx_error readRomTime(const std::string& value, unsigned long long& time) {
  Document document("<project><platform featureRomTime='" + value +
                    "'><host/></platform></project>");
  time = document.project.GetPlatform(0).GetFeatureRomTime();
  return document.error;
}

}  // namespace

TEST(MovrelReading, TakesAProjectWithoutChildren) {
  const Document document("<project/>");
  EXPECT_EQ(document.error, ELMX_OK);
  EXPECT_EQ(document.project.SizePlatform(), 0U);
  EXPECT_FALSE(document.project.IssetName());
}

TEST(MovrelReading, RefusesAnyOtherRoot) {
  for (const char* text : {"<Project/>", "<projects/>", "<projec/>", "<kernel/>",
                           "<project xmlns='urn:x'/>", "<p:project xmlns:p='urn:x'/>"}) {
    const Document document(text);
    EXPECT_EQ(document.error, 16) << text;
    EXPECT_EQ(document.debug.code, ELMX_WRONG_ROOT);
    EXPECT_EQ(document.debug.line, 1U);
  }
}

TEST(MovrelReading, MissesThePlatformsHost) {
  const Document nothing("<project>\n <platform name='p'/>\n</project>");
  EXPECT_EQ(nothing.error, 21);
  EXPECT_EQ(nothing.debug.line, 2U);
  EXPECT_EQ(nothing.debug.element, "platform");
  EXPECT_EQ(nothing.project.GetPlatform(0).GetName(), "p");
  const Document passed("<project><platform>\n<version/>\n<device/></platform></project>");
  EXPECT_EQ(passed.error, 21);
  EXPECT_EQ(passed.debug.line, 3U);
  EXPECT_EQ(passed.debug.element, "device");
  EXPECT_EQ(passed.project.GetPlatform(0).SizeVersion(), 1U);
  EXPECT_FALSE(passed.project.GetPlatform(0).IssetHost());
  EXPECT_EQ(Document(inPlatform("")).error, ELMX_OK);
}

TEST(MovrelReading, TakesIntegersUpToTheirMaximum) {
  unsigned width = 0;
  EXPECT_EQ(readAddrWidth("4294967295", width), ELMX_OK);
  EXPECT_EQ(width, 4294967295U);
  EXPECT_EQ(readAddrWidth("4294967296", width), 36);
  EXPECT_EQ(readAddrWidth("-1", width), 37);
  EXPECT_EQ(readAddrWidth("0x40", width), 35);
  EXPECT_EQ(readAddrWidth("", width), 35);
  EXPECT_EQ(readAddrWidth("&#10;&#9; 0064 &#13;", width), ELMX_OK);
  EXPECT_EQ(width, 64U);
  EXPECT_EQ(readAddrWidth("+7", width), ELMX_OK);
  EXPECT_EQ(width, 7U);
  EXPECT_EQ(readAddrWidth("-0", width), ELMX_OK);
  EXPECT_EQ(width, 0U);
  unsigned long long time = 0;
  EXPECT_EQ(readRomTime("18446744073709551615", time), ELMX_OK);
  EXPECT_EQ(time, 18446744073709551615ULL);
  EXPECT_EQ(readRomTime("18446744073709551616", time), 36);
  EXPECT_EQ(readRomTime("1" + std::string(1000, '0'), time), 36);
  EXPECT_EQ(readRomTime("-" + std::string(1000, '9'), time), 37);
  EXPECT_EQ(readRomTime(std::string(1000, '0') + "5", time), ELMX_OK);
  EXPECT_EQ(time, 5U);
}

TEST(MovrelReading, TellsWhereAnIntegerIsWrong) {
  const Document document(
      "<project><platform><host/>\n  <device addrWidth='1e3'/></platform></project>");
  EXPECT_EQ(document.debug.code, ELMX_NOT_INTEGER);
  EXPECT_EQ(document.debug.severity, ELMX_ERROR);
  EXPECT_EQ(document.debug.line, 2U);
  EXPECT_EQ(document.debug.column, 3U);
  EXPECT_EQ(document.debug.element, "device");
  EXPECT_EQ(document.debug.source, "memory");
  EXPECT_EQ(document.debug.binding, "HPIMovrelXmlReaderWriterLMX.cpp");
  EXPECT_EQ(document.debug.message, "attribute addrWidth: \"1e3\" is no decimal integer");
}

TEST(MovrelReading, KeepsTextAsWritten) {
  Document document(
      inPlatform("<device><core numComputeUnits='two' clockFreq='  0300 MHz '/></device>"));
  const Movrel::Core& core = test::coreOf(document.project);
  EXPECT_EQ(core.GetNumComputeUnits(), "two");
  EXPECT_EQ(core.GetClockFreq(), "  0300 MHz ");
  Document described(
      "<project><platform><description> a\n b "
      "</description><description/><host/></platform></project>");
  const Movrel::Platform& platform = described.project.GetPlatform(0);
  ASSERT_EQ(platform.SizeDescription(), 2U);
  EXPECT_EQ(platform.GetDescription(0), " a\n b ");
  EXPECT_EQ(platform.GetDescription(1), "");
}

TEST(MovrelReading, RefusesKnownElementsOutOfOrder) {
  Document document(inKernel("<arg name='a'/><port/><instance/>"));
  EXPECT_EQ(document.error, ELMX_UNEXPECTED_ELEMENT);
  EXPECT_EQ(document.debug.element, "port");
  EXPECT_EQ(kernelOf(document.project).SizeArg(), 1U);
  EXPECT_EQ(kernelOf(document.project).SizePort(), 0U);
  EXPECT_EQ(Document(inKernel("<maxWorkGroupSize/><maxWorkGroupSize/>")).error,
            ELMX_UNEXPECTED_ELEMENT);
  EXPECT_EQ(Document(inPlatform("<host/>")).error, ELMX_UNEXPECTED_ELEMENT);
  EXPECT_EQ(Document(inPlatform("<build_flow>x</build_flow>")).error, ELMX_UNEXPECTED_ELEMENT);
}

TEST(MovrelReading, SkipsWhatItDoesNotKnow) {
  Document document(
      inKernel("<arg/><newer a='1'><arg/>text<deep><project/></deep></newer><arg future='1' "
               "name='b'/><x:arg xmlns:x='urn:x'/>"));
  EXPECT_EQ(document.error, ELMX_OK);
  ASSERT_EQ(kernelOf(document.project).SizeArg(), 2U);
  EXPECT_EQ(kernelOf(document.project).GetArg(1).GetName(), "b");
}

TEST(MovrelReading, WarnsOfWhatItSkips) {
  const Tolerated read(inKernel("<newer><inner/></newer>stray<arg future='1'>more</arg>"));
  EXPECT_EQ(read.error, ELMX_OK);
  ASSERT_EQ(read.codes(), (std::vector<int>{ELMX_UNKNOWN_ELEMENT, ELMX_UNKNOWN_TEXT,
                                            ELMX_UNKNOWN_ATTRIBUTE, ELMX_UNKNOWN_TEXT}));
  for (const s_debug_error& fault : read.faults) EXPECT_EQ(fault.severity, ELMX_WARNING);
  EXPECT_EQ(read.faults[0].element, "newer");
  EXPECT_EQ(read.faults[1].element, "kernel");
  EXPECT_EQ(read.faults[3].element, "arg");
  EXPECT_EQ(read.warnings, 4U);
  EXPECT_EQ(read.errors, 0U);
}

TEST(MovrelReading, WarnsOfAttributesAndElementsInsideATextElement) {
  Tolerated read(
      "<project><platform><description "
      "lang='en'>a<b>c</b>d</description><host/></platform></project>");
  EXPECT_EQ(read.codes(), (std::vector<int>{ELMX_UNKNOWN_ATTRIBUTE, ELMX_UNKNOWN_ELEMENT}));
  EXPECT_EQ(read.project.GetPlatform(0).GetDescription(0), "ad");
}

TEST(MovrelReading, GoesOnWhenAHandlerToleratesErrors) {
  Tolerated read(
      "<Project><platform><device addrWidth='x' name='d'><core><kernel><arg/><port/>"
      "<arg addressQualifier='-1' name='n'/></kernel></core></device></platform></Project>");
  EXPECT_EQ(read.error, ELMX_OK);
  EXPECT_EQ(read.codes(), (std::vector<int>{16, 21, 35, ELMX_UNEXPECTED_ELEMENT, 37}));
  EXPECT_EQ(read.errors, 5U);
  EXPECT_EQ(kernelOf(read.project).SizeArg(), 2U);
  EXPECT_EQ(kernelOf(read.project).GetArg(1).GetName(), "n");
  EXPECT_FALSE(kernelOf(read.project).GetArg(1).IssetAddressQualifier());
}

TEST(MovrelReading, EndsWithTheAnswerOfAHandler) {
  const std::string text = inKernel("<newer/><arg/>");
  c_read_memory source(text.data(), text.size());
  c_xml_reader reader(source);
  reader.set_error_handler([](const s_debug_error&) { return static_cast<elmx_error>(99); });
  Movrel::Project project;
  EXPECT_EQ(project.unmarshal(reader), 99);
  EXPECT_EQ(reader.debug_error().code, ELMX_UNKNOWN_ELEMENT);
  EXPECT_EQ(kernelOf(project).SizeArg(), 0U);
}

TEST(MovrelReading, KeepsTheFaultThatNoHandlerCanTolerate) {
  const std::string text = "<project>\n<platform>";
  c_read_memory source(text.data(), text.size());
  c_xml_reader reader(source);
  std::size_t seen = 0;
  reader.set_error_handler([&seen](const s_debug_error&) {
    ++seen;
    return ELMX_OK;
  });
  Movrel::Project project;
  EXPECT_EQ(project.unmarshal(reader), ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(seen, 1U);
  EXPECT_EQ(reader.debug_error().code, ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(reader.debug_error().line, 2U);
  EXPECT_EQ(reader.tolerated_error_count(), 0U);
}

TEST(MovrelReading, MissesTheTextsOfAFifo) {
  const std::string all =
      "<Name>n</Name><ParentInst>p</ParentInst><StaticDepth>4</StaticDepth><RuntimeDepth>5</"
      "RuntimeDepth>";
  const auto fifo = [](const std::string& content) {
    return inKernel("<FIFOInformation><FIFOInst>" + content + "</FIFOInst></FIFOInformation>");
  };
  Document complete(fifo(all));
  EXPECT_EQ(complete.error, ELMX_OK);
  const Movrel::FIFOInst& inst = kernelOf(complete.project).GetFIFOInformation(0).GetFIFOInst(0);
  EXPECT_TRUE(inst.IsOccursOk());
  EXPECT_EQ(inst.GetRuntimeDepth(), "5");
  EXPECT_EQ(Document(fifo("")).error, ELMX_MISSING_ELEMENT);
  EXPECT_EQ(Document(fifo(all.substr(all.find("<Par")))).error, ELMX_MISSING_ELEMENT);
  EXPECT_EQ(Document(fifo(all.substr(0, all.find("<Run")))).error, ELMX_MISSING_ELEMENT);
  EXPECT_EQ(Document(fifo(all.substr(0, all.find("<Run")) + "<InterfaceList/>")).error,
            ELMX_MISSING_ELEMENT);
  Tolerated none(fifo(""));
  EXPECT_EQ(none.codes(), (std::vector<int>{21, 21, 21, 21}));
  EXPECT_FALSE(kernelOf(none.project).GetFIFOInformation(0).GetFIFOInst(0).IsOccursOk());
}

TEST(MovrelReading, KeepsKindsOfOneElementNameApart) {
  Document document(
      inCore("<kernelClocks><clock name='k'/></kernelClocks><kernel><instance "
             "name='unit'><addrRemap port='p'/></instance></kernel>"
             "<memories><instance size='1'><addrRemap range='r'/></instance></memories>"
             "<pipes><instance depth='2'/></pipes><profilers><instance numSlots='3'><slot "
             "index='1'/></instance></profilers>"));
  ASSERT_EQ(document.error, ELMX_OK) << document.debug.message;
  Movrel::Core& core = test::coreOf(document.project);
  EXPECT_EQ(core.GetKernelClocks().GetClock(0).GetName(), "k");
  EXPECT_EQ(core.GetKernel(0).GetInstance(0).GetAddrRemap(0).GetPort(), "p");
  EXPECT_EQ(core.GetMemories(0).GetInstance(0).GetAddrRemap(0).GetRange(), "r");
  EXPECT_EQ(core.GetPipes(0).GetInstance(0).GetDepth(), "2");
  EXPECT_EQ(core.GetProfilers().GetInstance(0).GetNumSlots(), 3U);
  EXPECT_EQ(core.GetProfilers().GetInstance(0).GetSlot(0).GetIndex(), 1U);
}

TEST(MovrelReading, ReadsAnAbsentClockNameAsEmpty) {
  Document document(inCore("<kernelClocks><clock/></kernelClocks>"));
  Movrel::KernelClocksClock& clock = test::coreOf(document.project).GetKernelClocks().GetClock(0);
  EXPECT_FALSE(clock.IssetName());
  clock.SetName("c");
  clock.UnsetName();
  EXPECT_EQ(clock.GetName(), "");
}

TEST(MovrelReading, ReadsOneElementFromAnOpenReader) {
  const std::string text = "<kernel name='k'><arg/></kernel>";
  c_read_memory source(text.data(), text.size());
  c_xml_reader reader(source);
  Movrel::Kernel kernel;
  kernel.SetHash("old");
  EXPECT_EQ(kernel.unmarshal(reader, "kernel"), ELMX_OK);
  EXPECT_EQ(kernel.SizeArg(), 1U);
  EXPECT_FALSE(kernel.IssetHash());
  EXPECT_THROW(kernel.unmarshal(reader, "kernel"), c_lmx_reader_exception);
}

TEST(MovrelReading, RefusesWhatFollowsTheRoot) {
  EXPECT_EQ(Document("<project/><project/>").error, ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(Document("<project/>text").error, ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(Document("<project/>\n<!-- comment -->\n").error, ELMX_OK);
}
