#pragma once

#include <tools/xrf/Session.h>

namespace xrf {

/// Each adds one subcommand with its options; choosing it sets the session's action.
void addBuild(CLI::App& app, Session& session);
void addInfo(CLI::App& app, Session& session);
void addFind(CLI::App& app, Session& session);
void addWhatIs(CLI::App& app, Session& session);
void addTree(CLI::App& app, Session& session);
void addDump(CLI::App& app, Session& session);
void addEmu(CLI::App& app, Session& session);
void addMeta(CLI::App& app, Session& session);

}  // namespace xrf
