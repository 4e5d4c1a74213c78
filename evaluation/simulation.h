// Computes all results of one eye and its retinal images of the Siemens star and of Landolt rings.
#ifndef ORVANEL_EVALUATION_SIMULATION_H
#define ORVANEL_EVALUATION_SIMULATION_H

#include <vector>

#include "base/layers.h"
#include "evaluation/evaluator.h"

namespace orvanel::evaluation {

// Afterwards the evaluator can compute further images of the same eye. Throws RingTooSmall, and Error if pupil or
// coefficients are so large that the results would be meaningless.
Results Simulate(Evaluator& evaluator, const Eye& eye, const std::vector<RingRequest>& rings);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_SIMULATION_H
