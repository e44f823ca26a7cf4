#include <python/Bindings.h>
#include <python/Guest.h>

// Checks take the macro's own variables for ours.
// NOLINTNEXTLINE
PYBIND11_MODULE(_xrf, module) {
  module.doc() = "The compiled half of xrf; use it through the package.";
  module.attr("__version__") = XRF_VERSION;
  xrf::python::installHandlers();
  xrf::python::bindErrors();
  xrf::python::bindBits(module);
  xrf::python::bindSignals(module);
  xrf::python::bindModules(module);
  xrf::python::bindDesigns(module);
  xrf::python::bindEmulation(module);
  xrf::python::bindMetadata(module);
}
