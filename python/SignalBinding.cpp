#include <python/Bindings.h>
#include <python/BitBinding.h>
#include <python/Protocol.h>
#include <python/SignalBinding.h>
#include <python/Text.h>
#include <python/Words.h>

#include <fmt/format.h>

namespace xrf::python {

namespace py = pybind11;

using XRF_RTL2LL::Signal;

namespace {

// From the most significant bit down, or upward. A wide signal costs no list.
struct BitWalk {
  SignalHandle signal;
  bool upward = false;
  std::uint64_t left = signal.signal->getWidth();

  BitHandle next() {
    if (left == 0) throw py::stop_iteration();
    --left;
    const Signal& walked = *signal.signal;
    return {signal,
            static_cast<unsigned>(upward ? walked.getMsb() - left : walked.getLsb() + left)};
  }
};

BitHandle bitAt(const SignalHandle& self, std::int64_t index) {
  const Signal& signal = *self.signal;
  if (index < signal.getLsb() || index > signal.getMsb()) {
    throw py::index_error(fmt::format("{} has the bits {} to {}, not {}", signal.getFullName(),
                                      signal.getMsb(), signal.getLsb(), index));
  }
  return {self, static_cast<unsigned>(index)};
}

BitWalk bits(const SignalHandle& self) { return {self}; }

std::string withRange(const SignalHandle& self) {
  std::string name = self.signal->getFullName();
  if (self.signal->getMsb() != 0) {
    name += fmt::format("[{}:{}]", self.signal->getMsb(), self.signal->getLsb());
  }
  return name;
}

void addNames(py::class_<SignalHandle>& type) {
  type.def_property_readonly(
      "name", [](const SignalHandle& self) { return toPython(self.signal->getName()); },
      "The name within its module.");
  type.def_property_readonly(
      "full_name", [](const SignalHandle& self) { return Text{self.signal->getFullName()}; },
      "The hierarchical name: /top/u0/cnt.");
  type.def_property_readonly(
      "view", [](const SignalHandle& self) { return wordOf(self.view); }, "'rtl' or 'synth'.");
  type.def_property_readonly(
      "module",
      [](const SignalHandle& self) {
        return ModuleHandle{self.design, self.view, self.signal->getModule()};
      },
      "The module that holds it.");
}

void addShape(py::class_<SignalHandle>& type) {
  type.def_property_readonly(
      "direction", [](const SignalHandle& self) { return wordOf(self.signal->getKind()); },
      "'IN', 'OUT' or 'WIRE'.");
  type.def_property_readonly(
      "lsb", [](const SignalHandle& self) { return self.signal->getLsb(); }, "The lowest index.");
  type.def_property_readonly(
      "msb", [](const SignalHandle& self) { return self.signal->getMsb(); }, "The highest index.");
  type.def_property_readonly(
      "width", [](const SignalHandle& self) { return self.signal->getWidth(); },
      "How many bits it has; the same as len().");
  type.def_property_readonly(
      "hidden", [](const SignalHandle& self) { return self.signal->isHidden(); },
      "Whether a tool made it up.");
  type.def("__len__", [](const SignalHandle& self) { return self.signal->getWidth(); });
  type.def("__iter__", bits);
  type.def("__reversed__", [](const SignalHandle& self) { return BitWalk{self, true}; });
  type.def("__getitem__", bitAt, py::arg("index"));
}

}  // namespace

py::dict toDict(const SignalHandle& self) {
  py::list listed;
  BitWalk walk = bits(self);
  while (walk.left > 0) {
    const BitHandle handle = walk.next();
    py::dict row;
    row["index"] = handle.index;
    const XRF_RTL2LL::Bit* bit = handle.bit();
    if (bit != nullptr) row["id"] = bit->getId();
    addFacts(row, bit);
    listed.append(std::move(row));
  }
  py::dict made;
  made["view"] = wordOf(self.view);
  made["name"] = toPython(self.signal->getFullName());
  made["direction"] = wordOf(self.signal->getKind());
  made["lsb"] = self.signal->getLsb();
  made["msb"] = self.signal->getMsb();
  made["bits"] = std::move(listed);
  return made;
}

void bindSignals(py::module_& module) {
  py::class_<BitWalk>(module, "BitIterator", "The bits of a signal, most significant first.")
      .def("__iter__", [](py::object self) { return self; })
      .def("__next__", &BitWalk::next);
  py::class_<SignalHandle> type(
      module, "Signal",
      "A port or wire of one module.\n\n"
      "Iterating gives its bits, most significant first; signal[3] is the bit of index 3.");
  addNames(type);
  addShape(type);
  type.def(
      "to_dict", [](const SignalHandle& self) { return toDict(self); },
      "The signal with its bits, with the keys of `xrf find --json`.");
  type.def("__str__", [](const SignalHandle& self) { return Text{withRange(self)}; });
  type.def("__repr__", [](const SignalHandle& self) {
    return Text{fmt::format("<xrf.Signal {} ({}, {})>", withRange(self), wordOf(self.view),
                            wordOf(self.signal->getKind()))};
  });
  addProtocol(type, [](const SignalHandle& self) { return self.signal; });
}

}  // namespace xrf::python
