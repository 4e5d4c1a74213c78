// Tests the synthesis by quadrants against the synthesis sample by sample.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "optics/kernels/kernels.h"
#include "orvanel/optics_engine.h"
#include "tests/support/every_kernel.h"
#include "tests/support/plain.h"
#include "tests/support/planes.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;
using test::SameBits;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// What is not a number has no bits of its own: sign and payload are the compiler's choice.
std::vector<double> WithOneNan(std::vector<double> plane) {
  for (double& v : plane) v = std::isnan(v) ? kNan : v;
  return plane;
}

class KernelWavefront : public test::EveryKernel {
 protected:
  static void ExpectPlain(const Coefficients& c, int firstOrder) {
    std::vector<double> w(65536, -3.0), plainW(65536, -3.0), plainX(65536), plainY(65536);
    GetParam()->synthesize(c.data(), firstOrder, w.data());
    plain::SynthesizeWavefront(c.data(), 4.0, firstOrder, 256, plainW, plainX, plainY);
    EXPECT_TRUE(SameBits(WithOneNan(w), WithOneNan(plainW)));
  }

  static Coefficients Some(unsigned seed) {
    const std::vector<double> noise = reference::Noise(kCoefficients, seed);
    Coefficients c{};
    for (std::size_t j = 0; j < c.size(); ++j) c[j] = 1e-3 * noise[j];
    return c;
  }
};

TEST_P(KernelWavefront, HasThePlainBitsOnEverySample) {
  for (unsigned seed = 1; seed <= 20; ++seed) ExpectPlain(Some(seed), 2);
}

TEST_P(KernelWavefront, HasThePlainBitsWithoutTheSecondOrder) { ExpectPlain(Some(77), 3); }

TEST_P(KernelWavefront, HasThePlainBitsForEachTermAlone) {
  for (std::size_t j = 0; j < kCoefficients; ++j) {
    Coefficients c{};
    c[j] = -0.7123e-3;
    ExpectPlain(c, 2);
  }
}

TEST_P(KernelWavefront, HasThePlainBitsForTermsOfVeryDifferentSize) {
  Coefficients c = Some(5);
  for (std::size_t j = 0; j < c.size(); ++j) c[j] *= std::pow(1e9, static_cast<double>(j % 5) - 2.0);
  ExpectPlain(c, 2);
  for (double& v : c) v *= 1e-305;
  ExpectPlain(c, 2);
  for (double& v : c) v *= 1e305 * 1e290;
  ExpectPlain(c, 2);
}

TEST_P(KernelWavefront, KeepsTheSignsOfZeros) {
  Coefficients zeros{};
  for (std::size_t j = 0; j < zeros.size(); j += 2) zeros[j] = -0.0;
  ExpectPlain(zeros, 2);
}

TEST_P(KernelWavefront, TakesWhatIsNotFiniteAsThePlainFormDoes) {
  for (const double value : {kNan, kInfinity, -kInfinity}) {
    for (const std::size_t j : {3U, 4U, 7U, 12U, 27U}) {
      Coefficients c = Some(9);
      c[j] = value;
      ExpectPlain(c, 2);
      ExpectPlain(c, 3);
    }
  }
}

ORVANEL_ON_EVERY_KERNEL(KernelWavefront);

}  // namespace
}  // namespace orvanel
