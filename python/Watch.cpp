#include <python/Watch.h>

namespace xrf::python {

namespace py = pybind11;

namespace {

constexpr auto interval = std::chrono::milliseconds(50);

}  // namespace

// A short file is reported, too: each phase begins and ends, and so does each file of one phase.
bool Watch::isDue(const std::string& phase, std::uint64_t done, std::uint64_t total) {
  const auto now = std::chrono::steady_clock::now();
  const bool turns = phase != m_phase || done < m_done || (total != 0 && done >= total);
  m_done = done;
  if (!turns && now - m_last < interval) return false;
  m_phase = phase;
  m_last = now;
  return true;
}

void Watch::report(const std::string& phase, std::uint64_t done, std::uint64_t total) {
  if (!isDue(phase, done, total)) return;
  const py::gil_scoped_acquire acquired;
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  if (!m_callback.is_none()) m_callback(phase, done, total);
}

}  // namespace xrf::python
