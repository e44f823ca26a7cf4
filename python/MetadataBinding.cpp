#include <python/Bindings.h>
#include <python/ElementConversion.h>
#include <python/Elements.h>
#include <python/LimitsArgument.h>
#include <python/Text.h>
#include <tools/xrf/MetadataDocument.h>

#include <filesystem>
#include <fmt/format.h>
#include <pybind11/stl/filesystem.h>

namespace xrf::python {

namespace py = pybind11;

namespace {

py::tuple faultOf(const lmx60::s_debug_error& fault) {
  return py::make_tuple(static_cast<int>(fault.code),
                        fault.severity == lmx60::ELMX_ERROR ? "error" : "warning", fault.line,
                        fault.column, toPython(fault.element), toPython(fault.message));
}

// The project, or None where an error kept it from being read, and the faults.
py::tuple resultOf(const MetadataDocument& document) {
  py::list faults;
  bool good = true;
  for (const lmx60::s_debug_error& fault : document.faults) {
    faults.append(faultOf(fault));
    good = good && fault.severity != lmx60::ELMX_ERROR;
  }
  const py::object project =
      good ? elements::toPython(document.project, 0) : py::object(py::none());
  return py::make_tuple(project, std::move(faults));
}

py::tuple read(const std::filesystem::path& path, const py::object& limits) {
  const XRF_RTL2LL::Limits wanted = limitsOf(limits, Reads::Metadata);
  const MetadataDocument document = [&] {
    const py::gil_scoped_release released;
    return readMetadata(path.string(), wanted);
  }();
  return resultOf(document);
}

py::tuple parse(const std::string& text, const py::object& limits) {
  const XRF_RTL2LL::Limits wanted = limitsOf(limits, Reads::Metadata);
  const MetadataDocument document = [&] {
    const py::gil_scoped_release released;
    return parseMetadata(text, wanted);
  }();
  return resultOf(document);
}

Movrel::Project projectOf(const py::object& object) {
  Movrel::Project project;
  elements::require(object, "Project", "the document");
  elements::fromPython(object, project, 0);
  return project;
}

void requireWritten(lmx60::elmx_error error, const lmx60::s_debug_error& fault,
                    const std::string& file) {
  if (error == lmx60::ELMX_OK) return;
  throw Failure(fmt::format("{} (code {})", fault.message, static_cast<int>(fault.code)), file);
}

void write(const py::object& object, const std::filesystem::path& path) {
  const Movrel::Project project = projectOf(object);
  const py::gil_scoped_release released;
  lmx60::s_debug_error fault;
  const std::string file = path.string();
  requireWritten(project.Marshal(file.c_str(), &fault), fault, file);
}

std::string textOf(const py::object& object) {
  const Movrel::Project project = projectOf(object);
  lmx60::s_debug_error fault;
  std::string text;
  requireWritten(project.Marshal(&text, &fault), fault, {});
  return text;
}

}  // namespace

void bindMetadata(py::module_& module) {
  module.def("metadata_read", read, py::arg("path"), py::arg("limits"));
  module.def("metadata_parse", parse, py::arg("text"), py::arg("limits"));
  module.def("metadata_write", write, py::arg("project"), py::arg("path"));
  module.def("metadata_text", textOf, py::arg("project"));
}

}  // namespace xrf::python
