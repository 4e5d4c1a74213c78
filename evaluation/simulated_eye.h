// Holds one eye with its adjustments, results and warnings.
#ifndef ORVANEL_EVALUATION_SIMULATED_EYE_H
#define ORVANEL_EVALUATION_SIMULATED_EYE_H

#include <optional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "eye/adjustments.h"
#include "eye/eye.h"
#include "metrics/quality/quality.h"
#include "models/results.h"

namespace orvanel::evaluation {

struct SimulatedEye {
  Eye measured;                      // as read from its file
  Eye eye;                           // after the adjustments
  std::vector<std::string> changes;  // describes each adjustment
  std::optional<Dropped> dropped;    // the radial orders that were dropped
  Results results;
  std::vector<CyclesPerDegree> mtfAt;  // frequencies of the report, on the library scale
  QualityRequest qualityRequest;
  std::optional<Quality> quality;  // of the physical model
  std::vector<std::string> warnings;
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_SIMULATED_EYE_H
