// Makes results for tests: of an eye with asymmetric aberrations, and of others.
#ifndef ORVANEL_TESTS_EVALUATION_SIMULATED_EYES_H
#define ORVANEL_TESTS_EVALUATION_SIMULATED_EYES_H

#include <utility>

#include "evaluation/evaluator.h"
#include "evaluation/simulated_eye.h"
#include "evaluation/simulation.h"
#include "evaluation/warnings.h"
#include "eye/plausibility.h"
#include "tests/eye/eyes.h"

namespace orvanel::evaluation {

inline SimulatedEye Simulated(Eye eye, const std::vector<RingRequest>& rings, const ModelRequest& model = {}) {
  SimulatedEye simulated;
  simulated.measured = eye;
  simulated.eye = std::move(eye);
  Evaluator evaluator(model);
  simulated.results = Simulate(evaluator, simulated.eye, rings);
  simulated.warnings = EyeWarnings(simulated.eye);
  for (std::string& warning : Warnings(simulated.results)) simulated.warnings.push_back(std::move(warning));
  return simulated;
}

inline SimulatedEye PhysicallySimulated(Eye eye, const std::vector<RingRequest>& rings,
                                        PhysicalSettings settings = {}) {
  return Simulated(std::move(eye), rings, {ModelKind::kPhysical, std::move(settings)});
}

inline RetinalPicture RetinalPictureOf(const Eye& eye, ObjectPicture object) {
  Evaluator evaluator;
  evaluator.Evaluate(eye, {Need::kImages});
  return evaluator.RetinalPictureOf(std::move(object));
}

}  // namespace orvanel::evaluation

#endif  // ORVANEL_TESTS_EVALUATION_SIMULATED_EYES_H
