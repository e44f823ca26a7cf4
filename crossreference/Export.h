#pragma once

#include <crossreference/Module.h>
#include <crossreference/Types.h>
#include <support/Api.h>

#include <string>

namespace XRF_RTL2LL {

/// The writer of cross-reference files.
class XRF_API Export {
 public:
  /// Writes the current model's bits and the trees below the two tops, either of which may be null,
  /// to `path`. Hidden signals and modules are left out unless `showHidden`. Returns 0. A path that
  /// cannot be opened and a family that has no name in the format are fatal, silently; a write that
  /// fails is fatal.
  static int exportDesign(Family family, Module* rtlTop, Module* synthTop, std::string path,
                          bool showHidden);
};

}  // namespace XRF_RTL2LL
