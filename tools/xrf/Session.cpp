#include <tools/xrf/Session.h>

#include <CLI/CLI.hpp>
#include <string>

namespace xrf {

namespace {

void addFormat(CLI::App& subcommand, CommonOptions& options, Csv csv) {
  std::vector<std::string> formats = valuesOf("FORMAT");
  if (csv == Csv::None) formats.pop_back();
  subcommand
      .add_option(
          "--format", options.format,
          csv == Csv::None ? "Print text (default) or json" : "Print text (default), json or csv")
      ->check(CLI::IsMember(formats).description(""))
      ->type_name("FORMAT");
}

}  // namespace

void settleFormat(CommonOptions& options) {
  if (options.format.empty()) return;
  if (options.json && options.format != "json") {
    throw UsageFailure("--json and --format " + options.format + " contradict each other");
  }
  options.json = options.format == "json";
  options.csv = options.format == "csv";
}

std::vector<std::string> valuesOf(const std::string& typeName) {
  if (typeName == "FORMAT") return {"text", "json", "csv"};
  if (typeName == "WHEN") return {"auto", "always", "never"};
  if (typeName == "VIEW") return {"rtl", "synth"};
  if (typeName == "HOW") return {"extended", "strict"};
  return {};
}

void addCommonOptions(CLI::App& subcommand, Session& session, const std::string& footer, Csv csv) {
  CommonOptions& options = session.options;
  const auto takeColor = [&options](const std::string& when) {
    options.color = when == "always"  ? ColorMode::Always
                    : when == "never" ? ColorMode::Never
                                      : ColorMode::Auto;
  };
  subcommand.add_flag("--json", options.json,
                      "Print one JSON document on standard output and nothing else there");
  addFormat(subcommand, options, csv);
  subcommand.add_flag("-q,--quiet", options.quiet, "Print results, warnings and errors only");
  subcommand
      .add_option_function<std::string>("--color", takeColor,
                                        "Color text: auto (on a terminal), always or never")
      ->check(CLI::IsMember(valuesOf("WHEN")).description(""))
      ->type_name("WHEN");
  subcommand.footer(footer);
}

}  // namespace xrf
