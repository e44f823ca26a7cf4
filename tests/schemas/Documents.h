#pragma once

#include <lmx60/Drivers.h>
#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace test {

/// A project read from text, and what came of it.
struct Document {
  explicit Document(const std::string& text) : project(text, &error, &debug) {}

  lmx60::elmx_error error = lmx60::ELMX_OK;
  lmx60::s_debug_error debug;
  Movrel::Project project;
};

/// A project read with a handler that tolerates every fault, and the faults.
struct Tolerated {
  explicit Tolerated(std::string_view text) {
    lmx60::c_read_memory source(text.data(), text.size());
    lmx60::c_xml_reader reader(source);
    reader.set_error_handler([this](const lmx60::s_debug_error& fault) {
      faults.push_back(fault);
      return lmx60::ELMX_OK;
    });
    error = project.unmarshal(reader);
    warnings = reader.warning_count();
    errors = reader.tolerated_error_count();
  }
  std::vector<int> codes() const {
    std::vector<int> result;
    for (const lmx60::s_debug_error& fault : faults) result.push_back(fault.code);
    return result;
  }

  Movrel::Project project;
  lmx60::elmx_error error = lmx60::ELMX_OK;
  std::vector<lmx60::s_debug_error> faults;
  std::uint64_t warnings = 0;
  std::uint64_t errors = 0;
};

/// Around what stands in one platform that has its host, in one core, in one kernel.
inline std::string inPlatform(const std::string& text) {
  return "<project><platform><host/>" + text + "</platform></project>";
}
inline std::string inCore(const std::string& text) {
  return inPlatform("<device><core>" + text + "</core></device>");
}
inline std::string inKernel(const std::string& text) {
  return inCore("<kernel>" + text + "</kernel>");
}

inline Movrel::Core& coreOf(Movrel::Project& project) {
  return project.GetPlatform(0).GetDevice(0).GetCore(0);
}
inline Movrel::Kernel& kernelOf(Movrel::Project& project) { return coreOf(project).GetKernel(0); }

/// What is written of a project, which must succeed.
inline std::string written(const Movrel::Project& project) {
  std::string text;
  lmx60::s_debug_error debug;
  EXPECT_EQ(project.Marshal(&text, &debug), lmx60::ELMX_OK) << debug.message;
  return text;
}

/// Writes any object as an element, and reads it back into another.
template <class Item>
std::string elementOf(const Item& item) {
  std::string text;
  lmx60::c_write_string target(text);
  lmx60::c_xml_writer writer(target);
  item.marshal(writer, "element");
  EXPECT_EQ(writer.finish(), lmx60::ELMX_OK) << writer.debug_error().message;
  return text;
}
template <class Item>
lmx60::elmx_error readElement(Item& item, const std::string& text) {
  lmx60::c_read_memory source(text.data(), text.size());
  lmx60::c_xml_reader reader(source);
  return item.unmarshal(reader, "element");
}

}  // namespace test
