// Reports metrics through focus: as text, as JSON and as a CSV table.
#ifndef ORVANEL_CLI_QUALITY_FOCUS_REPORT_H
#define ORVANEL_CLI_QUALITY_FOCUS_REPORT_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/through_focus.h"
#include "models/results.h"

namespace orvanel::cli {

struct FocusedEye {
  Eye measured;                      // as read from its file
  Eye eye;                           // after the adjustments
  std::vector<std::string> changes;  // describes each adjustment
  Results conditions;                // of the model: its light
  QualityRequest metrics;
  ThroughFocus focus;
  std::vector<std::string> warnings;
};

// One line for each fact, each lens and each depth of focus.
std::string ThroughFocusText(const FocusedEye& focused);

std::string ThroughFocusJson(const FocusedEye& focused);

// A row for each lens: its dioptres, and a column for each metric, with its unit; empty where there is no value.
std::string ThroughFocusCsv(const ThroughFocus& focus);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_QUALITY_FOCUS_REPORT_H
