#pragma once

#include <tools/xrf/Console.h>
#include <tools/xrf/Failure.h>
#include <tools/xrf/Style.h>

#include <functional>

namespace CLI {
class App;
}

namespace xrf {

/// Options that every subcommand takes.
struct CommonOptions {
  bool json = false;
  bool quiet = false;
  ColorMode color = ColorMode::Auto;
};

/// One run of the command: what was asked for, and where errors go.
struct Session {
  Console console;
  CommonOptions options;
  /// What the chosen subcommand does.
  std::function<Status(Session&)> action;

  bool colored() const { return wantsColor(options.color, stdout); }
};

/// Adds the common options and the example that `--help` ends with.
void addCommonOptions(CLI::App& subcommand, Session& session, const std::string& footer);

}  // namespace xrf
