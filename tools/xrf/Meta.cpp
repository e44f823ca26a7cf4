#include <tools/xrf/AtomicOutput.h>
#include <tools/xrf/Json.h>
#include <tools/xrf/LimitOptions.h>
#include <tools/xrf/MetadataDocument.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/Subcommands.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fmt/format.h>
#include <memory>

namespace xrf {

using lmx60::s_debug_error;

namespace {

struct FormatOptions {
  std::string file;
  std::string output;
  bool dropUnknown = false;
};

const char* severityName(const s_debug_error& fault) {
  return fault.severity == lmx60::ELMX_ERROR ? "error" : "warning";
}

void printJson(const std::string& file, const MetadataDocument& document) {
  Json faults = Json::array();
  for (const s_debug_error& fault : document.faults) {
    faults.push_back({{"code", static_cast<int>(fault.code)},
                      {"severity", severityName(fault)},
                      {"line", fault.line},
                      {"column", fault.column},
                      {"element", fault.element},
                      {"message", fault.message}});
  }
  printOut(jsonText(Json{{"command", "meta check"},
                         {"file", file},
                         {"ok", document.firstError() == nullptr},
                         {"faults", faults}}) +
           "\n");
}

void printText(const std::string& file, const MetadataDocument& document, bool quiet) {
  std::size_t errors = 0;
  for (const s_debug_error& fault : document.faults) {
    if (fault.severity == lmx60::ELMX_ERROR) ++errors;
    printOut(fmt::format("{}:{}:{}: {}: {} (code {})\n", printable(file), fault.line, fault.column,
                         severityName(fault), printable(fault.message),
                         static_cast<int>(fault.code)));
  }
  if (quiet) return;
  printOut(fmt::format("{}: {} error{}, {} warning{}\n", printable(file), errors,
                       errors == 1 ? "" : "s", document.faults.size() - errors,
                       document.faults.size() - errors == 1 ? "" : "s"));
}

Status check(Session& session, const std::string& file) {
  const MetadataDocument document = readMetadata(file, session.options.limits);
  if (session.options.json) {
    printJson(file, document);
  } else {
    printText(file, document, session.options.quiet);
  }
  return document.firstError() == nullptr ? Status::Done : Status::Failed;
}

// What the binding does not know would be gone from what it writes.
void requireKnown(const MetadataDocument& document, const std::string& file) {
  const auto dropped = std::find_if(
      document.faults.begin(), document.faults.end(),
      [](const s_debug_error& fault) { return fault.severity == lmx60::ELMX_WARNING; });
  if (dropped == document.faults.end()) return;
  throw Failure(dropped->message + "; it would be lost (--drop-unknown writes all the same)", file,
                dropped->line, dropped->column);
}

bool goesToStandardOutput(const std::string& output) { return output.empty() || output == "-"; }

void write(const Movrel::Project& project, const std::string& output) {
  s_debug_error fault;
  std::string text;
  if (project.Marshal(&text, &fault) != lmx60::ELMX_OK) throw failureOf(fault, "");
  if (goesToStandardOutput(output)) {
    printOut(text);
    return;
  }
  AtomicOutput file(output);
  file.write(text.data(), text.size());
  file.commit();
}

Status format(Session& session, const FormatOptions& options) {
  if (session.options.json && goesToStandardOutput(options.output)) {
    throw UsageFailure("--json needs standard output for its document; write to a file");
  }
  const MetadataDocument document = readMetadata(options.file, session.options.limits);
  requireGood(document, options.file);
  if (!options.dropUnknown) requireKnown(document, options.file);
  write(document.project, options.output);
  if (session.options.json) {
    printOut(jsonText(Json{
                 {"command", "meta format"}, {"file", options.file}, {"output", options.output}}) +
             "\n");
  }
  return Status::Done;
}

const char* const checkFooter =
    "Lists every fault of a metadata document with its line, column and code. What the schema "
    "does\n"
    "not know is a warning, since newer tools write more; warnings alone leave the status 0.\n"
    "Example:\n"
    "  xrf meta check movrel.xml";

const char* const formatFooter =
    "Writes a document anew: the same elements and attributes in the order of the schema, "
    "indented,\n"
    "in UTF-8. Without -o it goes to standard output.\n"
    "Example:\n"
    "  xrf meta format movrel.xml -o canonical.xml";

void addCheck(CLI::App& meta, Session& session) {
  CLI::App* subcommand = meta.add_subcommand("check", "List every fault of a document");
  const auto file = std::make_shared<std::string>();
  subcommand->add_option("FILE", *file, "Metadata document (XML)")->required()->type_name("");
  addCommonOptions(*subcommand, session, checkFooter);
  addLimitOptions(*subcommand, session, Reads::Metadata);
  subcommand->callback([&session, file] {
    session.action = [file](Session& current) { return check(current, *file); };
  });
}

void addFormat(CLI::App& meta, Session& session) {
  CLI::App* subcommand = meta.add_subcommand("format", "Write a document in canonical form");
  const auto options = std::make_shared<FormatOptions>();
  subcommand->add_option("FILE", options->file, "Metadata document (XML)")
      ->required()
      ->type_name("");
  subcommand->add_option("-o,--output", options->output, "File to write")->type_name("FILE");
  subcommand->add_flag("--drop-unknown", options->dropUnknown,
                       "Leave out what the schema does not know");
  addCommonOptions(*subcommand, session, formatFooter);
  addLimitOptions(*subcommand, session, Reads::Metadata);
  subcommand->callback([&session, options] {
    session.action = [options](Session& current) { return format(current, *options); };
  });
}

}  // namespace

void addMeta(CLI::App& app, Session& session) {
  CLI::App* subcommand =
      app.add_subcommand("meta", "Check or rewrite the metadata document of a container");
  subcommand->require_subcommand(1);
  subcommand->footer(
      "Examples:\n"
      "  xrf meta check movrel.xml\n"
      "  xrf meta format movrel.xml -o canonical.xml");
  addCheck(*subcommand, session);
  addFormat(*subcommand, session);
}

}  // namespace xrf
