// Options that choose the model, and the conditions of the physical one.
#ifndef ORVANEL_CLI_COMMANDS_OPTIONS_MODEL_OPTIONS_H
#define ORVANEL_CLI_COMMANDS_OPTIONS_MODEL_OPTIONS_H

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "base/layers.h"
#include "models/model.h"

namespace orvanel::cli {

struct ModelOptions {
  ModelRequest request{ModelKind::kPhysical, {}};
  std::string light = "555";  // as named by --light; "display FILE" with --spd
};

// What a subcommand writes.
enum class ModelOutput {
  kNumbers,
  kPlanes,  // also PSF, MTF and images
};

// --model, --light and --stiles-crawford; for planes also --spd, --psf-field, --samples, --view, --origin and
// --object-angle. An option of the physical model beside --model classic is an error of usage.
//   more  options of the subcommand that only the physical model has
void AddModelOptions(CLI::App& app, ModelOptions& options, ModelOutput output,
                     const std::vector<CLI::Option*>& more = {});

// What the options mean, for the help of subcommands.
extern const char* const kModelNotes;

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_OPTIONS_MODEL_OPTIONS_H
