// Computes all results of one eye and its retinal images of the Siemens star and of Landolt rings.
#ifndef ORVANEL_EVALUATION_SIMULATION_H
#define ORVANEL_EVALUATION_SIMULATION_H

#include <vector>

#include "base/layers.h"
#include "evaluation/evaluator.h"

namespace orvanel::evaluation {

// Leaves the evaluator ready for further images of the same eye. Throws Error where the numbers are so far from any
// eye's that the results would mean nothing, and RingTooSmall.
Results Simulate(Evaluator& evaluator, const Eye& eye, const std::vector<RingRequest>& rings);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_SIMULATION_H
