#include <tests/TempFile.h>
#include <tests/crossreference/Recovery.h>
#include <tests/crossreference/TruthList.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

/// Shows how many registers of generated designs are found and how many wrongly: for each hazard
/// alone, in pairs, all together, and with each rule of extended reading switched off.
namespace {

using XRF_RTL2LL::Reading;

struct Tally {
  std::size_t designs = 0;
  std::size_t surviving = 0;
  std::size_t missing = 0;
  std::size_t wrong = 0;
};

struct Settings {
  unsigned int firstSeed = 1;
  unsigned int seeds = 1;
  unsigned int registers = 300;
  bool verbose = false;
};

void show(const std::vector<std::string>& faults, const char* what) {
  for (const std::string& fault : faults) std::printf("    %s %s\n", what, fault.c_str());
}

void add(Tally& tally, const std::string& folder, const std::vector<test::RegisterTruth>& truth,
         Reading reading, test::Route route, bool verbose) {
  const test::Recovery recovery = test::recover(folder, truth, reading, route);
  ++tally.designs;
  tally.surviving += recovery.surviving;
  tally.missing += recovery.ended.empty() ? recovery.missing.size() : truth.size();
  tally.wrong += recovery.wrong.size();
  if (!verbose || recovery.complete()) return;
  std::printf("  %s\n", std::string(test::nameOf(route)).c_str());
  if (!recovery.ended.empty()) show({recovery.ended}, "reading ended:");
  show(recovery.missing, "missing");
  show(recovery.wrong, "wrong");
}

void run(Tally& tally, const std::string& hazards, const Settings& settings) {
  for (unsigned int seed = 0; seed < settings.seeds; ++seed) {
    const test::TempFile place;
    test::generateHazards({hazards, settings.firstSeed + seed, settings.registers, "tree"},
                          place.folder());
    const auto truth = test::registerTruth(test::truthLines(place.folder() + "/truth.txt"));
    for (const test::Route route : test::kRoutes) {
      add(tally, place.folder(), truth, Reading::extended(), route, settings.verbose);
    }
  }
}

void print(const std::string& name, const Tally& tally) {
  std::printf("%-44s %8zu %10zu %9zu %7zu\n", name.c_str(), tally.designs, tally.surviving,
              tally.missing, tally.wrong);
  std::fflush(stdout);
}

void printHeader() {
  std::printf("%-44s %8s %10s %9s %7s\n", "hazards", "readings", "surviving", "missing", "wrong");
}

// Every combination of hazards that was asked for, one row each; those of pairs only where a
// register is missing or wrong.
bool sweep(const std::vector<std::string>& combinations, const Settings& settings, bool brief) {
  printHeader();
  Tally all;
  for (const std::string& hazards : combinations) {
    Tally tally;
    run(tally, hazards, settings);
    if (!brief || tally.missing + tally.wrong > 0) print(hazards, tally);
    all.designs += tally.designs;
    all.surviving += tally.surviving;
    all.missing += tally.missing;
    all.wrong += tally.wrong;
  }
  print("in all", all);
  return all.missing + all.wrong == 0;
}

std::vector<std::string> pairs() {
  const std::vector<std::string> names = test::hazardNames();
  std::vector<std::string> result;
  for (std::size_t one = 0; one < names.size(); ++one) {
    for (std::size_t other = one + 1; other < names.size(); ++other) {
      result.push_back(names[one] + "," + names[other]);
    }
  }
  return result;
}

// What a rule is worth to the designs with one hazard.
struct Loss {
  std::size_t lost = 0;   // registers that are found with all rules
  std::size_t wrong = 0;  // bits that show what is another's
};

std::size_t beyond(std::size_t count, std::size_t with) { return count > with ? count - with : 0; }

// By all routes, a model that strict reading left included.
std::vector<Loss> lossesFor(const std::string& hazards, const Settings& settings) {
  constexpr std::array<test::Route, 4> routes = {test::Route::Netlists, test::Route::SavedComplete,
                                                 test::Route::SavedEarly,
                                                 test::Route::SavedStrictly};
  const test::TempFile place;
  test::generateHazards({hazards, settings.firstSeed, settings.registers, "tree"}, place.folder());
  const auto truth = test::registerTruth(test::truthLines(place.folder() + "/truth.txt"));
  std::vector<Loss> losses(test::kRules.size());
  for (const test::Route route : routes) {
    const Reading all = Reading::extended();
    const test::Recovery with = test::recover(place.folder(), truth, all, route);
    for (std::size_t rule = 0; rule < losses.size(); ++rule) {
      const test::Recovery without =
          test::recover(place.folder(), truth, all.without(test::kRules[rule].rule), route);
      losses[rule].lost += beyond(with.right, without.right);
      losses[rule].wrong += beyond(without.wrong.size(), with.wrong.size());
    }
  }
  return losses;
}

// One block a rule, and in it the hazards that the rule answers: with all hazards across, the table
// would not fit a page.
bool rulesTable(const Settings& settings) {
  std::vector<std::string> hazards = test::hazardNames();
  hazards.insert(hazards.begin(), "none");
  hazards.emplace_back("all");
  std::vector<std::vector<Loss>> losses;
  for (const std::string& one : hazards) losses.push_back(lossesFor(one, settings));
  std::printf("without each rule, by hazard: registers lost / bits that show another's\n");
  bool everyRuleCounts = true;
  for (std::size_t rule = 0; rule < test::kRules.size(); ++rule) {
    std::printf("%s\n ", std::string(test::kRules[rule].name).c_str());
    bool counts = false;
    for (std::size_t at = 0; at < hazards.size(); ++at) {
      const Loss& loss = losses[at][rule];
      if (loss.lost + loss.wrong == 0) continue;
      counts = true;
      std::printf(" %s %zu/%zu", hazards[at].c_str(), loss.lost, loss.wrong);
    }
    std::printf(counts ? "\n" : " NOTHING IS LOST\n");
    everyRuleCounts = everyRuleCounts && counts;
  }
  return everyRuleCounts;
}

int usage() {
  std::fputs(
      "usage: recovery alone|pairs|all|rules|HAZARD,... [--seed N] [--seeds N] [--registers N] "
      "[--verbose]\n",
      stderr);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  Settings settings;
  std::string what;
  for (int at = 1; at < argc; ++at) {
    const std::string_view word = argv[at];
    const bool last = at + 1 == argc;
    const auto number = [&] {
      return static_cast<unsigned int>(std::strtoul(argv[++at], nullptr, 10));
    };
    if (word == "--verbose") {
      settings.verbose = true;
    } else if (word == "--seed" && !last) {
      settings.firstSeed = number();
    } else if (word == "--seeds" && !last) {
      settings.seeds = number();
    } else if (word == "--registers" && !last) {
      settings.registers = number();
    } else if (!word.starts_with("--") && what.empty()) {
      what = word;
    } else {
      return usage();
    }
  }
  if (what.empty()) return usage();
  bool good = false;
  if (what == "rules") {
    good = rulesTable(settings);
  } else if (what == "alone") {
    good = sweep(test::hazardNames(), settings, false);
  } else if (what == "pairs") {
    good = sweep(pairs(), settings, true);
  } else {
    good = sweep({what}, settings, false);
  }
  return good ? 0 : 1;
}
