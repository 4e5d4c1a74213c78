// Defines the subcommand "orvanel merge": joins the shards of a batch to one table.
#ifndef ORVANEL_CLI_COMMANDS_MERGE_H
#define ORVANEL_CLI_COMMANDS_MERGE_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefineMerge(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_MERGE_H
