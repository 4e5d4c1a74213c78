// The command line: what the program is asked to do.
#ifndef ORVANEL_CLI_COMMAND_LINE_H
#define ORVANEL_CLI_COMMAND_LINE_H

#include <optional>
#include <string>
#include <vector>

#include "cli/simulation.h"

namespace orvanel::cli {

enum ExitStatus { kDone = 0, kFailed = 1, kUsage = 2 };

// One "simulate".
struct Command {
  std::string eyeFile, folder;
  std::vector<RingRequest> rings;  // at least one; each once, those of one acuity together
  bool npy = false, force = false;
};

// Reads the command line. Where there is nothing to run, because help or the version was asked for and is printed, or
// because the use was wrong and a message says so, the result is empty and `status` is set.
std::optional<Command> ReadCommandLine(int argc, char** argv, ExitStatus& status);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMAND_LINE_H
