#include <crossreference/XRFDataBaseInterface.h>
#include <hpi/HPICommonUtils.h>
#include <python/Bindings.h>
#include <python/LimitsArgument.h>
#include <python/Text.h>
#include <tools/xrf/EmulationCheck.h>

#include <filesystem>
#include <fmt/format.h>
#include <memory>
#include <pybind11/stl/filesystem.h>
#include <utility>

namespace xrf::python {

namespace py = pybind11;

using XRF::HardwareEmulationMap;

namespace {

// The block design's name, which the library asks for by a function of the process, is that of the
// map that asks; where none does, what the host had said before.
const std::string*& askedName() {
  thread_local const std::string* name = nullptr;
  return name;
}

void provideNames() {
  HPICommonUtils::setBDDesignNameProvider([before = HPICommonUtils::getBDDesignName()] {
    const std::string* name = askedName();
    return name == nullptr ? before : *name;
  });
}

class NameScope {
 public:
  explicit NameScope(const std::string& name) : m_before(std::exchange(askedName(), &name)) {}
  ~NameScope() { askedName() = m_before; }
  NameScope(const NameScope&) = delete;
  NameScope& operator=(const NameScope&) = delete;

 private:
  const std::string* m_before;
};

class EmulationMap {
 public:
  EmulationMap(const std::filesystem::path& path, Text blockDesign,
               const XRF_RTL2LL::Limits& limits)
      : m_blockDesign(std::move(blockDesign.value)) {
    const std::string file = path.string();
    const py::gil_scoped_release released;
    const MetadataDocument document = readMetadata(file, limits);
    requireMappable(document, file);
    const NameScope scope(m_blockDesign);
    m_map = std::make_unique<HardwareEmulationMap>(document.project);
  }

  const std::string& blockDesign() const { return m_blockDesign; }

  template <class Ask>
  auto ask(Ask question) const {
    const NameScope scope(m_blockDesign);
    return question(*m_map);
  }

 private:
  std::string m_blockDesign;
  std::unique_ptr<HardwareEmulationMap> m_map;
};

[[noreturn]] void raiseKeyError(const char* what, const std::string& name) {
  PyErr_SetObject(PyExc_KeyError, toPython(fmt::format("no {} is named '{}'", what, name)).ptr());
  throw py::error_already_set();
}

// How many compute units a kernel has; one without any lists them all the same.
int countUnits(HardwareEmulationMap& map, const std::string& kernel) {
  const int count = map.numComputeUnits(kernel);
  for (int i = 0; count == 0; ++i) {
    if (i == map.numKernels()) raiseKeyError("kernel", kernel);
    if (map.getKernelName(i) == kernel) break;
  }
  return count;
}

py::list kernelNames(const EmulationMap& self) {
  return self.ask([](HardwareEmulationMap& map) {
    py::list names;
    for (int i = 0; i < map.numKernels(); ++i) names.append(toPython(map.getKernelName(i)));
    return names;
  });
}

py::list computeUnits(const EmulationMap& self, const Text& kernel) {
  return self.ask([&](HardwareEmulationMap& map) {
    py::list units;
    const int count = countUnits(map, kernel.value);
    for (int i = 0; i < count; ++i) {
      py::dict unit;
      unit["name"] = toPython(map.computeUnitName(kernel.value, i));
      unit["start"] = toPython(map.breakFunctionStart(kernel.value, i));
      unit["end"] = toPython(map.breakFunctionEnd(kernel.value, i));
      units.append(std::move(unit));
    }
    return units;
  });
}

py::list arguments(const EmulationMap& self, const Text& kernel) {
  return self.ask([&](HardwareEmulationMap& map) {
    py::list made;
    countUnits(map, kernel.value);
    for (const XRF::KernelArgument& argument : map.arguments(kernel.value)) {
      py::dict row;
      row["name"] = toPython(argument.name);
      row["signal"] = toPython(argument.signal);
      row["emulation"] = toPython(argument.emulation);
      made.append(std::move(row));
    }
    return made;
  });
}

py::dict emulationDict(const EmulationMap& self) {
  py::list kernels;
  for (const py::handle& name : kernelNames(self)) {
    const auto kernel = name.cast<Text>();
    py::dict row;
    row["name"] = name;
    row["computeUnits"] = computeUnits(self, kernel);
    row["arguments"] = arguments(self, kernel);
    kernels.append(std::move(row));
  }
  py::dict made;
  made["kernels"] = std::move(kernels);
  return made;
}

using Type = py::class_<EmulationMap>;

void addQueries(Type& type) {
  const auto unit = [&](const char* name, auto function, const char* doc) {
    type.def(
        name,
        [function](const EmulationMap& self, const Text& kernel, int index) {
          return self.ask([&](HardwareEmulationMap& map) {
            const int count = countUnits(map, kernel.value);
            if (index < 0 || index >= count) {
              throw py::index_error(fmt::format("{} has {} compute units", kernel.value, count));
            }
            return Text{(map.*function)(kernel.value, index)};
          });
        },
        py::arg("kernel"), py::arg("compute_unit"), doc);
  };
  unit("break_function_start", &HardwareEmulationMap::breakFunctionStart,
       "Condition on which the simulator stops when a compute unit starts.");
  unit("break_function_end", &HardwareEmulationMap::breakFunctionEnd,
       "Condition on which the simulator stops when a compute unit ends.");
  unit("compute_unit_name", &HardwareEmulationMap::computeUnitName,
       "Instance name of a compute unit.");
  const auto variable = [&](const char* name, auto function, const char* doc) {
    type.def(
        name,
        [function](const EmulationMap& self, const Text& asked) {
          return self.ask([&](HardwareEmulationMap& map) {
            Text found{(map.*function)(asked.value)};
            if (found.value.empty()) raiseKeyError("variable", asked.value);
            return found;
          });
        },
        py::arg("name"), doc);
  };
  variable("show_variable", &HardwareEmulationMap::showVariable,
           "RTL signal of a kernel variable, looked up in the first kernel in name order.");
  variable("show_variable_hw_em", &HardwareEmulationMap::showVariableHwEm,
           "The same in the emulation netlist.");
}

}  // namespace

void bindEmulation(py::module_& module) {
  provideNames();
  Type type(module, "HardwareEmulationMap",
            "Kernels, compute units and argument signals of one compiled container.\n\n"
            "Read once from its metadata document. Iterating gives the kernels' names. A\n"
            "kernel or variable that it does not know is a KeyError.");
  type.def(
      py::init([](const std::filesystem::path& path, const Text& blockDesign,
                  const py::object& limits) {
        return std::make_unique<EmulationMap>(path, blockDesign, limitsOf(limits, Reads::Metadata));
      }),
      py::arg("path"), py::arg("block_design") = Text{}, py::kw_only(),
      py::arg("limits") = py::none(),
      "Reads the document; block_design names the block design that holds the kernels. A "
      "document that\nis bad or holds no kernel raises xrf.Error. The limits are those whose names "
      "begin with xml.");
  type.def_property_readonly(
      "block_design", [](const EmulationMap& self) { return Text{self.blockDesign()}; },
      "Name of the block design.");
  type.def_property_readonly("kernels", kernelNames, "The kernels' names in document order.");
  type.def("compute_units", computeUnits, py::arg("kernel"),
           "The compute units of a kernel: name, and the conditions start and end.");
  type.def("arguments", arguments, py::arg("kernel"),
           "The arguments of a kernel: name, signal in the RTL, and in the emulation netlist.");
  addQueries(type);
  type.def("to_dict", emulationDict, "All of it, with the keys of `xrf emu --json`.");
  type.def("__len__", [](const EmulationMap& self) { return kernelNames(self).size(); });
  type.def("__iter__", [](const EmulationMap& self) { return py::iter(kernelNames(self)); });
  type.def("__repr__", [](const EmulationMap& self) {
    return fmt::format("<xrf.HardwareEmulationMap: {} kernels>", kernelNames(self).size());
  });
  type.def("__reduce__", [](const py::object& self) {
    const py::object make = py::module_::import("builtins").attr("dict");
    return py::make_tuple(make, py::make_tuple(self.attr("to_dict")()));
  });
}

}  // namespace xrf::python
