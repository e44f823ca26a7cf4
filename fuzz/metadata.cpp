// A metadata document from a file, from memory and from a string; what is written of it; the map.
#include <crossreference/XRFDataBaseInterface.h>
#include <fuzz/Fuzz.h>
#include <lmx60/Drivers.h>
#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>

namespace {

using lmx60::elmx_error;
using lmx60::ELMX_OK;

// Every fault is tolerated, as `xrf meta check` does.
void readToItsEnd(std::string_view text) {
  lmx60::c_read_memory source(text.data(), text.size());
  lmx60::c_xml_reader reader(source);
  reader.set_error_handler([](const lmx60::s_debug_error&) { return ELMX_OK; });
  Movrel::Project project;
  project.unmarshal(reader);
}

std::string written(const Movrel::Project& project) {
  std::string text;
  fuzz::require(project.Marshal(&text) == ELMX_OK, "a document that was read can be written");
  return text;
}

void askMap(const Movrel::Project& project, const std::string& path) {
  using XRF::HardwareEmulationMap;
  const auto connection = HardwareEmulationMap::controllingConnection(project);
  if (connection == XRF::ControllingConnection::Endless) return;
  HardwareEmulationMap map(path);
  for (int kernel = -1; kernel <= map.numKernels(); ++kernel) {
    const std::string name = map.getKernelName(kernel);
    for (int unit = -1; unit <= map.numComputeUnits(name); ++unit) {
      static_cast<void>(map.computeUnitName(name, unit));
      static_cast<void>(map.breakFunctionStart(name, unit));
      static_cast<void>(map.breakFunctionEnd(name, unit));
    }
    for (const XRF::KernelArgument& argument : map.arguments(name)) {
      static_cast<void>(map.showVariable(argument.name));
      static_cast<void>(map.showVariableHwEm(argument.name));
    }
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::parts<1>(data, size)[0]);
  const fuzz::MemoryFile file(text);
  readToItsEnd(text);
  elmx_error ofFile = ELMX_OK;
  elmx_error ofMemory = ELMX_OK;
  elmx_error ofString = ELMX_OK;
  const Movrel::Project fromFile(file.path().c_str(), &ofFile);
  const Movrel::Project fromMemory(text.data(), text.size(), &ofMemory);
  const Movrel::Project fromString(text, &ofString);
  fuzz::require(ofFile == ofMemory && ofFile == ofString, "all three ways of reading agree");
  if (ofFile != ELMX_OK) return 0;
  const std::string once = written(fromFile);
  fuzz::require(once == written(fromMemory) && once == written(fromString),
                "all three ways of reading give one document");
  elmx_error again = ELMX_OK;
  const Movrel::Project project(once, &again);
  fuzz::require(again == ELMX_OK, "what was written reads back");
  fuzz::require(written(project) == once, "what was read back is written as it was");
  askMap(fromFile, file.path());
  return 0;
}
