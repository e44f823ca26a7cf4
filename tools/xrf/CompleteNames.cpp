#include <crossreference/XRF_RTL2LL.h>
#include <tools/xrf/CompleteNames.h>
#include <tools/xrf/LoadedDesign.h>
#include <tools/xrf/Search.h>
#include <tools/xrf/StandardOutput.h>

#include <csignal>
#include <set>
#include <sys/time.h>
#include <unistd.h>

namespace xrf {

using XRF_RTL2LL::EdifView;
using XRF_RTL2LL::Module;
using XRF_RTL2LL::Signal;

namespace {

struct Unreadable {};

// Whoever waits for a completion takes a long silence for a dead shell. A timer, not the progress
// of the read, so that opening a pipe that nobody writes counts, too.
void endAfterASecond() {
  std::signal(SIGALRM, [](int) { _exit(0); });
  itimerval timer{};
  timer.it_value.tv_sec = 1;
  setitimer(ITIMER_REAL, &timer, nullptr);
}

// The level of the hierarchy that a typed name has reached: a module, and what was typed of a name
// below it.
struct Level {
  std::string folder;  // as typed, with its "/"
  std::string leaf;
};

Level levelOf(const std::string& typed) {
  const std::size_t slash = typed.rfind('/');
  if (slash == std::string::npos) return {"", typed};
  return {typed.substr(0, slash + 1), typed.substr(slash + 1)};
}

void collect(const XRF_RTL2LL::Design& design, EdifView view, const WantedNames& wanted,
             std::set<std::string>& names) {
  Module* const top = design.getNetlist()->getTop(view);
  if (top == nullptr) return;
  const Level level = levelOf(wanted.typed);
  const auto add = [&](const char* name, const char* behind) {
    if (std::string_view(name).starts_with(level.leaf)) names.insert(level.folder + name + behind);
  };
  if (level.folder == "/") return add(top->getName(), "/");
  Module* module = top;
  if (!level.folder.empty()) {
    const std::string path = level.folder.substr(0, level.folder.size() - 1);
    module = design.findModule(view, path.front() == '/' ? path : fullName(*top) + "/" + path);
  }
  if (module == nullptr) return;
  for (const Module* child : module->getChildren(false)) {
    const bool cell = child->isHidden();
    if (!cell || wanted.cells) add(child->getName(), cell ? "" : "/");
  }
  for (const Signal* signal : module->getSignals(false)) add(signal->getName(), "");
}

}  // namespace

void offerNames(const std::string& file, const WantedNames& wanted) {
  endAfterASecond();
  // Nothing but names may appear on the user's command line.
  const XRF_RTL2LL::MessageHandlerScope silent([](int, const char*, void*) {});
  const XRF_RTL2LL::FatalHandlerScope fatal(
      [](const XRF_RTL2LL::Fatal&, void*) { throw Unreadable(); });
  std::set<std::string> names;
  try {
    XRF_RTL2LL::Design design(XRF_RTL2LL::Matching::Extended);
    design.parse_xrf(file);
    if (wanted.view != "synth") collect(design, XRF_RTL2LL::RTL, wanted, names);
    if (wanted.view != "rtl") collect(design, XRF_RTL2LL::SYNTH, wanted, names);
  } catch (const Unreadable&) {
    return;
  }
  for (const std::string& name : names) printOut(name + "\n");
}

}  // namespace xrf
