#pragma once

#include <tools/xrf/LimitNames.h>
#include <tools/xrf/Session.h>

namespace xrf {

/// Adds the options that change what the files may ask for.
void addLimitOptions(CLI::App& subcommand, Session& session, Reads reads);

}  // namespace xrf
