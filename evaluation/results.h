// All results of one eye, with what was done to it and the scales of its planes.
#ifndef ORVANEL_EVALUATION_RESULTS_H
#define ORVANEL_EVALUATION_RESULTS_H

#include <optional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/retinal_picture.h"
#include "evaluation/simulation.h"
#include "eye/adjustments.h"
#include "eye/eye.h"
#include "models/scales.h"

namespace orvanel::evaluation {

struct Results {
  Eye measured;                      // as its file gives it
  Eye eye;                           // as it is simulated
  std::vector<std::string> changes;  // what was done to the first to make the second, a sentence each
  std::optional<Dropped> dropped;    // among the changes
  Simulation simulation;
  std::vector<CyclesPerDegree> mtfAt;  // frequencies of interest, on the library scale
  Scales scales;
  std::vector<std::string> warnings;
  std::optional<SeenPicture> picture;
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_RESULTS_H
