#include "Kernels.h"

#include "Guest.h"
#include <crossreference/XRFDataBaseInterface.h>
#include <hpi/HPICommonUtils.h>
#include <ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h>

#include <cstdio>

namespace {

// The map reads in silence, and never comes back from a document whose first connection controls
// nothing; so the document is looked at first.
void requireUsable(const std::string& file) {
  lmx60::elmx_error error = lmx60::ELMX_OK;
  lmx60::s_debug_error fault;
  const Movrel::Project project(file.c_str(), &error, &fault);
  if (error != lmx60::ELMX_OK) throw BadFile(fault.message, file, fault.line);
  switch (XRF::HardwareEmulationMap::controllingConnection(project)) {
    case XRF::ControllingConnection::NotSought:
    case XRF::ControllingConnection::Endless:
      throw BadFile("it does not tell what controls its kernels", file, 0);
    case XRF::ControllingConnection::Absent:
    case XRF::ControllingConnection::Found:
      break;
  }
}

}  // namespace

void showKernels(const std::string& metadataFile, const std::string& blockDesign) {
  requireUsable(metadataFile);
  HPICommonUtils::setBDDesignName(blockDesign);
  XRF::HardwareEmulationMap map(metadataFile);
  for (int index = 0; index < map.numKernels(); ++index) {
    const std::string kernel = map.getKernelName(index);
    std::printf("kernel %s\n", kernel.c_str());
    for (int unit = 0; unit < map.numComputeUnits(kernel); ++unit) {
      std::printf("  %s starts when%s\n", map.computeUnitName(kernel, unit).c_str(),
                  map.breakFunctionStart(kernel, unit).c_str());
    }
    for (const XRF::KernelArgument& argument : map.arguments(kernel)) {
      std::printf("  %s is %s\n", argument.name.c_str(), argument.signal.c_str());
    }
  }
}
