// Reports the best correction of an eye as text and as JSON.
#ifndef ORVANEL_CLI_CORRECTION_REPORT_H
#define ORVANEL_CLI_CORRECTION_REPORT_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/correction/best_correction.h"
#include "models/results.h"

namespace orvanel::cli {

struct CorrectedEye {
  Eye measured;                      // as read from its file
  Eye eye;                           // after the adjustments
  std::vector<std::string> changes;  // describes each adjustment
  Results conditions;                // of the model: its light
  QualityRequest metric;
  CorrectionRequest request;
  Correction correction;
};

// One line for each fact; the lenses with their values are a table.
std::string CorrectionText(const CorrectedEye& corrected);

std::string CorrectionJson(const CorrectedEye& corrected);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_CORRECTION_REPORT_H
