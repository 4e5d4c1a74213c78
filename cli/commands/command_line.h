// Declares the command line of the program and its parser.
#ifndef ORVANEL_CLI_COMMANDS_COMMAND_LINE_H
#define ORVANEL_CLI_COMMANDS_COMMAND_LINE_H

#include <CLI/App.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/layers.h"

namespace orvanel::cli {

enum ExitStatus { kDone = 0, kFailed = 1, kUsage = 2, kSomeRowsFaulty = 3 };

// The action of a subcommand, which runs after the command line is parsed.
using Run = std::function<void()>;

// The definition of the program. Help, manual pages and completion are generated from it.
struct Program {
  std::unique_ptr<CLI::App> app;
  std::vector<std::pair<CLI::App*, Run>> subcommands;
};

Program DefineProgram();

// Parses the arguments after the program's name. Prints help, the version, or a message about wrong use if there is
// nothing to run; then the result is empty and `status` is set.
std::optional<Run> ReadCommandLine(std::vector<std::string> arguments, ExitStatus& status);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_COMMAND_LINE_H
