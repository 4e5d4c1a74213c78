// Defines the subcommand "orvanel population": a table of eyes drawn from a mean and a covariance.
#ifndef ORVANEL_CLI_COMMANDS_POPULATION_H
#define ORVANEL_CLI_COMMANDS_POPULATION_H

#include "base/layers.h"
#include "cli/commands/command_line.h"

namespace orvanel::cli {

Run DefinePopulation(CLI::App& app);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_POPULATION_H
