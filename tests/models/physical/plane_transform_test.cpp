// Transforms of planes against their definition.
#include "models/physical/plane_transform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "tests/support/every_kernel.h"
#include "tests/support/planes.h"

namespace orvanel::physical {
namespace {

class PlaneTransforms : public test::EveryKernel {};

TEST_P(PlaneTransforms, AreTheBackwardTransformUpToTheirScale) {
  PlaneTransform transform(*GetParam());
  for (const int side : {4, 32, 256}) {
    const auto samples = static_cast<std::size_t>(side * side);
    std::vector<double> re = reference::Noise(side * side, 1), im = reference::Noise(side * side, 2);
    const std::vector<double> x = re, y = im;
    const double scale = transform(re.data(), im.data(), side);
    for (const auto& [p, q] : {std::pair{0, 0}, {1, 0}, {3, 2}, {side - 1, side / 2}}) {
      std::complex<double> sum = 0.0;
      for (std::size_t i = 0; i < samples; ++i) {
        const int j = static_cast<int>(i) / side, k = static_cast<int>(i) % side;
        sum += std::complex<double>(x[i], y[i]) * std::polar(1.0, 2 * std::numbers::pi * (j * p + k * q) / side);
      }
      const auto at = static_cast<std::size_t>(p * side + q);
      EXPECT_NEAR(re[at], scale * sum.real(), 1e-10 * scale * side) << side;
      EXPECT_NEAR(im[at], scale * sum.imag(), 1e-10 * scale * side) << side;
    }
  }
}

ORVANEL_ON_EVERY_KERNEL(PlaneTransforms);

}  // namespace
}  // namespace orvanel::physical
