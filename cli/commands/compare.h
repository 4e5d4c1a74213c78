// Declares "orvanel compare".
#ifndef ORVANEL_CLI_COMMANDS_COMPARE_H
#define ORVANEL_CLI_COMMANDS_COMPARE_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefineCompare(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_COMPARE_H
