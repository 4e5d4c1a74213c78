// White light, and the chromatic aberration of the eye against its published values.
#include "models/physical/light.h"

#include <gtest/gtest.h>

namespace orvanel::physical {
namespace {

TEST(Light, ChromaticAberrationHasThePublishedValues) {
  EXPECT_NEAR(ChromaticDifference(450, 555), -0.8271, 5e-5);
  EXPECT_NEAR(ChromaticDifference(500, 555), -0.3575, 5e-5);
  EXPECT_NEAR(ChromaticDifference(589, 555), 0.1685, 5e-5);
  EXPECT_NEAR(ChromaticDifference(633, 555), 0.346, 5e-4);
  EXPECT_NEAR(ChromaticDifference(700, 555), 0.5545, 5e-5);
  EXPECT_NEAR(ChromaticDifference(850, 555), 0.86, 5e-3);
  EXPECT_EQ(ChromaticDifference(555, 555), 0.0);
}

TEST(Light, SensitivityIsLinearBetweenItsTabulatedValues) {
  EXPECT_DOUBLE_EQ(PhotopicSensitivity(400), 0.000396);
  EXPECT_DOUBLE_EQ(PhotopicSensitivity(555), 1.0);
  EXPECT_DOUBLE_EQ(PhotopicSensitivity(507), 0.4073 + 0.4 * (0.503 - 0.4073));
  EXPECT_DOUBLE_EQ(PhotopicSensitivity(700), 0.004102);
  EXPECT_EQ(PhotopicSensitivity(399.9), 0.0);
  EXPECT_EQ(PhotopicSensitivity(700.1), 0.0);
}

TEST(Light, WhiteIsThePhotopicSensitivityInStepsOfTen) {
  const Light white = WhiteLight();
  ASSERT_EQ(white.size(), 31u);
  for (std::size_t i = 0; i < white.size(); ++i)
    EXPECT_EQ(white[i].wavelengthNm, 400.0 + 10.0 * static_cast<double>(i));
  EXPECT_DOUBLE_EQ(white[0].weight, 0.000396);
  EXPECT_DOUBLE_EQ(white[15].weight, 0.99495);
  EXPECT_DOUBLE_EQ(white[16].weight, 0.995);
  EXPECT_DOUBLE_EQ(white[30].weight, 0.004102);
  // The table's integral is 106.857 nm (CIE 1924, 380 to 780 nm); what lies outside of 400 to 700 nm is some 0.08 nm.
  double sum = 0.0;
  for (const SpectralLine& line : white) sum += 10.0 * line.weight;
  EXPECT_NEAR(sum, 106.8, 0.1);
}

}  // namespace
}  // namespace orvanel::physical
