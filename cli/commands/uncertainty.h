// Declares "orvanel uncertainty".
#ifndef ORVANEL_CLI_COMMANDS_UNCERTAINTY_H
#define ORVANEL_CLI_COMMANDS_UNCERTAINTY_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefineUncertainty(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_UNCERTAINTY_H
