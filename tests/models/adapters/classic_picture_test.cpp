// Tests the retinal images of pictures.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "models/adapters/classic_model.h"
#include "orvanel/ring.h"
#include "targets/sector_star.h"
#include "tests/eye/eyes.h"

namespace orvanel::models {
namespace {

// Transforms of 2^16 samples add up 16 roundings, each way and for object and eye; far above that, far below a level.
constexpr double kRounding = 1e-11;

RetinalPicture See(const Eye& eye, std::vector<Plane> channels) {
  ObjectPicture object;
  object.channels = std::move(channels);
  ClassicModel model;
  Results results;
  model.Compute(eye, {Need::kImages}, results);
  return model.RetinalPictureOf(std::move(object));
}

Plane RingPlane() {
  Plane plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  DrawRing(plane.data(), ORVANEL_GRID_SIZE, 60, 2);
  return plane;
}

TEST(RetinalPicture, OfTheStarIsTheStarAsTheLibraryShowsItWithTotalLightKept) {
  const Eye eye = AsymmetricEye();
  ClassicModel model;
  Results results;
  Plane star;
  model.Compute(eye, {Need::kImages}, results);
  model.ImageOf(SectorStar(), ImageKind::kTotalLight, star);
  EXPECT_EQ(See(eye, {SectorStar()}).seen[0], star);
}

TEST(RetinalPicture, APointIsSeenAsThePsfWithRowsMirrored) {
  const Eye eye = AsymmetricEye();
  Results results;
  ClassicModel().Compute(eye, {Need::kPsf}, results);
  const Plane& psf = results.psf;
  const double total = SumOf(psf);
  Plane point(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.0);
  point[256 * 90 + 150] = 0.75;
  const Plane image = See(eye, {point}).contrastKept[0];
  for (int row = 0; row < 256; ++row) {
    for (int column = 0; column < 256; ++column) {
      const int psfRow = (128 - (row - 90) + 512) % 256, psfColumn = (128 + (column - 150) + 512) % 256;
      const double expected = 0.75 * psf[static_cast<std::size_t>(256 * psfRow + psfColumn)] / total;
      ASSERT_NEAR(image[static_cast<std::size_t>(256 * row + column)], expected, kRounding) << row << " " << column;
    }
  }
}

TEST(RetinalPicture, EvenLightStaysAsItIs) {
  const Eye eye = AsymmetricEye();
  const RetinalPicture picture = See(eye, {Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.3)});
  for (std::size_t k = 0; k < ORVANEL_PLANE_SAMPLES; ++k) {
    ASSERT_NEAR(picture.seen[0][k], 0.3, kRounding);
    ASSERT_NEAR(picture.contrastKept[0][k], 0.3, kRounding);
  }
}

TEST(RetinalPicture, ContrastKeptHasTheObjectsLightAndIsTheRootOfWhatIsSeen) {
  const Eye eye = AsymmetricEye();
  Plane ramp(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  for (std::size_t k = 0; k < ramp.size(); ++k) ramp[k] = static_cast<double>(k * 37 % 256) / 512.0;
  const RetinalPicture picture = See(eye, {ramp});
  const Plane &seen = picture.seen[0], &kept = picture.contrastKept[0];
  EXPECT_NEAR(SumOf(kept) / SumOf(ramp), 1.0, kRounding);
  const double factor = kept[5] / std::sqrt(seen[5]);
  for (std::size_t k = 0; k < kept.size(); ++k) ASSERT_NEAR(kept[k], factor * std::sqrt(seen[k]), kRounding) << k;
}

TEST(RetinalPicture, BlackIsSeenBlackAndNotAsNoNumber) {
  const Eye eye = AsymmetricEye();
  const RetinalPicture picture = See(eye, {Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.0)});
  EXPECT_EQ(picture.seen[0], Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.0));
  EXPECT_EQ(picture.contrastKept[0], Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.0));
}

TEST(RetinalPicture, EachChannelIsBlurredAsIfItWereAlone) {
  const Eye eye = AsymmetricEye();
  const Plane star = SectorStar(), ring = RingPlane();
  const RetinalPicture colour = See(eye, {star, ring, star});
  ASSERT_EQ(colour.contrastKept.size(), 3U);
  EXPECT_EQ(colour.contrastKept[1], See(eye, {ring}).contrastKept[0]);
  EXPECT_EQ(colour.contrastKept[2], colour.contrastKept[0]);
}

// Half grey, half strong red.
std::vector<Plane> HalfRed() {
  std::vector<Plane> channels(3, Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.4));
  for (std::size_t k = 0; k < ORVANEL_PLANE_SAMPLES; ++k) {
    if (k % 256 >= 128) {
      channels[0][k] = 0.9;
      channels[1][k] = 0.01;
      channels[2][k] = 0.0;
    }
  }
  return channels;
}

TEST(RetinalPicture, GreyStaysGreyWhateverColoursStandBesideIt) {
  constexpr double kLevel = 1.0 / 255.0;  // what nobody can see in 8 bits
  const Eye eye = PerfectEye(Millimetres(3.0));
  const RetinalPicture picture = See(eye, HalfRed());
  for (const auto* view : {&picture.seen, &picture.contrastKept}) {
    const std::size_t grey = 256 * 100 + 64;  // far from the red half
    EXPECT_NEAR((*view)[0][grey], (*view)[1][grey], kLevel);
    EXPECT_NEAR((*view)[0][grey], (*view)[2][grey], kLevel);
  }
}

TEST(RetinalPicture, ThreeChannelsTogetherKeepTheirLight) {
  const Eye eye = AsymmetricEye();
  std::vector<Plane> channels = HalfRed();
  for (Plane& channel : channels) {
    for (double& v : channel) v *= 0.5;  // far enough from white that nothing is clipped
  }
  const RetinalPicture picture = See(eye, channels);
  double before = 0.0, after = 0.0;
  for (std::size_t c = 0; c < 3; ++c) {
    before += SumOf(channels[c]);
    after += SumOf(picture.seen[c]);
    for (const double v : picture.seen[c]) ASSERT_LT(v, 1.0);
  }
  EXPECT_NEAR(after / before, 1.0, kRounding);
}

TEST(RetinalPicture, ThreeEqualChannelsAreSeenAsOne) {
  const Eye eye = AsymmetricEye();
  const Plane star = SectorStar();
  const RetinalPicture colour = See(eye, {star, star, star});
  const Plane grey = See(eye, {star}).seen[0];
  for (std::size_t k = 0; k < grey.size(); ++k) ASSERT_NEAR(colour.seen[1][k], grey[k], kRounding) << k;
}

}  // namespace
}  // namespace orvanel::models
