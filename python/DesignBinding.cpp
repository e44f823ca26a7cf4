#include <python/Bindings.h>
#include <python/Handles.h>
#include <python/LimitsArgument.h>
#include <python/ModuleBinding.h>
#include <python/RegisterTable.h>
#include <python/Reports.h>
#include <python/Text.h>
#include <python/Watch.h>
#include <python/Words.h>
#include <tools/xrf/NameReading.h>
#include <tools/xrf/Search.h>

#include <filesystem>
#include <fmt/format.h>
#include <optional>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace xrf::python {

namespace py = pybind11;

using XRF_RTL2LL::EdifView;
using XRF_RTL2LL::RegisterBit;

namespace {

using Path = std::filesystem::path;
using MaybePath = std::optional<Path>;
// Shared by all handles of a design, so that the last of them frees it.
using DesignClass = py::class_<OpenDesign, std::shared_ptr<OpenDesign>>;

std::string textOf(const MaybePath& path) { return path ? path->string() : std::string(); }

std::shared_ptr<OpenDesign> read(const DesignFiles& files, const DesignReading& how,
                                 const py::object& progress) {
  Watch watch(progress);
  const py::gil_scoped_release released;
  return OpenDesign::read(files, how, [&watch](const char* phase, auto done, auto total) {
    watch.report(phase, done, total);
  });
}

std::shared_ptr<OpenDesign> build(const Path& rtl, const Path& synth, const MaybePath& locations,
                                  const MaybePath& log, const std::string& matching,
                                  const py::object& limits, const py::object& progress) {
  return read({rtl.string(), synth.string(), {}, textOf(locations), textOf(log)},
              {matchingOf(matching), limitsOf(limits, Reads::Netlists)}, progress);
}

std::shared_ptr<OpenDesign> load(const Path& path, const MaybePath& locations, const MaybePath& log,
                                 const std::string& matching, const py::object& limits,
                                 const py::object& progress) {
  return read({{}, {}, path.string(), textOf(locations), textOf(log)},
              {matchingOf(matching), limitsOf(limits, Reads::CrossReference)}, progress);
}

[[noreturn]] void raiseKeyError(const std::string& name, EdifView view, const char* what,
                                const std::string& hint = {}) {
  const std::string text =
      fmt::format("no {} of the {} view is named '{}'{}", what, wordOf(view), name, hint);
  PyErr_SetObject(PyExc_KeyError, toPython(text).ptr());
  throw py::error_already_set();
}

// What a plain name stands for, as the command understands it.
SearchResult lookUp(const Opened& self, const std::string& name, EdifView view) {
  if (hasWildcard(name)) return {};
  return search(self->design(), {name}, {{view}, true, false});
}

SignalHandle signalOf(const Opened& self, const Text& name, const std::string& viewWord) {
  const EdifView view = viewOf(viewWord);
  const SearchResult found = lookUp(self, name.value, view);
  for (const SignalHit& hit : found.signals) {
    const bool whole = hit.lsb == hit.signal->getLsb() && hit.msb == hit.signal->getMsb();
    if (whole) return {self, view, hit.signal};
  }
  raiseKeyError(name.value, view, "signal",
                found.signals.empty() ? "" : "; it names a bit, which bit() gives");
}

BitHandle bitOf(const Opened& self, const Text& name, const std::string& viewWord) {
  const EdifView view = viewOf(viewWord);
  const SearchResult found = lookUp(self, name.value, view);
  for (const SignalHit& hit : found.signals) {
    if (hit.lsb == hit.msb) return {{self, view, hit.signal}, hit.lsb};
  }
  raiseKeyError(
      name.value, view, "single bit",
      found.signals.empty() ? "" : "; it names a signal of several, which signal() gives");
}

ModuleHandle moduleOf(const Opened& self, const Text& name, const std::string& viewWord) {
  const EdifView view = viewOf(viewWord);
  for (const ModuleHit& hit : lookUp(self, name.value, view).modules) {
    return {self, view, hit.module};
  }
  raiseKeyError(name.value, view, "module");
}

std::vector<EdifView> viewsOf(const std::optional<std::string>& word) {
  if (!word) return {XRF_RTL2LL::RTL, XRF_RTL2LL::SYNTH};
  return {viewOf(*word)};
}

py::list find(const Opened& self, const py::args& names, const std::optional<std::string>& view,
              bool regex, bool hidden, std::optional<bool> located) {
  std::vector<std::string> asked;
  for (const py::handle& name : names) {
    if (!py::isinstance<py::str>(name)) throw py::type_error("each name must be a str");
    asked.push_back(name.cast<Text>().value);
  }
  py::list made;
  for (const SignalHit& hit :
       search(self->design(), asked, {viewsOf(view), hidden, regex}).signals) {
    for (std::uint64_t next = std::uint64_t{hit.msb} + 1; next > hit.lsb; --next) {
      BitHandle bit{{self, hit.view, hit.signal}, static_cast<unsigned>(next - 1)};
      if (!located || bit.isLocated() == *located) made.append(std::move(bit));
    }
  }
  return made;
}

py::object top(const Opened& self, const std::string& view) {
  XRF_RTL2LL::Module* module = self->top(viewOf(view));
  if (module == nullptr) return py::none();
  return py::cast(ModuleHandle{self, viewOf(view), module});
}

// The iterator that the method of the view's top gives; an empty one where there is no view.
py::object overTree(const Opened& self, const char* method, const std::string& view, bool hidden) {
  const py::object first = top(self, view);
  if (first.is_none()) return py::iter(py::tuple());
  return first.attr(method)(py::arg("hidden") = hidden);
}

py::list bitsOf(const Opened& self, const std::vector<RegisterBit>& registers) {
  py::list made;
  for (const RegisterBit& one : registers) {
    made.append(BitHandle{{self, XRF_RTL2LL::RTL, one.signal}, one.index});
  }
  return made;
}

py::list registersOf(const Opened& self, const Text& name) {
  const auto found = self->design().registersOf(name.value);
  if (!found) raiseKeyError(name.value, XRF_RTL2LL::SYNTH, "net or instance");
  return bitsOf(self, *found);
}

py::dict designDict(const Opened& self, bool hidden) {
  py::dict made;
  for (const EdifView view : {XRF_RTL2LL::RTL, XRF_RTL2LL::SYNTH}) {
    XRF_RTL2LL::Module* module = self->top(view);
    made[wordOf(view)] = module == nullptr ? py::object(py::none())
                                           : toDict(ModuleHandle{self, view, module}, hidden);
  }
  return made;
}

std::string nameOf(const OpenDesign& self) {
  for (const EdifView view : {XRF_RTL2LL::RTL, XRF_RTL2LL::SYNTH}) {
    const XRF_RTL2LL::Module* module = self.top(view);
    if (module != nullptr) return module->getName();
  }
  return {};
}

void addReading(DesignClass& type) {
  type.def_static(
      "build", build, py::arg("rtl"), py::arg("synth"), py::kw_only(),
      py::arg("logic_location") = py::none(), py::arg("log") = py::none(),
      py::arg("matching") = "extended", py::arg("limits") = py::none(),
      py::arg("progress") = py::none(),
      "Reads the elaborated and the synthesized netlist (EDIF), then the locations of the\n"
      "implemented design and the synthesis log.\n\n"
      "limits changes what the files may ask for, such as {'signal_width': 4096}; the names are "
      "in\n"
      "types.Limits.\n\n"
      "progress(phase, done, total) is called now and then; done and total count bytes, and total\n"
      "is 0 where it is not known. What it raises ends the read and comes out of this call. Other\n"
      "threads run meanwhile. A bad file raises xrf.Error.");
  type.def_static(
      "load", load, py::arg("path"), py::kw_only(), py::arg("logic_location") = py::none(),
      py::arg("log") = py::none(), py::arg("matching") = "extended", py::arg("limits") = py::none(),
      py::arg("progress") = py::none(),
      "Reads a cross-reference file, then the locations and the log of another implementation,\n"
      "where they are given. See build.");
  type.def(
      "save",
      [](const OpenDesign& self, const Path& path, bool hideHidden) {
        self.save(path.string(), hideHidden);
      },
      py::arg("path"), py::kw_only(), py::arg("hide_hidden") = false,
      "Writes a cross-reference file, which appears only when it is complete. hide_hidden leaves\n"
      "out cells of registers and logic.");
  type.def_property_readonly(
      "warnings",
      [](const OpenDesign& self) {
        py::list made;
        for (const std::string& text : self.warnings()) made.append(toPython(text));
        return made;
      },
      "What the reading had to warn of, in order.");
}

void addLookUps(DesignClass& type) {
  type.def("signal", signalOf, py::arg("name"), py::arg("view") = "rtl",
           "The signal of a hierarchical name, which may leave out the top. KeyError if there is "
           "none.");
  type.def("bit", bitOf, py::arg("name"), py::arg("view") = "rtl",
           "The bit of a name as written in RTL: u/cnt[3], u/mem[3][5]. KeyError if it names none "
           "or several.");
  type.def("module", moduleOf, py::arg("name"), py::arg("view") = "rtl",
           "The module of a hierarchical name, which may leave out the top. KeyError if there is "
           "none.");
  type.def("find", find, py::kw_only(), py::arg("view") = py::none(), py::arg("regex") = false,
           py::arg("hidden") = false, py::arg("located") = py::none(),
           "The bits that names stand for, as `xrf find` finds them: * and ? match anything, with\n"
           "regex the names are regular expressions. Looks in both views unless one is named;\n"
           "located=True or False leaves out the others; hidden lets * match cells, too.");
  type.def(
      "registers_at",
      [](const Opened& self, unsigned frame, unsigned offset, unsigned slr) {
        return bitsOf(self, self->design().registersAt(frame, offset, slr));
      },
      py::arg("frame"), py::arg("offset"), py::arg("slr") = 0,
      "The register bits of the RTL that live at a place; several where registers were merged.");
  type.def("registers_of", registersOf, py::arg("name"),
           "The register bits of the RTL behind a name of the synthesized netlist. KeyError if it "
           "has no such name.");
}

void addTrees(DesignClass& type) {
  type.def("top", top, py::arg("view") = "rtl", "The top module of a view, or None.");
  type.def(
      "modules",
      [](const Opened& self, const std::string& view, bool hidden) {
        return overTree(self, "walk", view, hidden);
      },
      py::arg("view") = "rtl", py::kw_only(), py::arg("hidden") = false,
      "All modules of a view, from the top down in name order; with hidden, cells too.");
  type.def(
      "signals",
      [](const Opened& self, const std::string& view, bool hidden) {
        return overTree(self, "walk_signals", view, hidden);
      },
      py::arg("view") = "rtl", py::kw_only(), py::arg("hidden") = false,
      "All signals of a view's modules.");
  type.def("__iter__", [](const Opened& self) { return overTree(self, "walk", "rtl", false); });
  type.def("to_dict", designDict, py::kw_only(), py::arg("hidden") = false,
           "Both views, each as the dictionary of its top module or None.");
}

void addTables(DesignClass& type) {
  type.def("registers", registerRows,
           "The register bits of the RTL in name order, a dictionary each: name as written in RTL, "
           "signal, index, kind, frame, offset and slr where it is located, value.");
  type.def(
      "registers_numpy", registerArray,
      "The same as a structured array, and the list of the signals' full names, which the\n"
      "column signal numbers. frame, offset and slr are 0 where kind is not 'STATE'; value is\n"
      "0 or 1 for a constant, else -1. Needs numpy.");
  type.def(
      "registers_pandas",
      [](const py::object& self) {
        return py::module_::import("xrf._pandas").attr("register_frame")(self);
      },
      "The same as a DataFrame; what is not known is missing in it. Needs pandas.");
}

}  // namespace

void bindDesigns(py::module_& module) {
  DesignClass type(module, "Design",
                   "One design: where the registers of its RTL live in the device.\n\n"
                   "Made by Design.build or Design.load, and complete from then on. Iterating "
                   "gives the modules of\nthe RTL. Pickling gives the dictionary of to_dict.");
  addReading(type);
  addLookUps(type);
  addTrees(type);
  addTables(type);
  type.def("coverage", coverageDict,
           "How many register bits of the RTL are located, constant, merged, unread and unknown, "
           "in all and by module.");
  type.def_property_readonly("location_report", locationDict,
                             "What became of the lines of the location file.");
  type.def_property_readonly("log_report", logDict, "What became of the lines of the log.");
  type.def("__str__",
           [](const OpenDesign& self) { return Text{nameOf(self) + ": " + coverageText(self)}; });
  type.def("__repr__",
           [](const OpenDesign& self) { return Text{"<xrf.Design " + nameOf(self) + ">"}; });
  type.def("__reduce__", [](const py::object& self) {
    const py::object make = py::module_::import("builtins").attr("dict");
    return py::make_tuple(make, py::make_tuple(self.attr("to_dict")()));
  });
  type.def("__copy__", [](py::object self) { return self; });
  type.def(
      "__deepcopy__", [](py::object self, const py::object&) { return self; }, py::arg("memo"));
}

}  // namespace xrf::python
