// Tests the steps from object to image on planes of four samples.
#include "optics/retinal_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace orvanel {
namespace {

TEST(MirroredProduct, ReadsTheTransferFunctionFromTheLastRowUp) {
  const double objectReal[4] = {2.0, 3.0, 5.0, 7.0};
  const double objectImag[4] = {11.0, 13.0, 17.0, 19.0};
  const double otfReal[4] = {23.0, 29.0, 31.0, 37.0};
  const double otfImag[4] = {41.0, 43.0, 47.0, 53.0};
  double re[4], im[4];
  std::copy_n(objectReal, 4, re);
  std::copy_n(objectImag, 4, im);
  MultiplyByMirroredOtf({{re, 2}, {im, 2}}, {{otfReal, 2}, {otfImag, 2}});
  const int mirrored[4] = {2, 3, 0, 1};
  for (int k = 0; k < 4; ++k) {
    const int m = mirrored[k];
    EXPECT_EQ(re[k], otfReal[m] * objectReal[k] - objectImag[k] * otfImag[m]);
    EXPECT_EQ(im[k], objectReal[k] * otfImag[m] + otfReal[m] * objectImag[k]);
  }
}

TEST(KeepTotal, ScalesToTheObjectsSumBeforeItClips) {
  const double intensity[4] = {1.0, 2.0, 3.0, 4.0};
  double image[4];
  KeepTotal({intensity, 2}, 2.5, {image, 2});
  for (int k = 0; k < 4; ++k) EXPECT_EQ(image[k], (2.5 * intensity[k]) / 10.0);
  KeepTotal({intensity, 2}, 3.0, {image, 2});
  EXPECT_EQ(image[0], 0.3);
  EXPECT_EQ(image[2], (3.0 * 3.0) / 10.0);
  EXPECT_EQ(image[3], 1.0);  // 1.2 before the clip
}

TEST(KeepTotal, OfNothingIsBlack) {
  const double intensity[4] = {0.0, 0.0, 0.0, 0.0};
  double image[4] = {5.0, 5.0, 5.0, 5.0};
  KeepTotal({intensity, 2}, 3.0, {image, 2});
  for (const double v : image) EXPECT_EQ(v, 0.0);
}

TEST(Stretch, SpansExactlyZeroToOneByTrueDivision) {
  // A range of 49, whose reciprocal times 49 is not 1.
  const double intensity[4] = {17.0, 3.0, 52.0, 8.0};
  ASSERT_NE((1.0 / 49.0) * 49.0, 1.0);
  double image[4];
  Stretch({intensity, 2}, {image, 2});
  EXPECT_EQ(image[1], 0.0);
  EXPECT_EQ(image[2], 1.0);
  EXPECT_EQ(image[0], 14.0 / 49.0);
  EXPECT_EQ(image[3], 5.0 / 49.0);
}

TEST(Stretch, OfAConstantIsNotANumber) {
  const double intensity[4] = {0.3, 0.3, 0.3, 0.3};
  double image[4];
  Stretch({intensity, 2}, {image, 2});
  for (const double v : image) EXPECT_TRUE(std::isnan(v));
}

}  // namespace
}  // namespace orvanel
