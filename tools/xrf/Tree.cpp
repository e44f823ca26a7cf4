#include <tools/xrf/Csv.h>
#include <tools/xrf/Json.h>
#include <tools/xrf/LimitOptions.h>
#include <tools/xrf/LoadedDesign.h>
#include <tools/xrf/ModuleWalk.h>
#include <tools/xrf/Search.h>
#include <tools/xrf/StandardOutput.h>
#include <tools/xrf/Subcommands.h>
#include <tools/xrf/ViewOption.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <limits>
#include <memory>

namespace xrf {

using XRF_RTL2LL::Module;

namespace {

struct TreeOptions {
  std::string file;
  std::size_t depth = std::numeric_limits<std::size_t>::max();
  std::optional<XRF_RTL2LL::EdifView> view;
  bool hidden = false;
};

std::size_t hiddenChildren(const Module& module) {
  std::size_t count = 0;
  for (const Module* child : module.getChildren(false)) count += child->isHidden() ? 1U : 0U;
  return count;
}

// Calls enter and leave for the modules to list.
template <class Enter, class Leave>
void walkListed(Module* top, const TreeOptions& options, Enter enter, Leave leave) {
  const auto listed = [&](const Module& module, std::size_t depth) {
    return depth <= options.depth && (options.hidden || depth == 0 || !module.isHidden());
  };
  walkModules(
      top,
      [&](Module* module, std::size_t depth) {
        if (!listed(*module, depth)) return false;
        enter(module, depth);
        return depth < options.depth;
      },
      [&](Module* module, std::size_t depth) {
        if (listed(*module, depth)) leave(module, depth);
      });
}

std::string counted(std::size_t count, const char* what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

void printText(Module* top, const TreeOptions& options, bool colored) {
  const auto enter = [&](Module* module, std::size_t depth) {
    const std::string name = painted(printable(module->getName()),
                                     module->isHidden() ? Color::Dim : Color::Bold, colored);
    std::string line =
        fmt::format("{:{}}{} ({})  {}", "", 2 * depth, name, printable(module->getDefName()),
                    counted(module->getSignals(false).size(), "signal"));
    const std::size_t hidden = hiddenChildren(*module);
    if (hidden != 0) line += ", " + counted(hidden, "hidden cell");
    if (module->isHidden()) line += ", hidden";
    printOut(line + "\n");
  };
  walkListed(top, options, enter, [](Module*, std::size_t) {});
}

// Written as the tree is walked, since it may hold a million modules.
void printJsonTree(Module* top, const TreeOptions& options) {
  bool first = true;
  const auto enter = [&](Module* module, std::size_t) {
    std::string text = jsonText({{"name", module->getName()},
                                 {"definition", module->getDefName()},
                                 {"hidden", module->isHidden()},
                                 {"signals", module->getSignals(false).size()},
                                 {"hiddenChildren", hiddenChildren(*module)}});
    text.back() = ',';  // the closing brace follows the children
    printOut((first ? "" : ",") + text + "\"children\":[");
    first = true;
  };
  const auto leave = [&](Module*, std::size_t) {
    printOut("]}");
    first = false;
  };
  walkListed(top, options, enter, leave);
}

void printCsv(Module* top, const TreeOptions& options) {
  printOut(csvLine({"module", "definition", "signals", "hidden", "hiddenChildren"}));
  const auto enter = [](Module* module, std::size_t) {
    printOut(csvLine({fullName(*module), module->getDefName(),
                      std::to_string(module->getSignals(false).size()),
                      module->isHidden() ? "1" : "0", std::to_string(hiddenChildren(*module))}));
  };
  walkListed(top, options, enter, [](Module*, std::size_t) {});
}

Status tree(Session& session, const TreeOptions& options) {
  const auto design = loaded(options.file, session);
  const XRF_RTL2LL::EdifView view = options.view.value_or(XRF_RTL2LL::RTL);
  Module* top = design->getNetlist()->getTop(view);
  if (top == nullptr) {
    throw Failure(fmt::format("holds no {} view", viewName(view)), options.file);
  }
  if (session.options.json) {
    printOut(fmt::format("{{\"command\":\"tree\",\"file\":{},\"view\":\"{}\",\"root\":",
                         jsonText(options.file), viewName(view)));
    printJsonTree(top, options);
    printOut("}\n");
  } else if (session.options.csv) {
    printCsv(top, options);
  } else {
    printText(top, options, session.colored());
  }
  return Status::Done;
}

std::string wholeNumber(const std::string& text) {
  const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
  return digits && !text.empty() ? "" : "'" + text + "' is no whole number";
}

const char* const treeFooter =
    "One line per module: instance, definition in parentheses, signals. Hidden cells (registers,\n"
    "look-up tables and other primitives) are counted, and listed with --hidden.\n"
    "With --json: "
    "{\"command\":\"tree\",\"file\":...,\"view\":...,\"root\":{\"name\",\"definition\",\n"
    "\"hidden\",\"signals\",\"hiddenChildren\",\"children\":[...]}}, signals as a number.\n"
    "Example:\n"
    "  xrf tree top.xrf --depth 2 --view synth";

}  // namespace

void addTree(CLI::App& app, Session& session) {
  CLI::App* subcommand = app.add_subcommand("tree", "Print the module hierarchy of one view");
  const auto options = std::make_shared<TreeOptions>();
  subcommand->add_option("FILE", options->file, "Cross-reference file (.xrf)")
      ->required()
      ->type_name("");
  subcommand->add_option("--depth", options->depth, "Levels to print below the top (default: all)")
      ->check(wholeNumber)
      ->type_name("N");
  addViewOption(*subcommand, options->view, "The view to print: rtl (default) or synth");
  subcommand->add_flag("--hidden", options->hidden, "List hidden cells, too");
  addCommonOptions(*subcommand, session, treeFooter, Csv::Offered);
  addLimitOptions(*subcommand, session, Reads::CrossReference);
  subcommand->callback([&session, options] {
    session.action = [options](Session& current) { return tree(current, *options); };
  });
}

}  // namespace xrf
