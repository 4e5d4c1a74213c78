// Tests the constants of the transforms.
#include "optics/kernels/tables.h"

#include <gtest/gtest.h>

#include "base/elementary.h"
#include "tests/support/every_kernel.h"

namespace orvanel {
namespace {

TEST(KernelTables, HoldTheFactorsOfSixteenBySixteen) {
  const Tables& tables = TransformTables();
  for (int n = 0; n < 16; ++n) {
    for (int k = 0; k < 16; ++k) {
      const SineCosine factor = SineAndCosineOfTurn(n * k, 256);
      EXPECT_EQ(tables.cosine[16 * n + k], factor.cosine);
      EXPECT_EQ(tables.sine[16 * n + k], factor.sine);
    }
  }
}

TEST(KernelTables, HoldTheFactorsOfTheCentredTransformAsItsStepsMakeThem) {
  const Tables& tables = TransformTables();
  for (int k = 0; k < 256; ++k) {
    const SineCosine forward = SineAndCosine(k * (-6.283185307179586 / 256)),
                     backward = SineAndCosine(k * (6.283185307179586 / 256));
    EXPECT_TRUE(test::SameBits(&tables.centredCosine[0][k], &forward.cosine, 1)) << k;
    EXPECT_TRUE(test::SameBits(&tables.centredSine[0][k], &forward.sine, 1)) << k;
    EXPECT_TRUE(test::SameBits(&tables.centredCosine[1][k], &backward.cosine, 1)) << k;
    EXPECT_TRUE(test::SameBits(&tables.centredSine[1][k], &backward.sine, 1)) << k;
  }
}

TEST(KernelTables, LendTheLibrarysSineAndCosine) {
  double sine = 0.0, cosine = 0.0;
  for (const double x : {0.3, -1e9, 1e300}) {
    TransformTables().sineAndCosine(x, &sine, &cosine);
    EXPECT_EQ(sine, SineAndCosine(x).sine);
    EXPECT_EQ(cosine, SineAndCosine(x).cosine);
  }
}

TEST(KernelTables, AreMadeOnce) { EXPECT_EQ(&TransformTables(), &TransformTables()); }

}  // namespace
}  // namespace orvanel
