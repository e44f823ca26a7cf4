#pragma once

#include <string>

namespace xrf {

/// A file that appears under its name only when it is complete.
///
///     AtomicOutput output("top.xrf");        // fails here if the folder cannot be written to
///     write(output.path());
///     output.commit();                       // now, and only now, top.xrf is the new file
///
/// Until then an existing file stays as it is. The temporary file beside the target is removed when
/// the object is destroyed, and when SIGHUP, SIGINT, SIGQUIT, SIGTERM or SIGXFSZ ends the process.
/// A target that exists and is no regular file (a pipe, a device) is written to directly. At most
/// one output may be open at a time. Every failure is raised as a Failure.
class AtomicOutput {
 public:
  explicit AtomicOutput(const std::string& target);
  ~AtomicOutput();
  AtomicOutput(const AtomicOutput&) = delete;
  AtomicOutput& operator=(const AtomicOutput&) = delete;

  /// Where to write.
  const std::string& path() const { return m_path; }
  /// Whether the target is the file that standard output goes to.
  bool isStandardOutput() const { return m_standardOutput; }
  /// Puts the file, once written and closed, under its name.
  void commit();

 private:
  void createBeside();

  std::string m_target;
  std::string m_path;
  unsigned m_mode = 0;
  int m_descriptor = -1;
  bool m_standardOutput = false;
};

}  // namespace xrf
