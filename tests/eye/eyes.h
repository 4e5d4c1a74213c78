// Makes eyes for tests.
#ifndef ORVANEL_TESTS_EYE_EYES_H
#define ORVANEL_TESTS_EYE_EYES_H

#include <cstddef>
#include <utility>

#include "eye/eye.h"

namespace orvanel::eye {

// The eye with another number for one term, in the convention that it states.
inline void SetTerm(Eye& eye, std::size_t j, double number) {
  Coefficients numbers = eye.coefficients.AsStated();
  if (numbers.size() <= j) numbers.resize(j + 1);
  numbers[j] = number;
  eye.coefficients = {eye.coefficients.convention(), std::move(numbers)};
}

inline Eye AsymmetricEye() {
  Eye eye;
  eye.file = "asymmetric.json";
  eye.name = "Asymmetric";
  eye.pupil = Millimetres(4.5);
  eye.coefficients = {kOsaConvention, {0.1, -0.2, 0.3, -0.09, 0.14, 0.21, 0.05, -0.12, 0.07}};
  return eye;
}

inline Eye PerfectEye(Millimetres pupil) {
  Eye eye;
  eye.file = "perfect.json";
  eye.pupil = pupil;
  eye.coefficients = {kLibraryConvention, {0.0}};
  return eye;
}

// As in assets/eyes/standard_observer_6mm.json.
inline Eye StandardObserver() {
  Eye eye;
  eye.file = "standard_observer_6mm.json";
  eye.name = "Standard observer";
  eye.pupil = Millimetres(6.0);
  eye.coefficients = {kOsaConvention,
                      {0.3243, -0.5796, 0.7083, -0.1115, 0.8638, 0.0148, -0.1116, -0.1644, 0.3053, -0.0673, -0.0273,
                       -0.0115, 0.2394, 0.0228, 0.0784}};
  return eye;
}

}  // namespace orvanel::eye

#endif  // ORVANEL_TESTS_EYE_EYES_H
