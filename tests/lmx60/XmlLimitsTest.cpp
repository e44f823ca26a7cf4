#include <crossreference/XRFDataBaseInterface.h>
#include <tests/TempFile.h>
#include <tests/schemas/Documents.h>

#include <gtest/gtest.h>
#include <string>

using namespace lmx60;
using XRF_RTL2LL::Limits;

namespace {

using Limit = std::uint64_t Limits::*;

struct Outcome {
  elmx_error code;
  s_debug_error fault;
};

Outcome read(Limit limit, std::uint64_t most, const std::string& text) {
  Limits limits;
  limits.*limit = most;
  c_read_memory source(text.data(), text.size());
  c_xml_reader reader(source);
  reader.set_limits(limits);
  Movrel::Project project;
  const elmx_error code = project.unmarshal(reader);
  return {code, reader.debug_error()};
}

// `most` reads the text, one less is refused on a line.
void expectBound(Limit limit, std::uint64_t most, const std::string& text, elmx_error code,
                 std::uint64_t line, const std::string& message) {
  const Outcome at = read(limit, most, text);
  EXPECT_EQ(at.code, ELMX_OK) << at.fault.message;
  const Outcome past = read(limit, most - 1, text);
  EXPECT_EQ(past.code, code);
  EXPECT_EQ(past.fault.code, code);
  EXPECT_EQ(past.fault.message, message);
  EXPECT_EQ(past.fault.line, line);
  EXPECT_GE(past.fault.column, 1U);
}

std::string declared(int entities) {
  std::string text = "<!DOCTYPE project [\n";
  for (int at = 0; at < entities; ++at) {
    text += "<!ENTITY e" + std::to_string(at) + " 'x'>\n";
  }
  return text + "]>\n<project name='&e0;'/>";
}

}  // namespace

TEST(XmlLimits, Depth) {
  const std::string text =
      "<project>\n<platform>\n<host/>\n<x><y>\n<z/></y></x></platform></project>";
  expectBound(&Limits::xmlDepth, 5, text, ELMX_TOO_DEEP, 5, "elements are nested more than 4 deep");
}

TEST(XmlLimits, DepthIsToldWhereTheElementBegins) {
  const s_debug_error fault =
      read(&Limits::xmlDepth, 2, "<project>\n<a><b\n\n x='1'\n/>\n</a></project>").fault;
  EXPECT_EQ(fault.code, ELMX_TOO_DEEP);
  EXPECT_EQ(fault.line, 2U);
  EXPECT_EQ(fault.column, 4U);
}

TEST(XmlLimits, DepthCountsWhatIsOpen) {
  std::string text = "<project>";
  for (int at = 0; at < 100; ++at) text += "<x/>";
  EXPECT_EQ(read(&Limits::xmlDepth, 2, text + "</project>").code, ELMX_OK);
}

TEST(XmlLimits, UsualDepth) {
  const auto nested = [](std::uint64_t depth) {
    std::string text = "<project>";
    for (std::uint64_t level = 1; level < depth; ++level) text += "<x>";
    for (std::uint64_t level = 1; level < depth; ++level) text += "</x>";
    return text + "</project>";
  };
  EXPECT_EQ(test::Document(nested(Limits().xmlDepth)).error, ELMX_OK);
  EXPECT_EQ(test::Document(nested(Limits().xmlDepth + 1)).error, ELMX_TOO_DEEP);
}

TEST(XmlLimits, Entities) {
  expectBound(&Limits::xmlEntities, 3, declared(3), ELMX_HOSTILE_ENTITIES, 4,
              "the document declares more than 2 entities");
  EXPECT_EQ(test::Document(declared(static_cast<int>(Limits().xmlEntities))).error, ELMX_OK);
  EXPECT_EQ(test::Document(declared(static_cast<int>(Limits().xmlEntities) + 1)).error,
            ELMX_HOSTILE_ENTITIES);
}

// Each is compared with all before it, so that a million would take hours.
TEST(XmlLimits, DeclaredAttributes) {
  const auto declared = [](std::uint64_t count) {
    std::string text = "<!DOCTYPE project [\n<!ATTLIST project\n";
    for (std::uint64_t at = 0; at < count; ++at) text += "a" + std::to_string(at) + " CDATA 'v'\n";
    return text + ">]><platform/>";
  };
  const std::uint64_t most = 2 * Limits::xmlAttributesEach;
  EXPECT_EQ(read(&Limits::xmlEntities, 2, declared(most)).code, ELMX_WRONG_ROOT);
  const Outcome past = read(&Limits::xmlEntities, 2, declared(most + 1));
  EXPECT_EQ(past.code, ELMX_HOSTILE_ENTITIES);
  EXPECT_EQ(past.fault.message, "the document declares more than 32 attributes");
  EXPECT_GE(past.fault.line, most);
}

TEST(XmlLimits, Expansion) {
  const std::string value(10'000, 'v');
  std::string text = "<!DOCTYPE project [<!ENTITY e '" + value + "'>]>\n<project>";
  for (int at = 0; at < 20; ++at) text += "<x>&e;</x>\n";
  text += "</project>";
  // Some 200,000 bytes of text out of some 10,400, the first 65,536 of them free.
  std::uint64_t most = 1;
  while (most < 100 && read(&Limits::xmlExpansion, most, text).code != ELMX_OK) ++most;
  const std::uint64_t beyond = 20 * value.size() - Limits::xmlExpansionBase;
  EXPECT_EQ(most, beyond / text.size() + 1);
  const Outcome past = read(&Limits::xmlExpansion, most - 1, text);
  EXPECT_EQ(past.code, ELMX_HOSTILE_ENTITIES);
  EXPECT_EQ(past.fault.message,
            "the document expands to more than " + std::to_string(most - 1) + " times its size");
  EXPECT_GE(past.fault.line, 10U);
}

TEST(XmlLimits, HoldForTheEmulationMap) {
  const std::string text = test::inKernel("<arg name=\"a\"/>");
  const test::TempFile file(text, "movrel.xml");
  const auto kernels = [&](std::uint64_t depth) {
    Limits limits;
    limits.xmlDepth = depth;
    return XRF::HardwareEmulationMap(file.path(), limits).numKernels();
  };
  EXPECT_EQ(kernels(6), 1);
  // A document that cannot be read gives what stands before its fault.
  EXPECT_EQ(kernels(4), 0);
}
