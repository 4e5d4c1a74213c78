// Defines the subcommand "orvanel chart": an acuity chart or test pattern as a picture.
#ifndef ORVANEL_CLI_COMMANDS_CHART_H
#define ORVANEL_CLI_COMMANDS_CHART_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefineChart(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_CHART_H
