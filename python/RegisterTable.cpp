#include <python/BitBinding.h>
#include <python/RegisterTable.h>
#include <python/Text.h>
#include <python/Words.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <pybind11/numpy.h>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace xrf::python {

namespace py = pybind11;

using XRF_RTL2LL::Bit;
using XRF_RTL2LL::RegisterBit;
using XRF_RTL2LL::Signal;

namespace {

// One row of the array, as the type below describes it.
struct Row {
  std::uint32_t signal;
  std::uint32_t index;
  std::uint32_t frame;
  std::uint32_t offset;
  std::uint32_t slr;
  std::array<char32_t, 7> kind;  // fits "UNKNOWN"
  std::int8_t value;
};

py::dtype rowType() {
  const auto text = [](const char* word) { return py::str(word); };
  py::dict type;
  type["names"] = py::make_tuple("signal", "index", "frame", "offset", "slr", "kind", "value");
  py::list formats;
  for (const char* format : {"u4", "u4", "u4", "u4", "u4", "U7", "i1"}) {
    formats.append(text(format));
  }
  type["formats"] = std::move(formats);
  type["offsets"] = py::make_tuple(offsetof(Row, signal), offsetof(Row, index),
                                   offsetof(Row, frame), offsetof(Row, offset), offsetof(Row, slr),
                                   offsetof(Row, kind), offsetof(Row, value));
  type["itemsize"] = sizeof(Row);
  return py::dtype::from_args(type);
}

const Bit* bitOf(const RegisterBit& one) { return one.signal->getBitRef(one.index)->getBit(); }

// A number for each name: signals whose names became one share it.
class SignalNumbers {
 public:
  std::uint32_t of(const Signal* signal) {
    if (signal == m_last) return m_number;
    m_last = signal;
    std::string name = signal->getFullName();
    const auto [known, first] =
        m_numbers.try_emplace(name, static_cast<std::uint32_t>(m_numbers.size()));
    if (first) m_names.append(toPython(name));
    m_number = known->second;
    return m_number;
  }
  const py::list& names() const { return m_names; }

 private:
  const Signal* m_last = nullptr;
  std::uint32_t m_number = 0;
  std::unordered_map<std::string, std::uint32_t> m_numbers;
  py::list m_names;
};

void fill(Row& row, const RegisterBit& one, std::uint32_t signal) {
  const Bit& bit = *bitOf(one);
  row = Row{signal, one.index, 0, 0, 0, {}, -1};
  const std::string_view kind = kindOf(&bit);
  for (std::size_t i = 0; i < kind.size(); ++i) row.kind.at(i) = static_cast<char32_t>(kind[i]);
  if (bit.getKind() == Bit::STATE) {
    row.frame = bit.getStateLoc1();
    row.offset = bit.getStateLoc2();
    row.slr = bit.getStateLoc3();
  } else if (bit.getKind() == Bit::CNST) {
    row.value = bit.getValue() ? 1 : 0;
  }
}

}  // namespace

py::list registerRows(const Opened& design) {
  py::list rows;
  for (const RegisterBit& one : design->design().registers()) {
    py::dict row;
    row["name"] = toPython(design->design().writtenName(one));
    row["signal"] = toPython(one.signal->getFullName());
    row["index"] = one.index;
    addFacts(row, bitOf(one));
    rows.append(std::move(row));
  }
  return rows;
}

py::tuple registerArray(const Opened& design) {
  const std::vector<RegisterBit> registers = design->design().registers();
  py::array made(rowType(), std::vector<py::ssize_t>{static_cast<py::ssize_t>(registers.size())});
  auto* row = static_cast<Row*>(made.mutable_data());
  SignalNumbers numbers;
  for (const RegisterBit& one : registers) fill(*row++, one, numbers.of(one.signal));
  return py::make_tuple(std::move(made), numbers.names());
}

}  // namespace xrf::python
