#include <python/Bindings.h>
#include <python/BitBinding.h>
#include <python/Protocol.h>
#include <python/Text.h>
#include <python/Words.h>

#include <fmt/format.h>

namespace xrf::python {

namespace py = pybind11;

using XRF_RTL2LL::Bit;

namespace {

using Place = unsigned (Bit::*)() const;

template <Place place>
py::object placeOrNone(const BitHandle& self) {
  if (!self.isLocated()) return py::none();
  return py::int_((self.bit()->*place)());
}

py::object idOf(const BitHandle& self) {
  const Bit* bit = self.bit();
  return bit == nullptr ? py::object(py::none()) : py::int_(bit->getId());
}

py::dict bitDict(const BitHandle& self) {
  py::dict row;
  row["view"] = wordOf(self.signal.view);
  row["name"] = toPython(self.signal.signal->getFullName());
  row["index"] = self.index;
  row["direction"] = wordOf(self.signal.signal->getKind());
  addFacts(row, self.bit());
  return row;
}

std::string writtenName(const BitHandle& self) {
  if (self.bit() == nullptr) return nameOf(self);
  return self.signal.design->design().writtenName({self.signal.signal, self.index});
}

}  // namespace

std::string nameOf(const BitHandle& handle) {
  std::string name = handle.signal.signal->getFullName();
  if (handle.signal.signal->getMsb() != 0) name += fmt::format("[{}]", handle.index);
  return name;
}

std::string placeOf(const BitHandle& handle) {
  const Bit* bit = handle.bit();
  if (!handle.isLocated()) {
    const char* kind = kindOf(bit);
    const bool constant = bit != nullptr && bit->getKind() == Bit::CNST;
    return constant ? fmt::format("{} {}", kind, valueOf(bit)) : kind;
  }
  return fmt::format("frame 0x{:08x}, offset {}, slr {}", bit->getStateLoc1(), bit->getStateLoc2(),
                     bit->getStateLoc3());
}

void addFacts(py::dict& row, const Bit* bit) {
  row["kind"] = kindOf(bit);
  if (bit == nullptr) return;
  if (bit->getKind() == Bit::STATE) {
    row["frame"] = bit->getStateLoc1();
    row["offset"] = bit->getStateLoc2();
    row["slr"] = bit->getStateLoc3();
  }
  row["value"] = toPython(valueOf(bit));
}

void bindBits(py::module_& module) {
  py::class_<BitHandle> type(
      module, "Bit",
      "One bit of a signal, and where its value sits in the device.\n\n"
      "Its place is frame, offset and slr; they are None unless the bit is located.");
  type.def_property_readonly(
      "signal", [](const BitHandle& self) { return self.signal; }, "The signal it is a bit of.");
  type.def_property_readonly(
      "view", [](const BitHandle& self) { return wordOf(self.signal.view); }, "'rtl' or 'synth'.");
  type.def_property_readonly(
      "name", [](const BitHandle& self) { return Text{nameOf(self)}; },
      "Full name, with the index where the signal has several.");
  type.def_property_readonly(
      "written_name", [](const BitHandle& self) { return Text{writtenName(self)}; },
      "Full name as written in RTL: /top/u/mem[3][5] for bit 5 of mem<3>.");
  type.def_readonly("index", &BitHandle::index, "The index in the signal.");
  type.def_property_readonly("id", idOf,
                             "Number of the bit behind the index; equal where two signals share "
                             "a bit, None where there is none.");
  type.def_property_readonly(
      "kind", [](const BitHandle& self) { return kindOf(self.bit()); },
      "'STATE' (located), 'CNST' (a constant), 'UNREAD' (not in the implementation), 'UNKNOWN', or "
      "'NONE' for an index without a bit.");
  type.def_property_readonly("located", &BitHandle::isLocated, "Whether the place is known.");
  type.def_property_readonly("frame", placeOrNone<&Bit::getStateLoc1>,
                             "Frame address in the configuration memory, or None.");
  type.def_property_readonly("offset", placeOrNone<&Bit::getStateLoc2>,
                             "Offset in bits within the frame, or None.");
  type.def_property_readonly("slr", placeOrNone<&Bit::getStateLoc3>,
                             "Index of the super logic region, or None.");
  type.def_property_readonly(
      "value", [](const BitHandle& self) { return Text{valueOf(self.bit())}; },
      "'0' or '1' for a constant; else the value's text, 'z' where none was read.");
  type.def("to_dict", bitDict,
           "The row of `xrf find --format csv` as a dictionary; frame, offset and slr are there "
           "when the bit is located.");
  type.def("__str__",
           [](const BitHandle& self) { return Text{nameOf(self) + ": " + placeOf(self)}; });
  type.def("__repr__", [](const BitHandle& self) {
    return Text{"<xrf.Bit " + nameOf(self) + ": " + placeOf(self) + ">"};
  });
  addProtocol(type, [](const BitHandle& self) {
    return reinterpret_cast<const char*>(self.signal.signal) + self.index;
  });
}

}  // namespace xrf::python
