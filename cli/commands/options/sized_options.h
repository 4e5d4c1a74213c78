// Options of a chart, or of the true angular size of a picture, that "orvanel simulate" shows to the eye.
#ifndef ORVANEL_CLI_COMMANDS_OPTIONS_SIZED_OPTIONS_H
#define ORVANEL_CLI_COMMANDS_OPTIONS_SIZED_OPTIONS_H

#include <CLI/App.hpp>
#include <functional>
#include <optional>

#include "base/layers.h"
#include "cli/commands/options/chart_options.h"
#include "cli/commands/options/model_options.h"
#include "evaluation/simulated_eye.h"

namespace orvanel::cli {

struct SizedOptions {
  enum class Content { kNone, kChart, kPicture } content = Content::kNone;
  CLI::Option* chart = nullptr;  // --chart
  bool showsChart = false;
  ChartOptions options;  // of the chart; of the picture its field or resolution
};

// Adds --chart, the options of charts, and those of angular size. The result is to be called when the command line is
// parsed, before the other functions here.
std::function<void()> AddSizedOptions(CLI::App& app, SizedOptions& options);

// Adds --strip and what it shows. The result is to be called when the command line is parsed.
std::function<void()> AddStripOptions(CLI::App& app, StripRequest& request);

// Shows progress, and stops at an interrupt.
FocusStrip SeenStrip(const Eye& eye, const PhysicalSettings& settings, const StripRequest& request);

// Throws errors of usage for options that do not apply to objects of true size.
void RefuseBesideSized(const CLI::App& app, const ModelOptions& model);

// The chart, or the picture, before it is seen; empty for neither. Throws Error.
std::optional<SizedView> SizedViewOf(const SizedOptions& options, const PictureRequest& picture);

// As the eye sees it. Shows progress, and stops at an interrupt.
SizedView Seen(SizedView view, const Eye& eye, const PhysicalSettings& settings);

// What the options mean, for the help.
extern const char* const kSizedNotes;

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_OPTIONS_SIZED_OPTIONS_H
