// Computes the spacing of samples. The order of evaluation is part of the results.
#include "orvanel/sampling.h"

#include "optics/elementary.h"

namespace orvanel {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308239;

}  // namespace

double PsfHalfWidth(int pupilSamples, double wavelength, double pupilDiameter, double focalLength) {
  return (pupilSamples - 1) / 4 * focalLength * wavelength / pupilDiameter;
}

double FrequencyStep(int n, double psfHalfWidth, double focalLength) {
  const double degreesPerMillimetre = ArcTangent(1.0 / focalLength) * kDegreesPerRadian;
  return 2 * ((n * 0.25) / psfHalfWidth) / degreesPerMillimetre / (n - 1);
}

double FrequencyRange(int n, double frequencyStep) { return frequencyStep * ((n - 1) / 2.0); }

}  // namespace orvanel
