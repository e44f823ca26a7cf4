#pragma once

#include <tools/xrf/Failure.h>

#include <CLI/CLI.hpp>

namespace xrf {

/// What is wrong with a command line that `app` could not read: the fault, the word that may have
/// been meant, and whose help to read.
UsageFailure usageFailure(const CLI::App& app, const CLI::ParseError& error);

}  // namespace xrf
