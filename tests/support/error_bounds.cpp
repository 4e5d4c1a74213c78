// Computes error bounds and measured differences.
#include "tests/support/error_bounds.h"

#include <gtest/gtest.h>
#include <orvanel/optics_engine.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace orvanel::reference {

namespace {

Real Largest(const Plane& plane) { return *std::max_element(plane.begin(), plane.end()); }

Plane Minus(const Plane& a, const Plane& b) {
  Plane result;
  for (std::size_t i = 0; i < a.size(); ++i) result.push_back(a[i] - b[i]);
  return result;
}

}  // namespace

void Record(const std::string& what, Real error, Real bound) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "%.2Le of %.2Le", error, bound);
  testing::Test::RecordProperty(what, text.data());
}

Real Difference(const std::string& what, const Plane& actual, const Plane& expected, Real bound) {
  Real largest = 0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const Real difference = std::abs(actual[i] - expected[i]);
    if (!(difference <= largest)) largest = std::isnan(difference) ? HUGE_VALL : difference;
  }
  Record(what, largest, bound);
  return largest;
}

Real RelativeError(const ComplexPlane& actual, const ComplexPlane& exact) {
  const Real error = std::hypot(Norm(Minus(actual.re, exact.re)), Norm(Minus(actual.im, exact.im)));
  return error / std::hypot(Norm(exact.re), Norm(exact.im));
}

Real TermMagnitude(int n, int m) {
  Real radial = 0;
  for (int s = 0; s <= (n - m) / 2; ++s) {
    Real term = 1;
    for (int i = 1; i <= s; ++i) term *= static_cast<Real>(n - 2 * s + i) / static_cast<Real>(i);
    for (int i = 1; i <= (n - m) / 2 - s; ++i) term *= static_cast<Real>((n + m) / 2 - s + i) / static_cast<Real>(i);
    radial += term;
  }
  return radial * std::pow(2.0L, std::max(0.0L, static_cast<Real>(m) / 2 - 1));
}

Real WavefrontError(const std::vector<double>& coefficients) {
  Real magnitude = 0;
  for (int n = 2; n <= 6; ++n) {
    for (int k = 0; k <= n; ++k) {
      const double c = coefficients[static_cast<std::size_t>(n * (n + 1) / 2 + k)];
      magnitude += std::abs(c) * TermMagnitude(n, std::abs(-n + 2 * k));
    }
  }
  return kWavefrontRoundings * kUlp * magnitude;
}

Real FieldError(const Plane& wavefront, Real wavefrontError) {
  Real waves = 0;
  for (const Real w : wavefront) waves = w == 1000 ? waves : std::max(waves, std::abs(w) / kWavelength);
  return 2 * kPi * wavefrontError / kWavelength + (kPhaseRoundings * 2 * kPi * waves + kSineRoundings) * kUlp +
         kTransformError;
}

Real PsfError(const Plane& psf, Real fieldError) { return 4 * std::sqrt(Sum(psf)) * fieldError + 4 * kUlp; }

Real OtfError(const Plane& psf, int n, Real fieldError) {
  return 2 * fieldError + kCentredTransformError * Norm(psf) * static_cast<Real>(n) / Sum(psf);
}

Real MtfError(Real otfError) { return 2 * otfError + 4 * kUlp; }

Real WeightedPhaseError(Real otfError) { return kPi * otfError + 4 * kUlp; }

Real ImageError(const Plane& object, const Plane& psf, const Plane& image, int n, Real fieldError) {
  const Real side = static_cast<Real>(n), area = side * side;
  const Real objectNorm = Norm(object) / side, objectLargest = Sum(object) / area;  // of the spectrum
  const Real otfNorm = Norm(psf) / side, otfLargest = Sum(psf) / area;
  const Real productError =
      objectNorm * otfLargest * (kTransformError + 2 * fieldError) + objectLargest * kTransformError * otfNorm;
  const Real norm = std::sqrt(Sum(image));
  // The last transform's share twice: the rounding of the product itself is less than that.
  const Real error = side * productError + 2 * kTransformError * norm;
  return 2 * std::sqrt(Largest(image)) * error;
}

Real ScaledImageError(const Plane& object, const Plane& image, int n, Real imageError) {
  const Real scale = Sum(object) / Sum(image);
  return 2 * scale * imageError + Largest(image) * scale * static_cast<Real>(n * n) * kUlp;
}

Real StretchedImageError(const Plane& image, Real imageError) {
  return 4 * imageError / (Largest(image) - *std::min_element(image.begin(), image.end())) + 4 * kUlp;
}

bool HasOnePeak(const Plane& intensity, Real psfError) {
  Plane sorted = intensity;
  std::nth_element(sorted.begin(), sorted.begin() + 1, sorted.end(), std::greater<>());
  return sorted[1] / sorted[0] < 1 - 2 * psfError;
}

}  // namespace orvanel::reference
