// Defines the subcommand "orvanel refract": the lens with the best image quality.
#ifndef ORVANEL_CLI_COMMANDS_REFRACT_H
#define ORVANEL_CLI_COMMANDS_REFRACT_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefineRefract(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_REFRACT_H
