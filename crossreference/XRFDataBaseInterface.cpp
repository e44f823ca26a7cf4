#include <crossreference/ReservedWords.h>
#include <crossreference/XRFDataBaseInterface.h>
#include <hpi/HPICommonUtils.h>
#include <lmx60/Source.h>
#include <lmx60/XmlReader.h>
#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>

#include <algorithm>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace XRF {

namespace {

template <class Words>
bool contains(const Words& words, const std::string& name) {
  return std::find(words.begin(), words.end(), name) != words.end();
}

// The RTL port of an argument has the argument's name, altered where that is a reserved word.
void getValidRtlPortName_(const std::string& name, std::string& port) {
  port = name;
  if (contains(verilog_key_words, name) || contains(vhdl_key_words, name)) port += "_r";
}

std::string pathPrefix(const std::string& instance) {
  return "/" + HPICommonUtils::getBDDesignName() + "/OCL_Region_0/" + instance + "/inst/";
}

std::string condition(const std::string& prefix, const char* signal) {
  return " == " + prefix + signal + " 1'b1";
}

std::string emulationPath(std::string path) {
  constexpr std::string_view rtl = "/inst/";
  constexpr std::string_view emulation = "/U0/";
  for (std::size_t at = path.find(rtl); at != std::string::npos; at = path.find(rtl)) {
    path.replace(at, rtl.size(), emulation);
  }
  return path;
}

std::string entryOf(const std::vector<std::string>& list, int index) {
  const bool known = index >= 0 && static_cast<std::size_t>(index) < list.size();
  return known ? list[static_cast<std::size_t>(index)] : std::string();
}

// The core that counts, or null.
const Movrel::Core* coreOf(const Movrel::Project& project) {
  if (project.SizePlatform() == 0) return nullptr;
  const Movrel::Platform& platform = project.GetPlatform(0);
  if (platform.SizeDevice() == 0) return nullptr;
  const Movrel::Device& device = platform.GetDevice(0);
  return device.SizeCore() == 0 ? nullptr : &device.GetCore(0);
}

std::string orBraces(const std::string& text) { return text.empty() ? "{}" : text; }

bool controls(const Movrel::Connection& connection, const Movrel::Core& core) {
  return orBraces(connection.GetDstInst()) == core.GetName() ||
         orBraces(connection.GetDstPort()) == "S_AXI_CONTROL";
}

// The instance that controls the core's kernels; nothing for a core without connections. Never
// returns where the first connection does not control them.
std::optional<std::string> controllingInstance(const Movrel::Core& core) {
  while (core.SizeConnection() != 0) {
    const Movrel::Connection& connection = core.GetConnection(0);
    if (controls(connection, core)) return orBraces(connection.GetSrcInst());
  }
  return std::nullopt;
}

}  // namespace

HardwareEmulationMap::HardwareEmulationMap(std::string mappingFile)
    : HardwareEmulationMap(std::move(mappingFile), {}) {}

HardwareEmulationMap::HardwareEmulationMap(std::string mappingFile,
                                           const XRF_RTL2LL::Limits& limits)
    : m_mappingFile(std::move(mappingFile)) {
  analyzeMappingFile(limits);
}

HardwareEmulationMap::HardwareEmulationMap(const Movrel::Project& project) {
  if (const Movrel::Core* core = coreOf(project)) analyzeCore(*core);
}

void HardwareEmulationMap::analyzeMappingFile(const XRF_RTL2LL::Limits& limits) {
  try {
    // A document that cannot be read leaves the map empty, so its code does not matter; but want of
    // memory is no property of the document.
    lmx60::c_read_file source(m_mappingFile.c_str());
    lmx60::c_xml_reader reader(source);
    reader.set_limits(limits);
    lmx60::elmx_error error = lmx60::ELMX_OK;
    const Movrel::Project project(reader, &error);
    if (error == lmx60::ELMX_NO_MEMORY) throw std::bad_alloc();
    if (const Movrel::Core* core = coreOf(project)) analyzeCore(*core);
  } catch (...) {
    throw std::runtime_error("Failed to parse file " + m_mappingFile);
  }
}

void HardwareEmulationMap::analyzeCore(const Movrel::Core& core) {
  for (std::size_t index = 0; index < core.SizeKernel(); ++index) {
    analyzeKernel(core, core.GetKernel(index));
  }
}

void HardwareEmulationMap::analyzeKernel(const Movrel::Core& core, const Movrel::Kernel& kernel) {
  const std::string& name = kernel.GetName();
  m_kernelNames.push_back(name);
  std::vector<std::string> computeUnits;
  for (std::size_t index = 0; index < kernel.SizeInstance(); ++index) {
    computeUnits.push_back(kernel.GetInstance(index).GetName());
  }
  m_numComputeUnits[name] = static_cast<int>(computeUnits.size());
  m_computeUnits[name] = std::move(computeUnits);

  std::string prefix;
  std::vector<std::string> record(2);
  if (const std::optional<std::string> instance = controllingInstance(core)) {
    prefix = pathPrefix(*instance);
    record = {condition(prefix, "ap_start"), condition(prefix, "ap_done")};
  }
  for (std::size_t index = 0; index < kernel.SizeArg(); ++index) {
    const std::string& argument = kernel.GetArg(index).GetName();
    std::string port;
    getValidRtlPortName_(argument, port);
    record.push_back(argument);
    record.push_back(prefix + port);
  }
  m_kernelSignals[name] = std::move(record);
}

ControllingConnection HardwareEmulationMap::controllingConnection(const Movrel::Project& project) {
  const Movrel::Core* core = coreOf(project);
  if (core == nullptr || core->SizeKernel() == 0) return ControllingConnection::NotSought;
  if (core->SizeConnection() == 0) return ControllingConnection::Absent;
  return controls(core->GetConnection(0), *core) ? ControllingConnection::Found
                                                 : ControllingConnection::Endless;
}

std::string HardwareEmulationMap::breakFunctionStart(std::string kernel, int computeUnit) {
  return condition(pathPrefix(entryOf(m_computeUnits[kernel], computeUnit)), "ap_start");
}

std::string HardwareEmulationMap::breakFunctionEnd(std::string kernel, int computeUnit) {
  return condition(pathPrefix(entryOf(m_computeUnits[kernel], computeUnit)), "ap_done");
}

std::string HardwareEmulationMap::showVariable(std::string name) {
  if (m_kernelSignals.empty()) return {};
  const std::vector<std::string>& record = m_kernelSignals.begin()->second;
  std::string port;
  getValidRtlPortName_(name, port);
  for (std::size_t at = 2; at + 1 < record.size(); at += 2) {
    if (record[at] == port || record[at] == name) return record[at + 1];
  }
  return {};
}

std::string HardwareEmulationMap::showVariableHwEm(std::string name) {
  return emulationPath(static_cast<AccessDatabase*>(this)->showVariable(std::move(name)));
}

std::string HardwareEmulationMap::computeUnitName(std::string kernel, int computeUnit) {
  return entryOf(m_computeUnits[kernel], computeUnit);
}

std::string HardwareEmulationMap::getKernelName(int kernel) {
  return entryOf(m_kernelNames, kernel);
}

int HardwareEmulationMap::numComputeUnits(std::string kernel) {
  const auto found = m_numComputeUnits.find(kernel);
  return found == m_numComputeUnits.end() ? 0 : found->second;
}

int HardwareEmulationMap::numKernels() const { return static_cast<int>(m_kernelNames.size()); }

std::vector<KernelArgument> HardwareEmulationMap::arguments(const std::string& kernel) const {
  std::vector<KernelArgument> result;
  const auto found = m_kernelSignals.find(kernel);
  if (found == m_kernelSignals.end()) return result;
  const std::vector<std::string>& record = found->second;
  for (std::size_t at = 2; at + 1 < record.size(); at += 2) {
    result.push_back({record[at], record[at + 1], emulationPath(record[at + 1])});
  }
  return result;
}

void HardwareEmulationMap::dump() const {}

}  // namespace XRF
