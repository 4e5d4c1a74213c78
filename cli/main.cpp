// The program: one run from eye file to folder.
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/error.h"
#include "cli/output_folder.h"
#include "cli/plausibility.h"
#include "cli/results.h"
#include "cli/summary.h"

namespace orvanel::cli {
namespace {

volatile std::sig_atomic_t interrupted = 0;

// So that a run that is stopped, or whose output nobody reads any more, still clears away what it has staged.
void HandleSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (std::signal(signal, SIG_IGN) == SIG_IGN) continue;  // as under nohup
    std::signal(signal, [](int) { interrupted = 1; });
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

void PrintSummary(const std::string& text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (!written || std::fflush(stdout) != 0)
    throw Error("the results are in place, but standard output cannot be written");
}

void Run(const Command& command) {
  Results results;
  results.eye = ReadEyeFile(command.eyeFile);
  const std::vector<ResultFile> files = ResultFiles(command.rings, command.npy);
  std::vector<std::string> names;
  for (const ResultFile& file : files) names.push_back(file.name);
  OutputFolder folder(command.folder, names, command.force);

  try {
    const Eye& eye = results.eye;
    results.simulation = Simulate(eye.pupil, ToLibrary(eye.convention, eye.coefficients), command.rings);
  } catch (const Error& error) {
    throw Error(command.eyeFile + ": " + error.what());
  }
  results.scales = ScalesOf(results.simulation);
  results.warnings = Warnings(results.simulation);
  for (const std::string& warning : results.warnings) std::cerr << "orvanel: warning: " << warning << '\n';

  for (const ResultFile& file : files) {
    if (interrupted) throw Error("interrupted; nothing is written");
    folder.Add(file.name, file.encode(results));
  }
  folder.Commit();
  PrintSummary(SummaryText(results, command.folder, files.size()));
}

int Main(int argc, char** argv) {
  HandleSignals();
  ExitStatus status = kDone;
  const std::optional<Command> command = ReadCommandLine(argc, argv, status);
  if (!command) return status;
  try {
    Run(*command);
  } catch (const std::exception& error) {
    std::cerr << "orvanel: " << error.what() << '\n';
    return kFailed;
  }
  return kDone;
}

}  // namespace
}  // namespace orvanel::cli

int main(int argc, char** argv) { return orvanel::cli::Main(argc, argv); }
