// Declares the options that describe a chart, for subcommands that draw one.
#ifndef ORVANEL_CLI_COMMANDS_OPTIONS_CHART_OPTIONS_H
#define ORVANEL_CLI_COMMANDS_OPTIONS_CHART_OPTIONS_H

#include <CLI/App.hpp>
#include <functional>
#include <optional>
#include <string>

#include "base/layers.h"
#include "targets/charts/chart.h"
#include "targets/charts/screen.h"

namespace orvanel::cli {

// The request, and what its report needs besides.
struct ChartOptions {
  charts::ChartRequest request;
  std::optional<charts::Screen> screen;  // which gives the pixels per degree
};

// Adds the options of content, sizes, contrast and field. The result is to be called when the command line is parsed;
// it writes them to the request, without the resolution. It throws errors of usage.
std::function<void()> AddChartOptions(CLI::App& app, ChartOptions& options);

// Adds --pixels-per-degree, --screen and --distance, in the same way. One of them is required unless the request has a
// resolution before.
std::function<void()> AddResolutionOptions(CLI::App& app, ChartOptions& options);

// Draws the chart. Throws Error, which names the option that avoids it, if the request is refused.
charts::Chart DrawnChart(const ChartOptions& options);

// The chart in words: lines of a report.
std::string ChartReport(const ChartOptions& options, const charts::Chart& chart);

// What the resolution cannot show; empty if it shows everything.
std::string UndersampledText(const charts::Chart& chart);

// Describes content, sizes and order, for the help of subcommands.
extern const char* const kChartNotes;

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_COMMANDS_OPTIONS_CHART_OPTIONS_H
