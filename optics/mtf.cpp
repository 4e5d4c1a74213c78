// Cuts the sections of a modulation transfer function, and computes the one of a perfect pupil.
#include "optics/mtf.h"

#include <cmath>

#include "base/elementary.h"

namespace orvanel {
namespace {

constexpr double kTwoOverPi = 0.636619772367582;  // contract: shorter than 2 / pi of a double

}  // namespace

void CutSections(ConstPlaneView mtf, int count, double* rowSection, double* columnSection) {
  const int n = mtf.side;
  for (int i = 0; i < count; ++i) {
    rowSection[i] = Load(mtf.samples, SampleIndex(n / 2, n / 2 + i, n));
    columnSection[i] = Load(mtf.samples, SampleIndex(n / 2 + i, n / 2, n));
  }
}

double DiffractionLimitAt(double share) {
  return (ArcCosine(share) - share * std::sqrt(1.0 - share * share)) * kTwoOverPi;
}

void DiffractionLimit(double psfHalfWidth, int pupilSamples, int count, double* limit) {
  for (int i = 0; i < count; ++i) {
    limit[i] = DiffractionLimitAt((2 * psfHalfWidth / (pupilSamples - 1)) * i * (1.0 / (2 * psfHalfWidth)));
  }
}

}  // namespace orvanel
