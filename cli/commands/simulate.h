// Defines the subcommand "orvanel simulate": all pictures and numbers of one eye.
#ifndef ORVANEL_CLI_COMMANDS_SIMULATE_H
#define ORVANEL_CLI_COMMANDS_SIMULATE_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefineSimulate(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_SIMULATE_H
