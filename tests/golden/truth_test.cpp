// Tests the library against truth/truth.txt, which an independent script computed to 30 digits; truth/README.md
// describes how.
#include "tests/support/truth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/error_bounds.h"

namespace orvanel::reference {
namespace {

class Truth : public testing::TestWithParam<TrueEye> {};

TEST_P(Truth, IsMetByEverySampleAndScalar) {
  for (const Deviation& deviation : DeviationsFromTruth(GetParam())) {
    Record(deviation.what, deviation.largest, deviation.bound);
    EXPECT_LE(deviation.largest, deviation.bound) << deviation.what;
  }
}

std::string EyeName(const testing::TestParamInfo<TrueEye>& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Of, Truth, testing::ValuesIn(ReadTruth(ORVANEL_TRUTH)), EyeName);

TEST(TruthFile, HasSevenEyesAndAllTheirSamples) {
  const std::vector<TrueEye> eyes = ReadTruth(ORVANEL_TRUTH);
  ASSERT_EQ(eyes.size(), 7U);
  for (const TrueEye& eye : eyes) {
    EXPECT_EQ(eye.coefficients.size(), 28U) << eye.name;
    EXPECT_EQ(eye.scalars.size(), 4U) << eye.name;
    EXPECT_EQ(eye.samples.at("wavefront").size(), 11U) << eye.name;
    EXPECT_EQ(eye.samples.at("field").size(), 9U) << eye.name;
    EXPECT_EQ(eye.samples.at("psf").size(), 11U) << eye.name;
    EXPECT_EQ(eye.samples.at("mtf").size(), 14U) << eye.name;
  }
}

}  // namespace
}  // namespace orvanel::reference
