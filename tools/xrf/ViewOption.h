#pragma once

#include <crossreference/Types.h>

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace xrf {

/// Adds `--view rtl|synth`; `view` stays empty when it is not given.
void addViewOption(CLI::App& subcommand, std::optional<XRF_RTL2LL::EdifView>& view,
                   const std::string& description);

}  // namespace xrf
