// Holds one eye with what was done to it, its results, and what is doubtful about them.
#ifndef ORVANEL_EVALUATION_SIMULATED_EYE_H
#define ORVANEL_EVALUATION_SIMULATED_EYE_H

#include <optional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "eye/adjustments.h"
#include "eye/eye.h"
#include "models/results.h"

namespace orvanel::evaluation {

struct SimulatedEye {
  Eye measured;                      // as its file gives it
  Eye eye;                           // as it is simulated
  std::vector<std::string> changes;  // what was done to the first to make the second, a sentence each
  std::optional<Dropped> dropped;    // among the changes
  Results results;
  std::vector<CyclesPerDegree> mtfAt;  // frequencies of interest, on the library scale
  std::vector<std::string> warnings;
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_SIMULATED_EYE_H
