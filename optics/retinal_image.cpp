// Filters an object with a transfer function, and scales the image.
#include "optics/retinal_image.h"

#include <cstddef>

namespace orvanel {

void MultiplyByMirroredOtf(ComplexView spectrum, ConstComplexView otf) {
  const int n = spectrum.re.side;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const std::size_t k = SampleIndex(r, c, n);
      const std::size_t m = SampleIndex(n - 1 - r, c, n);
      const double re = otf.re[m] * spectrum.re[k] - spectrum.im[k] * otf.im[m];
      spectrum.im[k] = spectrum.re[k] * otf.im[m] + otf.re[m] * spectrum.im[k];
      spectrum.re[k] = re;
    }
  }
}

double Total(ConstPlaneView plane) {
  double total = 0.0;
  for (const double v : plane) total += v;
  return total;
}

void KeepTotal(ConstPlaneView intensity, double objectTotal, PlaneView image) {
  const double total = Total(intensity);
  for (std::size_t k = 0; k < intensity.size(); ++k) {
    double v = (objectTotal * intensity[k]) / total;
    if (v > 1.0) v = 1.0;
    if (!(v >= 0.0)) v = 0.0;
    Store(image.samples, k, v);
  }
}

void Stretch(ConstPlaneView intensity, PlaneView image) {
  if (intensity.size() == 0) return;
  double largest = intensity[0];
  double smallest = intensity[0];
  for (const double v : intensity) {
    if (v > largest) largest = v;
    if (v < smallest) smallest = v;
  }
  for (std::size_t k = 0; k < intensity.size(); ++k) {
    Store(image.samples, k, (intensity[k] - smallest) / (largest - smallest));
  }
}

}  // namespace orvanel
