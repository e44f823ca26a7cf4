#pragma once

#include <crossreference/XRF_RTL2LL.h>

#include <map>
#include <string>
#include <vector>

namespace xrf {

/// Where to look for names near those that are not there.
struct SuggestionOptions {
  std::vector<XRF_RTL2LL::EdifView> views;
  bool hiddenCells = false;
};

/// The full names nearest to each of some names that nothing has, the nearest first: names that
/// differ in few characters or only in case, and those that are the same in their last part, or
/// nearly so where nothing else was asked for. Names without any are left out; so are all but the
/// first few asked for, and those with wildcards.
std::map<std::string, std::vector<std::string>> suggestionsFor(
    const XRF_RTL2LL::Design& design, const std::vector<std::string>& names,
    const SuggestionOptions& options);

/// "; did you mean 'a' or 'b'?", or nothing.
std::string didYouMean(const std::vector<std::string>& suggestions);

}  // namespace xrf
