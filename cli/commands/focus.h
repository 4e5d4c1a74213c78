// Defines the subcommand "orvanel focus": the second-order terms with the best image quality.
#ifndef ORVANEL_CLI_COMMANDS_FOCUS_H
#define ORVANEL_CLI_COMMANDS_FOCUS_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefineFocus(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_FOCUS_H
