// Pupils for the tests of the physical model, and the kernels that this CPU runs.
#ifndef ORVANEL_TESTS_MODELS_PHYSICAL_EXAMPLES_H
#define ORVANEL_TESTS_MODELS_PHYSICAL_EXAMPLES_H

#include <algorithm>
#include <vector>

#include "models/physical/eye.h"
#include "models/physical/kernels/dispatch.h"
#include "models/physical/pupil/pupil.h"
#include "optics/kernels/dispatch.h"

namespace orvanel::physical {

// Modes by OSA/ANSI index in um.
inline Pupil PupilOf(const std::vector<double>& modes, double radiusMm = 3.0, double wavelengthUm = 0.55) {
  Pupil pupil;
  pupil.radiusMm = radiusMm;
  pupil.wavelengthUm = wavelengthUm;
  std::copy(modes.begin(), modes.end(), pupil.modesUm.begin());
  pupil.wavefrontUm = WavefrontPolynomial(modes);
  return pupil;
}

inline Eye EyeOf(const std::vector<double>& modes, double diameterMm = 6.0, double referenceNm = 0.0) {
  Eye eye;
  eye.diameterMm = diameterMm;
  eye.referenceNm = referenceNm;
  std::copy(modes.begin(), modes.end(), eye.modesUm.begin());
  return eye;
}

inline Light Monochromatic(double wavelengthNm) { return {{wavelengthNm, 1.0}}; }

// Those of the test's name in tests on every table.
inline const ChordKernels& ActiveChords() { return ChordKernelsOf(*ActiveKernels()); }

}  // namespace orvanel::physical

#endif  // ORVANEL_TESTS_MODELS_PHYSICAL_EXAMPLES_H
