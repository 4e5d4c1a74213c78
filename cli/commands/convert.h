// Defines the subcommand "orvanel convert": coefficients in another convention, for another pupil or refraction.
#ifndef ORVANEL_CLI_COMMANDS_CONVERT_H
#define ORVANEL_CLI_COMMANDS_CONVERT_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefineConvert(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_CONVERT_H
