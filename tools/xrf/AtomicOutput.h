#pragma once

#include <support/FileReplacement.h>

#include <optional>
#include <string>

namespace xrf {

/// A file that appears under its name only when it is complete, or not at all: what a
/// FileReplacement does, and its temporary file is also removed when SIGHUP, SIGINT, SIGQUIT,
/// SIGTERM, SIGPIPE, SIGALRM, SIGXCPU or SIGXFSZ ends the process.
///
///     AtomicOutput output("top.xrf");        // fails here if the folder cannot be written to
///     write(output.path());
///     output.commit();                       // now, and only now, top.xrf is the new file
///
/// At most one output may be open at a time. Every failure is raised as a Failure.
class AtomicOutput {
 public:
  explicit AtomicOutput(const std::string& target);
  ~AtomicOutput();
  AtomicOutput(const AtomicOutput&) = delete;
  AtomicOutput& operator=(const AtomicOutput&) = delete;

  /// Where to write; as an alternative to `write`.
  const std::string& path() const { return m_file->path(); }
  void write(const char* data, std::size_t size);
  /// Whether the target is the file that standard output goes to.
  bool isStandardOutput() const { return m_standardOutput; }
  /// Puts the file under its name, once all is written.
  void commit();

 private:
  [[noreturn]] void fail() const;

  std::string m_target;
  std::optional<XRF_RTL2LL::FileReplacement> m_file;
  bool m_standardOutput;
};

}  // namespace xrf
