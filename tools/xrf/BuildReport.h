#pragma once

#include <crossreference/Design.h>
#include <tools/xrf/Json.h>
#include <tools/xrf/ModelCounts.h>

#include <optional>
#include <string>

namespace xrf {

/// What a build found, ready to be printed.
struct BuildReport {
  std::string output;
  DesignCounts views;
  XRF_RTL2LL::LocationReport locations;
  XRF_RTL2LL::LogReport log;
  bool readLocations;
  bool readLog;
  /// A design loaded in strict reading does not know its registers.
  std::optional<XRF_RTL2LL::Coverage> coverage;
};

Json buildJson(const BuildReport& report);
std::string buildText(const BuildReport& report, bool colored);

}  // namespace xrf
