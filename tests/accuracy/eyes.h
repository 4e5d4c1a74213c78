// Defines two published eyes, also with smaller pupils.
#ifndef ORVANEL_TESTS_ACCURACY_EYES_H
#define ORVANEL_TESTS_ACCURACY_EYES_H

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "tests/accuracy/closed_forms.h"
#include "tests/accuracy/sampled.h"

namespace orvanel::accuracy {

// Pupils, millimetres.
constexpr std::array<double, 5> kPupils = {2.3, 3.0, 4.1, 6.0, 7.5};

struct PublishedEye {
  std::string name;
  double pupil;               // mm
  std::vector<Real> microns;  // of the orthonormal terms, y upwards
};

// assets/eyes has the sources.
inline const std::vector<PublishedEye>& PublishedEyes() {
  static const std::vector<PublishedEye> eyes = {
      {"standard observer",
       6.0,
       {0.3243L, -0.5796L, 0.7083L, -0.1115L, 0.8638L, 0.0148L, -0.1116L, -0.1644L, 0.3053L, -0.0673L, -0.0273L,
        -0.0115L, 0.2394L, 0.0228L, 0.0784L}},
      {"Watson's eye",
       6.0,
       {0, 0, 0, -0.0946L, 0.0969L, 0.305L, 0.0459L, -0.121L, 0.0264L, -0.113L, 0.0292L, 0.03L, 0.0294L, 0.0163L,
        0.064L}}};
  return eyes;
}

// Millimetres, for the library. Within the pupil measured this is the eye itself; beyond it the same polynomial, which
// nobody has measured.
inline std::vector<double> AtPupil(const PublishedEye& eye, double pupil) {
  std::vector<Real> c(28);
  for (std::size_t j = 0; j < eye.microns.size(); ++j) c[j] = eye.microns[j] * 1e-3L;
  for (int n = 0; n <= 6; ++n) {
    for (int m = -n; m <= n; m += 2) {
      c[static_cast<std::size_t>(IndexOf({n, m}))] *= NormalisationFactor({n, m}) * (m < 0 ? -1 : 1);
    }
  }
  const std::vector<Real> scaled = RescaledCoefficients(c, static_cast<Real>(pupil) / eye.pupil);
  return std::vector<double>(scaled.begin(), scaled.end());
}

}  // namespace orvanel::accuracy

#endif  // ORVANEL_TESTS_ACCURACY_EYES_H
