#include <tools/xrf/AtomicOutput.h>
#include <tools/xrf/Failure.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <unistd.h>

namespace xrf {

namespace {

constexpr std::array<int, 8> endingSignals{SIGHUP,  SIGINT,  SIGQUIT, SIGTERM,
                                           SIGPIPE, SIGALRM, SIGXCPU, SIGXFSZ};

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

// A signal that the caller ignores (as nohup does) stays ignored. A longer path than fits is left
// to the next run that writes into its folder.
void removeOnSignals(const std::string& path) {
  if (path.size() >= unfinishedFile.size()) return;
  path.copy(unfinishedFile.data(), path.size());
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
  const SignalsBlocked blocked;
  unfinishedFile.fill('\0');
  for (const int signal : endingSignals) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler == removeAndDie) ::signal(signal, SIG_DFL);
  }
}

// A device that swallows or copies what it is given carries no report that could be spoilt.
bool goesToStandardOutput(const std::string& path) {
  struct stat file {};
  struct stat output {};
  return stat(path.c_str(), &file) == 0 && fstat(STDOUT_FILENO, &output) == 0 &&
         file.st_dev == output.st_dev && file.st_ino == output.st_ino &&
         (!S_ISCHR(file.st_mode) || isatty(STDOUT_FILENO) == 1);
}

}  // namespace

AtomicOutput::AtomicOutput(const std::string& target)
    : m_target(target), m_standardOutput(goesToStandardOutput(target)) {
  if (target.empty()) throw Failure("the output file has no name");
  const SignalsBlocked blocked;
  m_file.emplace(target);
  if (m_file->error() != 0) fail();
  if (!m_file->isDirect()) removeOnSignals(m_file->path());
}

AtomicOutput::~AtomicOutput() {
  m_file.reset();
  forgetOnSignals();
}

void AtomicOutput::write(const char* data, std::size_t size) {
  if (!m_file->write(data, size)) fail();
}

void AtomicOutput::commit() {
  if (!m_file->commit()) fail();
  forgetOnSignals();
}

void AtomicOutput::fail() const {
  const int error = m_file->error();
  throw Failure(
      "cannot write: " + std::string(error == EISDIR ? "it is a directory" : std::strerror(error)),
      m_target);
}

}  // namespace xrf
