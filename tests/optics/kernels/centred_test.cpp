// Tests the centred transform against its steps for one sample after the other.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "optics/kernels/tables.h"
#include "orvanel/optics_engine.h"
#include "tests/optics/kernels/scratch.h"
#include "tests/support/every_kernel.h"
#include "tests/support/plain.h"
#include "tests/support/planes.h"

namespace orvanel {
namespace {

using plain::ComplexPlane;
using reference::Noise;
using test::SameBits;

class KernelCentredFft2 : public test::EveryKernel {
 protected:
  static void ExpectPlain(const ComplexPlane& before) {
    for (const int direction : {1, 0, -1, 7, -7}) {
      ComplexPlane actual = before, expected = before;
      const test::KernelScratch scratch;
      GetParam()->centredTransform(actual.re.data(), actual.im.data(), direction, TransformTables(), scratch.Of());
      plain::CentredFft2(expected, direction, 256, 8);
      EXPECT_TRUE(SameBits(actual.re, expected.re)) << direction;
      EXPECT_TRUE(SameBits(actual.im, expected.im)) << direction;
    }
  }

  static ComplexPlane Constant(double re, double im) {
    return {std::vector<double>(65536, re), std::vector<double>(65536, im)};
  }
};

TEST_P(KernelCentredFft2, HasThePlainBitsOnEverySample) {
  for (unsigned seed = 1; seed <= 5; ++seed) ExpectPlain({Noise(65536, seed), Noise(65536, seed + 900)});
}

TEST_P(KernelCentredFft2, HasThePlainBitsOfAPoint) {
  for (const auto& [row, column] : {std::pair{128, 128}, {0, 0}, {255, 254}, {17, 200}}) {
    ComplexPlane plane = Constant(0.0, 0.0);
    plane.re[reference::At(row, column, 256)] = 0.7;
    ExpectPlain(plane);
    plane.im[reference::At(row, column, 256)] = -0.3;
    ExpectPlain(plane);
  }
}

TEST_P(KernelCentredFft2, HasThePlainBitsOfConstantsAndTheSignsOfZeros) {
  ExpectPlain(Constant(1.0, 0.0));
  ExpectPlain(Constant(0.3, -0.7));
  for (const double re : {0.0, -0.0}) {
    for (const double im : {0.0, -0.0}) ExpectPlain(Constant(re, im));
  }
}

TEST_P(KernelCentredFft2, HasThePlainBitsOfPlanesThatAreZeroInPart) {
  for (const double zero : {0.0, -0.0}) {
    ExpectPlain({Noise(65536, 3), std::vector<double>(65536, zero)});
    ExpectPlain({std::vector<double>(65536, zero), Noise(65536, 4)});
    ComplexPlane halves = {Noise(65536, 5), Noise(65536, 6)};
    for (std::size_t i = 0; i < 65536; ++i) {
      if (i / 256 % 3 == 0 || i % 5 == 0) halves.re[i] = halves.im[i] = zero;
    }
    ExpectPlain(halves);
  }
}

TEST_P(KernelCentredFft2, IsThatOfAnEngine) {
  OpticsEngine engine;
  ComplexPlane actual{Noise(65536, 7), Noise(65536, 8)}, expected = actual;
  engine.CentredFft2(actual.re.data(), actual.im.data(), -1, 256, 8);
  plain::CentredFft2(expected, -1, 256, 8);
  EXPECT_TRUE(SameBits(actual.re, expected.re) && SameBits(actual.im, expected.im));
}

ORVANEL_ON_EVERY_KERNEL(KernelCentredFft2);

}  // namespace
}  // namespace orvanel
