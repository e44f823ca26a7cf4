#include <tools/xrf/EditDistance.h>
#include <tools/xrf/Style.h>
#include <tools/xrf/Suggestions.h>
#include <tools/xrf/UsageText.h>

#include <algorithm>
#include <string>
#include <vector>

namespace xrf {

namespace {

std::vector<std::string> subcommandsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* one : app.get_subcommands(nullptr)) names.push_back(one->get_name());
  return names;
}

std::vector<std::string> longOptionsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

// The nearest of the words that exist, or none.
std::vector<std::string> nearestTo(const std::string& word, const std::vector<std::string>& words) {
  constexpr unsigned mostChanges = 2;
  std::vector<std::string> nearest;
  unsigned least = mostChanges;
  for (const std::string& known : words) {
    const unsigned distance = editDistance(word, known, least);
    if (distance > least) continue;
    if (distance < least) nearest.clear();
    least = distance;
    nearest.push_back(known);
  }
  return nearest;
}

}  // namespace

UsageFailure usageFailure(const CLI::App& app, const CLI::ParseError& error) {
  const CLI::App* reached = &app;
  std::string words = app.get_name();
  const auto isParsed = [](const CLI::App* subcommand) { return subcommand->parsed(); };
  for (auto chosen = app.get_subcommands(isParsed); !chosen.empty();
       chosen = reached->get_subcommands(isParsed)) {
    reached = chosen.front();
    words += " " + reached->get_name();
  }
  const std::vector<std::string> left = app.remaining(true);
  const auto isOption = [](const std::string& word) { return word.starts_with('-'); };
  const auto word = std::find_if_not(left.begin(), left.end(), isOption);
  const auto option = std::find_if(left.begin(), left.end(), isOption);
  std::string text = error.what();
  if (word != left.end() && reached->get_require_subcommand_min() > 0) {
    text = "no subcommand is named '" + printable(*word) + "'" +
           didYouMean(nearestTo(*word, subcommandsOf(*reached)));
  } else if (option != left.end()) {
    text = "no option is named '" + printable(*option) + "'" +
           didYouMean(nearestTo(option->substr(0, option->find('=')), longOptionsOf(*reached)));
  }
  return UsageFailure(text + " (see " + words + " --help)");
}

}  // namespace xrf
