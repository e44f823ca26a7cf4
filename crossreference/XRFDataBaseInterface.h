#pragma once

#include <support/Api.h>
#include <support/Limits.h>

#include <map>
#include <string>
#include <vector>

namespace Movrel {
class Core;
class Kernel;
class Project;
}  // namespace Movrel

namespace XRF {

/// What a debugger that drives an RTL simulation asks of the kernels' layout.
class XRF_API AccessDatabase {
 public:
  /// Condition on which the simulator stops when a compute unit of a kernel starts, ends.
  virtual std::string breakFunctionStart(std::string kernel, int computeUnit) = 0;
  virtual std::string breakFunctionEnd(std::string kernel, int computeUnit) = 0;
  /// RTL signal of a kernel variable, and the same in the emulation netlist; empty if there is
  /// none.
  virtual std::string showVariable(std::string name) = 0;
  virtual std::string showVariableHwEm(std::string name) = 0;
  /// Instance name of a compute unit.
  virtual std::string computeUnitName(std::string kernel, int computeUnit) = 0;
  /// Name of a kernel by its position in the document.
  virtual std::string getKernelName(int kernel) = 0;
  /// How many compute units a kernel has; 0 for an unknown one.
  virtual int numComputeUnits(std::string kernel) = 0;

 protected:
  AccessDatabase() = default;
  AccessDatabase(const AccessDatabase&) = default;
  AccessDatabase& operator=(const AccessDatabase&) = default;
  ~AccessDatabase() = default;
};

/// An argument of a kernel and the simulator signals that carry it.
struct KernelArgument {
  std::string name;
  std::string signal;     ///< in the RTL
  std::string emulation;  ///< in the emulation netlist
};

/// What the search for the connection that controls a core's kernels comes to.
enum class ControllingConnection {
  NotSought,  ///< the document has no kernel
  Absent,     ///< the core has no connection; conditions and prefixes stay empty
  Found,
  Endless  ///< the first connection controls nothing, and the search looks at no other one
};

/// Kernels, compute units and argument signals of one compiled container, read from its metadata
/// document once and answered from memory.
///
///     HPICommonUtils::setBDDesignName("bd");
///     XRF::HardwareEmulationMap map("movrel.xml");
///     map.showVariable("a");   // "/bd/OCL_Region_0/krnl_1/inst/a"
///
/// Only the first core of the first device of the first platform counts. A document that cannot be
/// read gives an empty map, without a word; ask `Movrel::Project` for its faults. Queries never
/// fail: what is unknown is an empty text or 0.
///
/// The search for the controlling connection looks at the core's first connection alone, again and
/// again until that one controls the kernels. On a document where it does not, the constructor
/// never returns; `controllingConnection` tells before.
class XRF_API HardwareEmulationMap final : public AccessDatabase {
 public:
  /// Reads the document. Raises std::runtime_error, "Failed to parse file " and the file's name,
  /// for any exception met on the way.
  explicit HardwareEmulationMap(std::string mappingFile);
  /// The same for a document that may ask for what these limits allow.
  HardwareEmulationMap(std::string mappingFile, const XRF_RTL2LL::Limits& limits);
  /// The same for a document that was read before, and is not needed any more afterwards.
  explicit HardwareEmulationMap(const Movrel::Project& project);

  std::string breakFunctionStart(std::string kernel, int computeUnit) override;
  std::string breakFunctionEnd(std::string kernel, int computeUnit) override;
  /// Looks in the record of the first kernel in name order, whichever kernel runs.
  std::string showVariable(std::string name) override;
  std::string showVariableHwEm(std::string name) override;
  std::string computeUnitName(std::string kernel, int computeUnit) override;
  std::string getKernelName(int kernel) override;
  int numComputeUnits(std::string kernel) override;

  /// How many kernels the document lists, those of one name counted each.
  int numKernels() const;
  /// The arguments of a kernel in document order, each with the signals of the kernel's own record;
  /// none for an unknown kernel.
  std::vector<KernelArgument> arguments(const std::string& kernel) const;
  /// Does nothing.
  void dump() const;

  /// What the constructor's search would come to on a document.
  static ControllingConnection controllingConnection(const Movrel::Project& project);

 private:
  void analyzeMappingFile(const XRF_RTL2LL::Limits& limits);
  void analyzeCore(const Movrel::Core& core);
  void analyzeKernel(const Movrel::Core& core, const Movrel::Kernel& kernel);

  std::string m_mappingFile;
  std::map<std::string, int> m_numComputeUnits;
  std::map<std::string, std::vector<std::string>> m_kernelSignals;
  std::map<std::string, std::vector<std::string>> m_computeUnits;
  std::vector<std::string> m_kernelNames;
};

}  // namespace XRF
