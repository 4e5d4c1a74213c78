// Sections of a modulation transfer function, and that of a perfect pupil.
#include "optics/mtf.h"

#include <cmath>

#include "base/elementary.h"
#include "optics/samples.h"

namespace orvanel {
namespace {

constexpr double kTwoOverPi = 0.636619772367582;

}  // namespace

void CutSections(const double* mtf, int n, int count, double* rowSection, double* columnSection) {
  for (int i = 0; i < count; ++i) {
    rowSection[i] = mtf[SampleIndex(n / 2, n / 2 + i, n)];
    columnSection[i] = mtf[SampleIndex(n / 2 + i, n / 2, n)];
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
