#include <tools/xrf/Session.h>
#include <tools/xrf/ViewOption.h>

#include <CLI/CLI.hpp>

namespace xrf {

void addViewOption(CLI::App& subcommand, std::optional<XRF_RTL2LL::EdifView>& view,
                   const std::string& description) {
  const auto take = [&view](const std::string& name) {
    view = name == "rtl" ? XRF_RTL2LL::RTL : XRF_RTL2LL::SYNTH;
  };
  subcommand.add_option_function<std::string>("--view", take, description)
      ->check(CLI::IsMember(valuesOf("VIEW")).description(""))
      ->type_name("VIEW");
}

}  // namespace xrf
