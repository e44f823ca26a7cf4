#pragma once

#include <crossreference/Reading.h>
#include <crossreference/XRF_RTL2LL.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace test {

/// A register bit of a design with hazards, and what extended reading must show of it. The design
/// generator writes these lists from what it invented; no reader of this library had a part in
/// them.
struct RegisterTruth {
  std::string source;  ///< name in the source
  std::string signal;  ///< full name of the signal that carries it in the RTL view
  unsigned int index = 0;
  std::string fate;      ///< located, constant, merged, removed, inverted, ...
  std::string expected;  ///< "located FRAME OFFSET REGION", "constant V" or "nothing"

  bool survives() const { return expected != "nothing"; }
};

/// The register bits of a list that was written with `--hazards`. Throws for a line of another
/// form.
std::vector<RegisterTruth> registerTruth(const std::vector<std::string>& lines);

/// How a model comes to be asked for its registers.
enum class Route : std::uint8_t {
  Netlists,       ///< straight from the four files
  SavedComplete,  ///< saved and loaded after all four files were read
  SavedEarly,     ///< saved, loaded, saved and loaded before location file and log are read
  SavedStrictly   ///< saved by strict reading before, which lost much, and read on by the rules
};
/// Those by which every surviving register must be found.
inline constexpr std::array<Route, 3> kRoutes = {Route::Netlists, Route::SavedComplete,
                                                 Route::SavedEarly};
std::string_view nameOf(Route route);

/// What a design's registers showed.
struct Recovery {
  std::size_t surviving = 0;
  std::size_t right = 0;             ///< of those that survive
  std::vector<std::string> missing;  ///< those that show nothing
  std::vector<std::string> wrong;    ///< bits that show what is another's, or not true

  std::string ended;  ///< the error that ended the reading, if one did

  bool complete() const { return ended.empty() && missing.empty() && wrong.empty(); }
};

/// Reads the files of a folder by a route and compares every register bit.
Recovery recover(const std::string& folder, const std::vector<RegisterTruth>& truth,
                 XRF_RTL2LL::Reading reading, Route route);

/// A design with hazards, made by the design generator.
struct HazardOptions {
  std::string hazards;  ///< a list with commas, "all" or "none"
  unsigned int seed = 1;
  unsigned int registers = 300;
  std::string shape = "tree";
};
void generateHazards(const HazardOptions& options, const std::string& folder);
/// The names of all hazards.
std::vector<std::string> hazardNames();

/// The rules of extended reading, by name.
struct NamedRule {
  XRF_RTL2LL::Rule rule;
  std::string_view name;
};
extern const std::array<NamedRule, 16> kRules;

}  // namespace test
