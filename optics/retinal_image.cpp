// Simulated retinal images: the chain that every object passes, and the two objects.
#include "optics/retinal_image.h"

#include <algorithm>

#include "optics/fft.h"
#include "optics/samples.h"
#include "optics/workspace.h"

namespace orvanel {

void MultiplyByMirroredOtf(const double* objectReal, const double* objectImag, const double* otfReal,
                           const double* otfImag, int n, double* productReal, double* productImag) {
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const std::size_t k = SampleIndex(r, c, n);
      const std::size_t m = SampleIndex(n - 1 - r, c, n);
      productReal[k] = otfReal[m] * objectReal[k] - objectImag[k] * otfImag[m];
      productImag[k] = objectReal[k] * otfImag[m] + otfReal[m] * objectImag[k];
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

void OpticsEngine::EnsureOtf() {
  if (otfValid == 1) return;
  std::copy(psfPlane.begin(), psfPlane.end(), otfRealPlane.begin());
  std::fill(otfImagPlane.begin(), otfImagPlane.end(), 0.0);
  Fft2(otfRealPlane.data(), otfImagPlane.data(), gridSize, 0);
  otfValid = 1;
}

void OpticsEngine::FilterThroughEye(double* objectReal, double* objectImag, double* image, double objectTotal) {
  const int n = gridSize;
  double* const productReal = workspace_->productReal.data();
  double* const productImag = workspace_->productImag.data();

  EnsureOtf();
  Fft2(objectReal, objectImag, n, 0);
  MultiplyByMirroredOtf(objectReal, objectImag, otfRealPlane.data(), otfImagPlane.data(), n, productReal, productImag);
  Fft2(productReal, productImag, n, 1);

  // The object has served: its plane takes the intensity, so that the caller's image is only written once.
  double* const intensity = objectReal;
  ShiftedPowerSpectrum(intensity, productReal, productImag);
  if (normaliseOutput == 0) {
    KeepTotal(intensity, n, objectTotal, image);
  } else {
    Stretch(intensity, n, image);
  }
}

void OpticsEngine::RingRetinalImage(double* image, double* optotype, double acuity, double* effectiveAcuity,
                                    int gapDirection) {
  GridPlane& object = workspace_->objectReal;
  GridPlane& imaginary = workspace_->objectImag;
  DrawRingOptotype(object.data(), gridSize, acuity, effectiveAcuity, gapDirection);
  StoreAll(optotype, object.data(), object.size());
  std::fill(imaginary.begin(), imaginary.end(), 0.0);
  FilterThroughEye(object.data(), imaginary.data(), image, Total(object.data(), gridSize));
}

}  // namespace orvanel
