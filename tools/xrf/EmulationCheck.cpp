#include <crossreference/XRFDataBaseInterface.h>
#include <tools/xrf/EmulationCheck.h>
#include <tools/xrf/MetadataDocument.h>

namespace xrf {

using XRF::ControllingConnection;
using XRF::HardwareEmulationMap;

void requireMappable(const std::string& file, const XRF_RTL2LL::Limits& limits) {
  const MetadataDocument document = readMetadata(file, limits);
  requireGood(document, file);
  switch (HardwareEmulationMap::controllingConnection(document.project)) {
    case ControllingConnection::NotSought:
      throw Failure("the first core of the first device lists no kernel", file);
    case ControllingConnection::Endless:
      throw Failure(
          "the core's first connection does not control its kernels: it leads neither to the core "
          "nor to a port S_AXI_CONTROL",
          file);
    case ControllingConnection::Absent:
    case ControllingConnection::Found:
      break;
  }
}

}  // namespace xrf
