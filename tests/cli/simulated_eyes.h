// Results for tests: an eye with asymmetric aberrations, and others.
#ifndef ORVANEL_TESTS_CLI_SIMULATED_EYES_H
#define ORVANEL_TESTS_CLI_SIMULATED_EYES_H

#include <utility>

#include "cli/plausibility.h"
#include "cli/results.h"

namespace orvanel::cli {

inline Results ResultsOf(Eye eye, const std::vector<RingRequest>& rings) {
  Results results;
  results.measured = eye;
  results.eye = std::move(eye);
  results.simulation = Simulate(results.eye.pupil, ToLibrary(results.eye.convention, results.eye.coefficients), rings);
  results.scales = ScalesOf(results.simulation);
  results.warnings = EyeWarnings(results.eye);
  for (std::string& warning : Warnings(results.simulation)) results.warnings.push_back(std::move(warning));
  return results;
}

inline Eye AsymmetricEye() {
  Eye eye;
  eye.file = "asymmetric.json";
  eye.name = "Asymmetric";
  eye.pupil = Millimetres(4.5);
  eye.convention = kOsaConvention;
  eye.coefficients = {0.1, -0.2, 0.3, -0.09, 0.14, 0.21, 0.05, -0.12, 0.07};
  return eye;
}

inline Eye PerfectEye(Millimetres pupil) {
  Eye eye;
  eye.file = "perfect.json";
  eye.pupil = pupil;
  eye.convention = kLibraryConvention;
  eye.coefficients = {0.0};
  return eye;
}

}  // namespace orvanel::cli

#endif  // ORVANEL_TESTS_CLI_SIMULATED_EYES_H
