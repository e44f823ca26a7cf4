#include <tools/xrf/Complete.h>
#include <tools/xrf/Json.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/Subcommands.h>
#include <tools/xrf/UsageText.h>
#include <tools/xrf/Version.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace {

using xrf::Failure;
using xrf::Session;
using xrf::Status;

const char* const description =
    "Name a register of the RTL and learn where its value sits in the device.";
const char* const mainFooter =
    "Exit status: 0 done, 1 bad input or failed work, 2 wrong usage, 3 a name was not found.\n"
    "Example:\n"
    "  xrf build --rtl top_rtl.edf --synth top_synth.edf --ll top.ll -o top.xrf\n"
    "  xrf find top.xrf 'u0/cnt[3]'\n"
    "  xrf whatis top.xrf 0x0040061f 2595";

int report(Session& session, const Failure& failure, Status status) {
  if (session.options.json) {
    xrf::printOut(xrf::jsonText(xrf::errorDocument(failure)) + "\n");
    std::fflush(stdout);
  }
  session.console.error(failure);
  return static_cast<int>(status);
}

// What the standard library throws names no file; blame the one that was being read.
int reportException(Session& session, const std::exception& exception) {
  const std::string& file = session.console.currentInput();
  const std::string prefix = file.empty() ? "unexpected error" : "the file is malformed";
  // What the standard library says of a file would mean nothing to who gave it.
  const std::string reason =
      file.empty() ? std::string(" (") + exception.what() + ")" : std::string();
  return report(session, Failure(prefix + reason, file), Status::Failed);
}

int run(Session& session) {
  session.console.setQuiet(session.options.quiet);
  session.console.setColor(xrf::wantsColor(session.options.color, stderr));
  try {
    xrf::settleFormat(session.options);
    const Status status = session.action(session);
    xrf::finishOutput();
    session.console.finish();
    return static_cast<int>(status);
  } catch (const xrf::UsageFailure& failure) {
    return report(session, failure, Status::Usage);
  } catch (const Failure& failure) {
    return report(session, failure, Status::Failed);
  } catch (const std::bad_alloc&) {
    return report(session, Failure("out of memory", session.console.currentInput()),
                  Status::Failed);
  } catch (const std::exception& exception) {
    return reportException(session, exception);
  }
}

// The command line could not be read, so whether it asked for JSON is looked up by hand.
bool asksForJson(int count, char** arguments) {
  for (int i = 1; i < count; ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--json" || argument == "--format=json") return true;
    if (argument == "json" && std::string_view(arguments[i - 1]) == "--format") return true;
  }
  return false;
}

int reportUsage(Session& session, const CLI::App& app, const CLI::ParseError& error, int count,
                char** arguments) {
  session.options.json = asksForJson(count, arguments);
  return report(session, xrf::usageFailure(app, error), Status::Usage);
}

// The arguments after the program's name, last first as the parser wants them. "help find" is
// "find --help".
std::vector<std::string> wordsOf(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  if (!words.empty() && words.front() == "help") {
    words.erase(words.begin());
    words.emplace_back("--help");
  }
  std::reverse(words.begin(), words.end());
  return words;
}

int runCommandLine(int argc, char** argv) {
  Session session;
  CLI::App app(description, "xrf");
  app.set_version_flag("--version", xrf::versionText(), "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.footer(mainFooter);
  app.require_subcommand(1);
  xrf::addBuild(app, session);
  xrf::addInfo(app, session);
  xrf::addFind(app, session);
  xrf::addWhatIs(app, session);
  xrf::addTree(app, session);
  xrf::addDump(app, session);
  xrf::addEmu(app, session);
  xrf::addMeta(app, session);
  if (argc > 1 && std::string_view(argv[1]) == xrf::completeCommand) {
    return static_cast<int>(xrf::complete(app, {argv + 2, argv + argc}));
  }
  try {
    app.parse(wordsOf(argc, argv));
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    return reportUsage(session, app, error, argc, argv);
  }
  return run(session);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return runCommandLine(argc, argv);
  } catch (...) {  // not even an error could be reported
    std::fputs("xrf: error: out of memory\n", stderr);
    return static_cast<int>(Status::Failed);
  }
}
