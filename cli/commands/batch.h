// Defines the subcommand "orvanel batch": a row of results for every eye of a table.
#ifndef ORVANEL_CLI_COMMANDS_BATCH_H
#define ORVANEL_CLI_COMMANDS_BATCH_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefineBatch(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_BATCH_H
