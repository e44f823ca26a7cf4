#include <tools/xrf/AtomicOutput.h>
#include <tools/xrf/Failure.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace xrf {

namespace {

constexpr std::array<int, 5> endingSignals{SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXFSZ};

// A signal handler takes no argument of ours, so what it removes has to be found here. Written only
// while the signals are blocked.
std::array<char, PATH_MAX> unfinishedFile{};

void removeAndDie(int signal) {
  if (unfinishedFile[0] != '\0') unlink(unfinishedFile.data());
  raise(signal);  // SA_RESETHAND has restored the default action
}

class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : endingSignals) sigaddset(&signals, signal);
    sigprocmask(SIG_BLOCK, &signals, &m_before);
  }
  ~SignalsBlocked() { sigprocmask(SIG_SETMASK, &m_before, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t m_before;
};

// A signal that the caller ignores (as nohup does) stays ignored.
void removeOnSignals(const std::string& path) {
  path.copy(unfinishedFile.data(), unfinishedFile.size() - 1);
  for (const int signal : endingSignals) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = removeAndDie;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(signal, &action, nullptr);
  }
}

void forgetOnSignals() {
  unfinishedFile.fill('\0');
  for (const int signal : endingSignals) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler == removeAndDie) ::signal(signal, SIG_DFL);
  }
}

unsigned defaultMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666U & ~mask;
}

bool isFileOf(int descriptor, const struct stat& file) {
  struct stat other {};
  return fstat(descriptor, &other) == 0 && other.st_dev == file.st_dev &&
         other.st_ino == file.st_ino;
}

// A device that swallows or copies what it is given carries no report that could be spoilt.
bool carriesReport(const struct stat& file) {
  return !S_ISCHR(file.st_mode) || isatty(STDOUT_FILENO) == 1;
}

std::string resolved(const std::string& path) {
  char* real = realpath(path.c_str(), nullptr);
  if (real == nullptr) return path;
  std::string result(real);
  std::free(real);
  return result;
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

[[noreturn]] void fail(const std::string& what, const std::string& file, int error) {
  throw Failure(what + ": " + std::strerror(error), file);
}

}  // namespace

AtomicOutput::AtomicOutput(const std::string& target) : m_target(target), m_path(target) {
  if (target.empty()) throw Failure("the output file has no name");
  struct stat existing {};
  if (stat(target.c_str(), &existing) != 0) {
    m_mode = defaultMode();
    createBeside();
    return;
  }
  if (S_ISDIR(existing.st_mode)) throw Failure("cannot write: it is a directory", target);
  if (access(target.c_str(), W_OK) != 0) fail("cannot write", target, errno);
  m_standardOutput = isFileOf(STDOUT_FILENO, existing) && carriesReport(existing);
  if (m_standardOutput || !S_ISREG(existing.st_mode)) return;
  m_mode = existing.st_mode & 07777U;
  // Through a symbolic link, the file it points at is replaced, not the link.
  m_target = resolved(target);
  createBeside();
}

AtomicOutput::~AtomicOutput() {
  if (m_descriptor < 0) return;
  close(m_descriptor);
  const SignalsBlocked blocked;
  unlink(m_path.c_str());
  forgetOnSignals();
}

void AtomicOutput::createBeside() {
  const std::string folder = folderOf(m_target);
  const std::string pattern = (folder == "/" ? "" : folder) + "/.xrf-XXXXXX";
  if (pattern.size() >= unfinishedFile.size()) fail("cannot write", m_target, ENAMETOOLONG);
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  const SignalsBlocked blocked;
  m_descriptor = mkostemp(name.data(), O_CLOEXEC);
  if (m_descriptor < 0) fail("cannot create a file in " + folder, m_target, errno);
  m_path = name.data();
  removeOnSignals(m_path);
}

void AtomicOutput::commit() {
  if (m_descriptor < 0) return;
  if (fchmod(m_descriptor, m_mode) != 0) fail("cannot set the mode", m_target, errno);
  if (fsync(m_descriptor) != 0) fail("cannot write", m_target, errno);
  const SignalsBlocked blocked;
  if (std::rename(m_path.c_str(), m_target.c_str()) != 0) fail("cannot write", m_target, errno);
  close(m_descriptor);
  m_descriptor = -1;
  forgetOnSignals();
}

}  // namespace xrf
