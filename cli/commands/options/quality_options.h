// Options that choose metrics of image quality, and what they are relative to.
#ifndef ORVANEL_CLI_COMMANDS_OPTIONS_QUALITY_OPTIONS_H
#define ORVANEL_CLI_COMMANDS_OPTIONS_QUALITY_OPTIONS_H

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "base/layers.h"
#include "cli/commands/options/model_options.h"
#include "metrics/quality/quality.h"

namespace orvanel::cli {

// The metrics of commands that report on image quality in general.
constexpr const char* kUsualMetrics = "VSX,VSOTF,SRX,NS,D50,RMSw";

// --metric, a list of names of the catalogue and of frequencies of the MTF. Returns the option.
//   usual  the names that the request has without the option
CLI::Option* AddMetricOption(CLI::App& app, QualityRequest& request, const char* usual);

// --metric-origin, --metric-reference, --csf and --gaussian-sd. Where --origin is not that of the PSF window, --origin
// means --metric-origin. Returns the options, for those that need --metric or the physical model.
std::vector<CLI::Option*> AddQualityConditions(CLI::App& app, QualityRequest& request, ModelOutput output);

// What these options mean; and the catalogue, a paragraph for each metric.
extern const char* const kQualityNotes;
std::string QualityCatalogueText();

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_OPTIONS_QUALITY_OPTIONS_H
