#pragma once

#include <crossreference/XRF_RTL2LL.h>

#include <string>
#include <vector>

namespace xrf {

/// A signal that was asked for, or the part lsb..msb of it.
struct SignalHit {
  XRF_RTL2LL::EdifView view;
  XRF_RTL2LL::Signal* signal;
  unsigned lsb;
  unsigned msb;
};

struct ModuleHit {
  XRF_RTL2LL::EdifView view;
  XRF_RTL2LL::Module* module;
};

/// What a search found, in the order of the names asked for.
struct SearchResult {
  std::vector<SignalHit> signals;
  std::vector<ModuleHit> modules;
  std::vector<std::string> notFound;  ///< names that match nothing
};

struct SearchOptions {
  std::vector<XRF_RTL2LL::EdifView> views;
  bool hiddenCells = false;         ///< let wildcards match hidden cells and their pins
  bool regularExpressions = false;  ///< the names are such, matched against full names
};

/// Finds modules and signals by name. A name without wildcards costs a look-up; those with
/// wildcards, and regular expressions, share one walk over the tree.
SearchResult search(const XRF_RTL2LL::Design& design, const std::vector<std::string>& names,
                    const SearchOptions& options);

/// Path and name of a module.
std::string fullName(const XRF_RTL2LL::Module& module);

}  // namespace xrf
