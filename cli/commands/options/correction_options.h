// Options of the search for the lens that maximises a metric.
#ifndef ORVANEL_CLI_COMMANDS_OPTIONS_CORRECTION_OPTIONS_H
#define ORVANEL_CLI_COMMANDS_OPTIONS_CORRECTION_OPTIONS_H

#include <CLI/App.hpp>
#include <vector>

#include "base/layers.h"
#include "evaluation/correction/best_correction.h"

namespace orvanel::cli {

// --step, --axis-step, --sphere-only and --vertex. Returns the options.
std::vector<CLI::Option*> AddCorrectionOptions(CLI::App& app, CorrectionRequest& request);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_OPTIONS_CORRECTION_OPTIONS_H
