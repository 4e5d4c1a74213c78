// Declares the part of "orvanel focus" that computes metrics through focus.
#ifndef ORVANEL_CLI_COMMANDS_THROUGH_FOCUS_H
#define ORVANEL_CLI_COMMANDS_THROUGH_FOCUS_H

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "base/layers.h"
#include "cli/commands/options/model_options.h"
#include "cli/commands/options/options.h"
#include "metrics/quality/quality.h"

namespace orvanel::cli {

struct ThroughFocusOptions {
  std::vector<double> lenses;  // empty without --through
  QualityRequest metrics;
  std::string plot;  // a file of a picture; may be empty
  bool json = false;
};

// Adds --through, and the options that need it: --metric, its conditions, --plot and --json.
//   others  options that exclude --through
// Returns the options of the physical model alone.
std::vector<CLI::Option*> AddThroughFocusOptions(CLI::App& app, ThroughFocusOptions& options,
                                                 const std::vector<CLI::Option*>& others);

// Prints the report, and writes the table and the plot.
//   table  a CSV file; may be empty
void RunThroughFocus(const ThroughFocusOptions& options, const InputOptions& input, const Adjustments& adjustments,
                     const ModelRequest& model, const std::string& table, bool force);

// What the numbers mean, for the help.
extern const char* const kThroughFocusNotes;

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_THROUGH_FOCUS_H
