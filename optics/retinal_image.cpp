// Filters an object with a transfer function, and scales the image.
#include "optics/retinal_image.h"

#include <cstddef>

#include "optics/samples.h"

namespace orvanel {

void MultiplyByMirroredOtf(const double* objectReal, const double* objectImag, const double* otfReal,
                           const double* otfImag, int n, double* productReal, double* productImag) {
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const std::size_t k = SampleIndex(r, c, n);
      const std::size_t m = SampleIndex(n - 1 - r, c, n);
      const double re = otfReal[m] * objectReal[k] - objectImag[k] * otfImag[m];
      productImag[k] = objectReal[k] * otfImag[m] + otfReal[m] * objectImag[k];
      productReal[k] = re;
    }
  }
}

double Total(const double* plane, int n) {
  double total = 0.0;
  for (std::size_t k = 0; k < SampleCount(n); ++k) total += plane[k];
  return total;
}

void KeepTotal(const double* intensity, int n, double objectTotal, double* image) {
  const double total = Total(intensity, n);
  for (std::size_t k = 0; k < SampleCount(n); ++k) {
    double v = (objectTotal * intensity[k]) / total;
    if (v > 1.0) v = 1.0;
    if (!(v >= 0.0)) v = 0.0;
    Store(image, k, v);
  }
}

void Stretch(const double* intensity, int n, double* image) {
  double largest = intensity[0];
  double smallest = intensity[0];
  for (std::size_t k = 1; k < SampleCount(n); ++k) {
    if (intensity[k] > largest) largest = intensity[k];
    if (intensity[k] < smallest) smallest = intensity[k];
  }
  for (std::size_t k = 0; k < SampleCount(n); ++k) {
    Store(image, k, (intensity[k] - smallest) / (largest - smallest));
  }
}

}  // namespace orvanel
