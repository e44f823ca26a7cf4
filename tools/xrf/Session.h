#pragma once

#include <support/Limits.h>
#include <tools/xrf/Console.h>
#include <tools/xrf/Failure.h>
#include <tools/xrf/Style.h>

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace xrf {

/// Options that every subcommand takes, and the limits, of which each takes those of its files.
struct CommonOptions {
  bool json = false;
  std::string format;  ///< empty where it is not given
  bool csv = false;
  bool quiet = false;
  ColorMode color = ColorMode::Auto;
  XRF_RTL2LL::Limits limits;
};

/// One run of the command: what was asked for, and where errors go.
struct Session {
  Console console;
  CommonOptions options;
  /// What the chosen subcommand does.
  std::function<Status(Session&)> action;

  bool colored() const { return wantsColor(options.color, stdout); }
};

/// Whether a subcommand has a table to print as comma-separated values.
enum class Csv { None, Offered };

/// Adds the common options and the example that `--help` ends with.
void addCommonOptions(CLI::App& subcommand, Session& session, const std::string& footer,
                      Csv csv = Csv::None);

/// Brings the options together that say one thing in two ways. Raises a UsageFailure where they
/// contradict each other.
void settleFormat(CommonOptions& options);

/// The values of an option whose argument is called `typeName` in the help; none for other kinds.
std::vector<std::string> valuesOf(const std::string& typeName);

}  // namespace xrf
