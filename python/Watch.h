#pragma once

#include <chrono>
#include <cstdint>
#include <pybind11/pybind11.h>
#include <string>

namespace xrf::python {

/// Takes the interpreter now and then while a long read goes on without it: to call the caller's
/// function, and to let an interrupt from the keyboard end the read.
class Watch {
 public:
  /// `callback` may be None.
  explicit Watch(const pybind11::object& callback) : m_callback(callback) {}

  /// Throws what the callback raises, or KeyboardInterrupt.
  void report(const std::string& phase, std::uint64_t done, std::uint64_t total);

 private:
  // Whether now is the time: taking the interpreter can mean to wait for other threads.
  bool isDue(const std::string& phase, std::uint64_t done, std::uint64_t total);

  const pybind11::object& m_callback;
  std::string m_phase;
  std::uint64_t m_done = 0;
  std::chrono::steady_clock::time_point m_last;
};

}  // namespace xrf::python
