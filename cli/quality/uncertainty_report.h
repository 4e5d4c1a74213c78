// Reports the uncertainty of metrics and of the refraction: as text and as JSON.
#ifndef ORVANEL_CLI_QUALITY_UNCERTAINTY_REPORT_H
#define ORVANEL_CLI_QUALITY_UNCERTAINTY_REPORT_H

#include <cstdint>
#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/uncertainty/uncertainty.h"
#include "models/results.h"

namespace orvanel::cli {

struct UncertainEye {
  Eye measured;                      // as read from its file, or the mean of its measurements
  Eye eye;                           // after the adjustments
  std::vector<std::string> changes;  // describes each adjustment
  Results conditions;                // of the model: its light
  QualityRequest metrics;
  std::string source;  // of the covariance
  int draws = 0;       // 0: to first order
  std::uint64_t seed = 0;
  std::vector<UncertainValue> values;
  std::vector<std::string> warnings;
};

// One line for each fact and each value; the values are a table.
std::string UncertaintyText(const UncertainEye& uncertain);

std::string UncertaintyJson(const UncertainEye& uncertain);

// A sentence for each value that draws lack, one for the metrics that have no gradient and need draws, and one for
// those far from first order.
//   draws  0: to first order
//   far    names, of FarFromFirstOrder
std::vector<std::string> UncertaintyWarnings(const std::vector<UncertainValue>& values, int draws,
                                             const std::vector<std::string>& far = {});

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_QUALITY_UNCERTAINTY_REPORT_H
