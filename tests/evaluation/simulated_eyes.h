// Results for tests: an eye with asymmetric aberrations, and others.
#ifndef ORVANEL_TESTS_EVALUATION_SIMULATED_EYES_H
#define ORVANEL_TESTS_EVALUATION_SIMULATED_EYES_H

#include <utility>

#include "evaluation/results.h"
#include "evaluation/warnings.h"
#include "eye/plausibility.h"
#include "tests/eye/eyes.h"

namespace orvanel::evaluation {

inline Results ResultsOf(Eye eye, const std::vector<RingRequest>& rings) {
  Results results;
  results.measured = eye;
  results.eye = std::move(eye);
  results.simulation = Simulate(results.eye.pupil, ToLibrary(results.eye.coefficients), rings);
  results.scales = ScalesOf(results.eye.pupil);
  results.warnings = EyeWarnings(results.eye);
  for (std::string& warning : Warnings(results.simulation)) results.warnings.push_back(std::move(warning));
  return results;
}

}  // namespace orvanel::evaluation

#endif  // ORVANEL_TESTS_EVALUATION_SIMULATED_EYES_H
