#include <tools/xrf/Complete.h>
#include <tools/xrf/CompleteNames.h>
#include <tools/xrf/Session.h>
#include <tools/xrf/StandardOutput.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>

namespace xrf {

namespace {

using Words = std::vector<std::string>;

// What the words before the one to complete come to.
struct Context {
  const CLI::App* command;
  const CLI::Option* waiting = nullptr;  // wants its value
  Words positionals;
  std::string view;
};

std::string longName(const CLI::Option& option) {
  const Words& names = option.get_lnames();
  return names.empty() ? "" : names.front();
}

bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

void offer(const std::string& word, const std::string& typed, const std::string& meaning) {
  if (!word.starts_with(typed)) return;
  printOut(meaning.empty() ? word + "\n" : word + "\t" + meaning + "\n");
}

const CLI::App* subcommandOf(const CLI::App& command, const std::string& name) {
  const std::vector<const CLI::App*> all =
      command.get_subcommands([&](const CLI::App* next) { return next->get_name() == name; });
  return all.empty() ? nullptr : all.front();
}

Context contextOf(const CLI::App& app, const Words& before) {
  Context context{&app, nullptr, {}, {}};
  for (const std::string& word : before) {
    if (context.waiting != nullptr) {
      if (context.waiting->get_type_name() == "VIEW") context.view = word;
      context.waiting = nullptr;
    } else if (word.size() > 1 && word.front() == '-') {
      const CLI::Option* option = context.command->get_option_no_throw(word);
      if (option != nullptr && takesValue(*option)) context.waiting = option;
    } else if (const CLI::App* next = subcommandOf(*context.command, word); next != nullptr) {
      context.command = next;
    } else {
      context.positionals.push_back(word);
    }
  }
  return context;
}

void offerOptions(const CLI::App& command, const std::string& typed) {
  for (const CLI::Option* option : command.get_options()) {
    const std::string name = longName(*option);
    if (!name.empty()) offer("--" + name, typed, option->get_description());
  }
}

void offerSubcommands(const CLI::App& command, const std::string& typed) {
  for (const CLI::App* next : command.get_subcommands([](const CLI::App*) { return true; })) {
    offer(next->get_name(), typed, next->get_description());
  }
}

bool isAboutMetadata(const CLI::App& command) {
  return command.get_name() == "emu" ||
         (command.get_parent() != nullptr && command.get_parent()->get_name() == "meta");
}

void offerFiles(const CLI::App& command, const std::string& option) {
  std::string extensions = isAboutMetadata(command) ? "xml" : "xrf";
  if (option == "rtl" || option == "synth") extensions = "edf edif edn";
  if (option == "ll" || option == "log") extensions = option;
  printOut(":files " + extensions + "\n");
}

void offerValues(const CLI::App& command, const CLI::Option& option, const std::string& typed) {
  if (option.get_type_name() == "FILE") return offerFiles(command, longName(option));
  for (const std::string& value : valuesOf(option.get_type_name())) offer(value, typed, "");
}

// The positional arguments of a command in their order; its last one may be given again and again.
const CLI::Option* positionalAt(const CLI::App& command, std::size_t index) {
  const CLI::Option* last = nullptr;
  for (const CLI::Option* option : command.get_options()) {
    if (!option->get_positional()) continue;
    last = option;
    if (index-- == 0) return option;
  }
  const bool repeats = last != nullptr && last->get_items_expected_max() > 1;
  return repeats ? last : nullptr;
}

// The file as the shell will name it to the command: "~" and one variable in front, which
// completion gets as they were typed, stand for folders.
std::string expanded(const std::string& typed) {
  const std::size_t slash = std::min(typed.find('/'), typed.size());
  std::string variable = typed.substr(0, slash);
  if (variable == "~") {
    variable = "HOME";
  } else if (variable.starts_with("${") && variable.ends_with('}')) {
    variable = variable.substr(2, variable.size() - 3);
  } else if (variable.starts_with('$')) {
    variable.erase(0, 1);
  } else {
    return typed;
  }
  const char* const folder = std::getenv(variable.c_str());
  return folder == nullptr ? typed : folder + typed.substr(slash);
}

void offerPositional(const Context& context, const std::string& typed) {
  const CLI::Option* option = positionalAt(*context.command, context.positionals.size());
  if (option == nullptr) return;
  const std::string name = option->get_name();
  if (name == "FILE" || name == "META") return offerFiles(*context.command, "");
  if (name != "NAME" && name != "FRAME|NAME") return;
  const bool reverse = name == "FRAME|NAME";
  offerNames(expanded(context.positionals.front()),
             {typed, reverse ? "synth" : context.view, reverse});
}

}  // namespace

Status complete(const CLI::App& app, const Words& words) {
  const std::string typed = words.empty() ? "" : words.back();
  const Context context = contextOf(app, {words.begin(), words.end() - (words.empty() ? 0 : 1)});
  if (context.waiting != nullptr) {
    offerValues(*context.command, *context.waiting, typed);
  } else if (!typed.empty() && typed.front() == '-') {
    offerOptions(*context.command, typed);
  } else {
    if (context.positionals.empty()) offerSubcommands(*context.command, typed);
    offerPositional(context, typed);
  }
  finishOutput();
  return Status::Done;
}

}  // namespace xrf
