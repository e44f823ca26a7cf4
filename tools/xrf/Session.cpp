#include <tools/xrf/Session.h>

#include <CLI/CLI.hpp>
#include <string>

namespace xrf {

void addCommonOptions(CLI::App& subcommand, Session& session, const std::string& footer) {
  CommonOptions& options = session.options;
  const auto takeColor = [&options](const std::string& when) {
    options.color = when == "always"  ? ColorMode::Always
                    : when == "never" ? ColorMode::Never
                                      : ColorMode::Auto;
  };
  subcommand.add_flag("--json", options.json,
                      "Print one JSON document on standard output and nothing else there");
  subcommand.add_flag("-q,--quiet", options.quiet, "Print results, warnings and errors only");
  subcommand
      .add_option_function<std::string>("--color", takeColor,
                                        "Color text: auto (on a terminal), always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}).description(""))
      ->type_name("WHEN");
  subcommand.footer(footer);
}

}  // namespace xrf
