// Parses the command line and prints help, version and errors of usage.
#include "cli/commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "base/number_text.h"
#include "cli/commands/batch.h"
#include "cli/commands/chart.h"
#include "cli/commands/compare.h"
#include "cli/commands/convert.h"
#include "cli/commands/focus.h"
#include "cli/commands/merge.h"
#include "cli/commands/population.h"
#include "cli/commands/refract.h"
#include "cli/commands/simulate.h"
#include "cli/commands/uncertainty.h"
#include "cli/console/terminal.h"
#include "cli/licenses.h"
#include "cli/version.h"

namespace orvanel::cli {
namespace {

constexpr const char* kDescription = "Shows what an eye with a measured aberration sees.";

constexpr const char* kProgramNotes =
    "'orvanel SUBCOMMAND --help' describes a subcommand, with examples, as do the manual pages: 'man "
    "orvanel-simulate'.\n"
    "\n"
    "Examples:\n"
    "  orvanel simulate assets/eyes/standard_observer_6mm.json -o standard_observer\n"
    "  orvanel convert assets/eyes/standard_observer_6mm.json\n"
    "  orvanel focus assets/eyes/standard_observer_6mm.json\n"
    "  orvanel refract assets/eyes/standard_observer_6mm.json\n"
    "  orvanel batch eyes.csv -o results.csv";

}  // namespace

Program DefineProgram() {
  Program program;
  program.app = std::make_unique<CLI::App>(kDescription, "orvanel");
  CLI::App& app = *program.app;
  app.set_version_flag("--version", VersionText, "Print the version and exit");
  app.add_flag_callback(
      "--licenses", [] { throw CLI::CallForVersion(LicensesText(), CLI::ExitCodes::Success); },
      "Print the licences of the program and of third-party parts, and exit");
  app.allow_windows_style_options(false);  // a path may begin with a slash on every system
  app.require_subcommand(1);
  app.footer(kProgramNotes);
  for (Run (*const define)(CLI::App&) : {DefineSimulate, DefineConvert, DefineFocus, DefineRefract, DefineCompare,
                                         DefineUncertainty, DefineBatch, DefineMerge, DefinePopulation, DefineChart}) {
    Run run = define(app);
    program.subcommands.emplace_back(app.get_subcommands({}).back(), std::move(run));
  }
  return program;
}

std::optional<Run> ReadCommandLine(std::vector<std::string> arguments, ExitStatus& status) {
  const Program program = DefineProgram();
  CLI::App& app = *program.app;
  try {
    std::reverse(arguments.begin(), arguments.end());  // the order that the parser expects
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {  // help or version
      app.exit(error);
      status = std::cout.flush() ? kDone : kFailed;
    } else {
      const auto chosen = app.get_subcommands();
      const std::vector<std::string> unknown = app.remaining();
      PrintError(chosen.empty() && !unknown.empty() ? Quoted(unknown.front()) + " is not a subcommand" : error.what());
      std::cerr << "Run 'orvanel " << (chosen.empty() ? "" : chosen.front()->get_name() + " ")
                << "--help' for its use.\n";
      status = kUsage;
    }
    return std::nullopt;
  }
  for (const auto& [subcommand, run] : program.subcommands) {
    if (subcommand->parsed()) return run;
  }
  return std::nullopt;
}

}  // namespace orvanel::cli
