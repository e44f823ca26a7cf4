#pragma once

#include <tools/xrf/Session.h>

namespace xrf {

/// The files whose limits a subcommand offers: netlists or a cross-reference file, a
/// cross-reference file alone, a metadata document.
enum class Reads { Netlists, CrossReference, Metadata };

/// Adds the options that change what the files may ask for.
void addLimitOptions(CLI::App& subcommand, Session& session, Reads reads);

}  // namespace xrf
