#include <crossreference/XRFDataBaseInterface.h>
#include <tools/xrf/EmulationCheck.h>

namespace xrf {

using XRF::ControllingConnection;
using XRF::HardwareEmulationMap;

void requireMappable(const MetadataDocument& document, const std::string& file) {
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
