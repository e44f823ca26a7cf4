#include <crossreference/Utils.h>
#include <tools/xrf/Revision.h>
#include <tools/xrf/Version.h>

#include <CLI/Version.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace xrf {

namespace {

#if defined(__clang__)
constexpr const char* compiler = "clang " __clang_version__;
#else
constexpr const char* compiler = "g++ " __VERSION__;
#endif

// Either may be empty.
constexpr const char* revision = XRF_REVISION;
constexpr const char* sanitizers = XRF_SANITIZERS;

std::string fmtVersion() {
  return fmt::format("{}.{}.{}", FMT_VERSION / 10000, FMT_VERSION / 100 % 100, FMT_VERSION % 100);
}

}  // namespace

std::string versionText() {
  std::string text = fmt::format("xrf {}\n", XRF_VERSION);
  text += fmt::format("source     {}\n", *revision == '\0' ? "not from a repository" : revision);
  text += fmt::format("built      {} by {} for {}\n", XRF_BUILD_TYPE, compiler, XRF_SYSTEM);
  if (*sanitizers != '\0') text += fmt::format("sanitizers {}\n", sanitizers);
  text += fmt::format("reads      cross-reference files of format {}\n",
                      XRF_RTL2LL::utils::getVersion());
  text += fmt::format("with       CLI11 {}, fmt {}, nlohmann/json {}.{}.{}", CLI11_VERSION,
                      fmtVersion(), NLOHMANN_JSON_VERSION_MAJOR, NLOHMANN_JSON_VERSION_MINOR,
                      NLOHMANN_JSON_VERSION_PATCH);
  return text;
}

}  // namespace xrf
