#include <python/Bindings.h>
#include <python/ModuleBinding.h>
#include <python/Protocol.h>
#include <python/SignalBinding.h>
#include <python/Text.h>
#include <python/Words.h>
#include <tools/xrf/ModuleWalk.h>
#include <tools/xrf/Search.h>

#include <fmt/format.h>

namespace xrf::python {

namespace py = pybind11;

using XRF_RTL2LL::Module;
using XRF_RTL2LL::Signal;

TreeWalk::TreeWalk(const ModuleHandle& top, bool hidden)
    : m_design(top.design), m_view(top.view), m_hidden(hidden), m_first(top.module) {}

void TreeWalk::enter(Module* module) { m_levels.push_back(module->getChildren(false).begin()); }

Module* TreeWalk::advance() {
  if (m_first != nullptr) {
    Module* module = std::exchange(m_first, nullptr);
    enter(module);
    return module;
  }
  while (!m_levels.empty()) {
    if (m_levels.back() == Children::iterator()) {
      m_levels.pop_back();
      continue;
    }
    Module* module = *m_levels.back()++;
    if (module->isHidden() && !m_hidden) continue;
    enter(module);
    return module;
  }
  return nullptr;
}

ModuleHandle TreeWalk::nextModule() {
  Module* module = advance();
  if (module == nullptr) throw py::stop_iteration();
  return {m_design, m_view, module};
}

SignalHandle TreeWalk::nextSignal() {
  for (;;) {
    if (m_signals != Signals::iterator()) {
      Signal* signal = *m_signals++;
      if (signal->isHidden() && !m_hidden) continue;
      return {m_design, m_view, signal};
    }
    const Module* module = advance();
    if (module == nullptr) throw py::stop_iteration();
    m_signals = module->getSignals(false).begin();
  }
}

namespace {

struct ModuleIterator {
  TreeWalk walk;
};

struct SignalIterator {
  TreeWalk walk;
};

py::list children(const ModuleHandle& self, bool hidden) {
  py::list made;
  for (Module* child : self.module->getChildren(false)) {
    if (hidden || !child->isHidden()) made.append(ModuleHandle{self.design, self.view, child});
  }
  return made;
}

py::list signals(const ModuleHandle& self, bool hidden) {
  py::list made;
  for (Signal* signal : self.module->getSignals(false)) {
    if (hidden || !signal->isHidden()) made.append(SignalHandle{self.design, self.view, signal});
  }
  return made;
}

py::object parent(const ModuleHandle& self) {
  Module* above = self.module->getParent();
  const bool isTop = above == nullptr || self.module == self.design->top(self.view);
  if (isTop) return py::none();
  return py::cast(ModuleHandle{self.design, self.view, above});
}

py::dict describe(const ModuleHandle& self, bool hidden) {
  py::list listed;
  for (const py::handle& signal : signals(self, hidden)) {
    listed.append(toDict(signal.cast<const SignalHandle&>()));
  }
  py::dict made;
  made["view"] = wordOf(self.view);
  made["name"] = toPython(fullName(*self.module));
  made["definition"] = toPython(self.module->getDefName());
  made["hidden"] = self.module->isHidden();
  made["signals"] = std::move(listed);
  made["children"] = py::list();
  return made;
}

void addNames(py::class_<ModuleHandle>& type) {
  type.def_property_readonly(
      "name", [](const ModuleHandle& self) { return toPython(self.module->getName()); },
      "The instance's name.");
  type.def_property_readonly(
      "full_name", [](const ModuleHandle& self) { return Text{fullName(*self.module)}; },
      "The hierarchical name: /top/u0.");
  type.def_property_readonly(
      "definition", [](const ModuleHandle& self) { return toPython(self.module->getDefName()); },
      "Name of the cell or entity that it is an instance of.");
  type.def_property_readonly(
      "view", [](const ModuleHandle& self) { return wordOf(self.view); }, "'rtl' or 'synth'.");
  type.def_property_readonly(
      "kind", [](const ModuleHandle& self) { return wordOf(self.module->getKind()); },
      "What the cell does: 'HIER' for a level of the hierarchy, 'REG', 'BUF', 'LOGIC', ...");
  type.def_property_readonly(
      "hidden", [](const ModuleHandle& self) { return self.module->isHidden(); },
      "Whether it is a cell of registers or logic rather than a level of the hierarchy.");
}

void addTree(py::class_<ModuleHandle>& type) {
  type.def_property_readonly("parent", parent, "The module around it; None for the top.");
  type.def("children", children, py::kw_only(), py::arg("hidden") = false,
           "The modules in it, in name order; with hidden, cells of registers and logic too.");
  type.def("signals", signals, py::kw_only(), py::arg("hidden") = false,
           "Its signals in name order; with hidden, those too that a tool made up.");
  type.def(
      "walk",
      [](const ModuleHandle& self, bool hidden) { return ModuleIterator{TreeWalk(self, hidden)}; },
      py::kw_only(), py::arg("hidden") = false, "It and all modules below it, in name order.");
  type.def("__iter__", [](const ModuleHandle& self) { return py::iter(signals(self, false)); });
}

}  // namespace

py::dict toDict(const ModuleHandle& self, bool hidden) {
  std::vector<py::dict> levels;
  py::dict top;
  const auto enter = [&](Module* module, std::size_t depth) {
    const bool listed = hidden || depth == 0 || !module->isHidden();
    if (!listed) return false;
    py::dict made = describe({self.design, self.view, module}, hidden);
    if (levels.empty()) {
      top = made;
    } else {
      levels.back()["children"].cast<py::list>().append(made);
    }
    levels.push_back(std::move(made));
    return true;
  };
  const auto leave = [&](Module* module, std::size_t depth) {
    if (hidden || depth == 0 || !module->isHidden()) levels.pop_back();
  };
  walkModules(self.module, enter, leave);
  return top;
}

void bindModules(py::module_& module) {
  py::class_<ModuleIterator>(module, "ModuleIterator", "The modules of a tree.")
      .def("__iter__", [](py::object self) { return self; })
      .def("__next__", [](ModuleIterator& self) { return self.walk.nextModule(); });
  py::class_<SignalIterator>(module, "SignalIterator", "The signals of a tree of modules.")
      .def("__iter__", [](py::object self) { return self; })
      .def("__next__", [](SignalIterator& self) { return self.walk.nextSignal(); });
  py::class_<ModuleHandle> type(
      module, "Module", "One instance of the design hierarchy.\n\nIterating gives its signals.");
  addNames(type);
  addTree(type);
  type.def(
      "walk_signals",
      [](const ModuleHandle& self, bool hidden) { return SignalIterator{TreeWalk(self, hidden)}; },
      py::kw_only(), py::arg("hidden") = false, "The signals of all modules of `walk`.");
  type.def(
      "to_dict", [](const ModuleHandle& self, bool hidden) { return toDict(self, hidden); },
      py::kw_only(), py::arg("hidden") = false,
      "The module with its signals and all modules below it.");
  type.def("__str__", [](const ModuleHandle& self) { return Text{fullName(*self.module)}; });
  type.def("__repr__", [](const ModuleHandle& self) {
    return Text{fmt::format("<xrf.Module {}: {} ({})>", fullName(*self.module),
                            self.module->getDefName(), wordOf(self.view))};
  });
  addProtocol(type, [](const ModuleHandle& self) { return self.module; });
}

}  // namespace xrf::python
