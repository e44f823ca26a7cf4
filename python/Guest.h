#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace xrf::python {

/// Lets the library speak to this module: from then on a fatal error is thrown as a Failure, on
/// whichever thread it arises, and the process goes on.
void installHandlers();

/// One read, from its begin to its end on one thread: what the library has to say meanwhile is the
/// read's own, however many threads read at once.
class Read {
 public:
  /// Told how far the read is; what it throws ends the read.
  using Progress = std::function<void(const char* phase, std::uint64_t done, std::uint64_t total)>;

  explicit Read(Progress progress);
  ~Read();
  Read(const Read&) = delete;
  Read& operator=(const Read&) = delete;

  /// The file that is to blame for an exception that names none.
  void setInput(const std::string& path) { m_input = path; }
  const std::string& input() const { return m_input; }

  void warn(const std::string& text) { m_warnings.push_back(text); }
  /// What the library printed on standard error, and our own warnings, without line feeds.
  const std::vector<std::string>& warnings() const { return m_warnings; }

 private:
  friend struct Handlers;
  static Read*& current();

  Progress m_progress;
  std::string m_input;
  std::vector<std::string> m_warnings;
  std::exception_ptr m_thrown;
  Read* m_outer;
};

}  // namespace xrf::python
