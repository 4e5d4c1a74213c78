// The command line: what the program is asked to do.
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

// What a subcommand does once the command line is read.
using Run = std::function<void()>;

// The program's definition, from which help, manual pages and completion are made.
struct Program {
  std::unique_ptr<CLI::App> app;
  std::vector<std::pair<CLI::App*, Run>> subcommands;
};

Program DefineProgram();

// Reads the arguments behind the program's name. Where there is nothing to run, because help or the version was asked
// for and is printed, or because the use was wrong and a message says so, the result is empty and `status` is set.
std::optional<Run> ReadCommandLine(std::vector<std::string> arguments, ExitStatus& status);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_COMMAND_LINE_H
