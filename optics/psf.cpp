// Point spread function: from the wavefront to the image of a point on the retina.
#include "optics/psf.h"

#include <algorithm>

#include "optics/elementary.h"
#include "optics/fft.h"
#include "optics/samples.h"
#include "optics/workspace.h"

namespace orvanel {
namespace {

constexpr double kFocalLength = 17.0;        // of the reduced eye, mm
constexpr double kTwoPi = 6.28318530717958;  // shorter than 2 pi in double precision; results depend on it
constexpr double kLargestInside = 999.0;     // wavefront values above this mark the outside of the pupil

}  // namespace

void PupilFunction(const double* wavefront, double wavelength, int n, double* re, double* im) {
  for (std::size_t i = 0; i < SampleCount(n); ++i) {
    const double w = wavefront[i];
    const bool inside = w <= kLargestInside;
    const SineCosine field = inside ? SineAndCosine((w / wavelength) * kTwoPi) : SineCosine{0.0, 0.0};
    re[i] = field.cosine;
    im[i] = field.sine;
  }
}

Peak FindPeak(const double* intensity, int n) {
  Peak peak{0.0, n / 2, n / 2};
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const double value = intensity[SampleIndex(r, c, n)];
      if (value > peak.value) peak = {value, r, c};
    }
  }
  return peak;
}

void RecentreLine(double* line, int index, int n) { std::rotate(line, line + (index + n / 2) % n, line + n); }

void RecentrePlane(double* plane, int row, int column, int n) {
  for (int r = 0; r < n; ++r) RecentreLine(plane + SampleIndex(r, 0, n), column, n);
  // All columns shift alike, so that whole rows move.
  std::rotate(plane, plane + SampleIndex((row + n / 2) % n, 0, n), plane + SampleCount(n));
}

double StrehlReference(int n, int m) {
  if (n == 256 && m == 129) return 0.038463531294838;  // (12853 / 65536)^2: samples of the disc, scale of the transform
  if (n == 128 && m == 65) return 10297681.0;          // 3209^2: the same for a transform without scale
  return 0.0;
}

bool OpticsEngine::ComputePsf(double wavelength, double* psfCopy, double* pitch, double* strehl, int size, int reuse) {
  const int n = gridSize;
  if (size > n || n < 1) return false;
  if (reuse == 1 && wavelength == psfWavelength) return true;
  psfWavelength = wavelength;
  focalLength = kFocalLength;
  otfValid = 0;

  // Field and intensity on the retina.
  double* const re = workspace_->objectReal.data();
  double* const im = workspace_->objectImag.data();
  double* const intensity = workspace_->productReal.data();
  PupilFunction(wavefrontPlane.data(), wavelength, n, re, im);
  Fft2(re, im, n, 0);
  ShiftedPowerSpectrum(intensity, re, im);

  psfHalfWidth = (pupilSamples - 1) / 4 * focalLength * wavelength / pupilDiameter;

  // The brightest sample comes to the centre: tilt only displaces the image.
  const Peak peak = FindPeak(intensity, n);
  RecentrePlane(intensity, peak.row, peak.column, n);

  const double reference = StrehlReference(n, pupilSamples);
  strehlRatio = reference == 0.0 ? -1.0 : peak.value / reference;

  const double scale = peak.value > 0.0 ? 1.0 / peak.value : 0.0;
  for (std::size_t i = 0; i < psfPlane.size(); ++i) psfPlane[i] = peak.value > 0.0 ? scale * intensity[i] : 0.0;

  StoreAll(psfCopy, psfPlane.data(), psfPlane.size());
  *strehl = strehlRatio;
  *pitch = 2 * psfHalfWidth / (n - 1);
  return true;
}

bool OpticsEngine::ComputePsf(double wavelength, double* psfCopy, double* pitch, double* strehl, int size) {
  return ComputePsf(wavelength, psfCopy, pitch, strehl, size, 0);
}

}  // namespace orvanel
