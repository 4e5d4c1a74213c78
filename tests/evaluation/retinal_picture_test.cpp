// What an eye makes of a picture.
#include "evaluation/retinal_picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::evaluation {
namespace {

// Transforms of 2^16 samples add up 16 roundings, each way and for object and eye; far above that, far below a level.
constexpr double kRounding = 1e-11;

SeenPicture See(const SimulatedEye& simulated, std::vector<Plane> channels) {
  ObjectPicture object;
  object.channels = std::move(channels);
  return PictureSeenBy(simulated.eye, std::move(object));
}

double Sum(const Plane& plane) { return std::accumulate(plane.begin(), plane.end(), 0.0); }

TEST(SeenPicture, OfTheStarIsTheStarAsTheLibraryShowsItWithTotalLightKept) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  EXPECT_EQ(See(simulated, {simulated.results.star.original}).seen[0], simulated.results.star.totalLight);
}

TEST(SeenPicture, APointIsSeenAsThePsfWithRowsMirrored) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  const Plane& psf = simulated.results.psf;
  Plane point(ORVANEL_PLANE_SAMPLES, 0.0);
  point[256 * 90 + 150] = 0.75;
  const Plane image = See(simulated, {point}).contrastKept[0];
  for (int row = 0; row < 256; ++row) {
    for (int column = 0; column < 256; ++column) {
      const int psfRow = (128 - (row - 90) + 512) % 256, psfColumn = (128 + (column - 150) + 512) % 256;
      const double expected = 0.75 * psf[static_cast<std::size_t>(256 * psfRow + psfColumn)] / Sum(psf);
      ASSERT_NEAR(image[static_cast<std::size_t>(256 * row + column)], expected, kRounding) << row << " " << column;
    }
  }
}

TEST(SeenPicture, EvenLightStaysAsItIs) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  const SeenPicture picture = See(simulated, {Plane(ORVANEL_PLANE_SAMPLES, 0.3)});
  for (std::size_t k = 0; k < ORVANEL_PLANE_SAMPLES; ++k) {
    ASSERT_NEAR(picture.seen[0][k], 0.3, kRounding);
    ASSERT_NEAR(picture.contrastKept[0][k], 0.3, kRounding);
  }
}

TEST(SeenPicture, ContrastKeptHasTheObjectsLightAndIsTheRootOfWhatIsSeen) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  Plane ramp;
  for (int k = 0; k < ORVANEL_PLANE_SAMPLES; ++k) ramp.push_back((k * 37 % 256) / 512.0);
  const SeenPicture picture = See(simulated, {ramp});
  const Plane &seen = picture.seen[0], &kept = picture.contrastKept[0];
  EXPECT_NEAR(Sum(kept) / Sum(ramp), 1.0, kRounding);
  const double factor = kept[5] / std::sqrt(seen[5]);
  for (std::size_t k = 0; k < kept.size(); ++k) ASSERT_NEAR(kept[k], factor * std::sqrt(seen[k]), kRounding) << k;
}

TEST(SeenPicture, BlackIsSeenBlackAndNotAsNoNumber) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  const SeenPicture picture = See(simulated, {Plane(ORVANEL_PLANE_SAMPLES, 0.0)});
  EXPECT_EQ(picture.seen[0], Plane(ORVANEL_PLANE_SAMPLES, 0.0));
  EXPECT_EQ(picture.contrastKept[0], Plane(ORVANEL_PLANE_SAMPLES, 0.0));
}

TEST(SeenPicture, EachChannelIsBlurredAsIfItWereAlone) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  const Plane &star = simulated.results.star.original, &ring = simulated.results.rings[0].original;
  const SeenPicture colour = See(simulated, {star, ring, star});
  ASSERT_EQ(colour.contrastKept.size(), 3U);
  EXPECT_EQ(colour.contrastKept[1], See(simulated, {ring}).contrastKept[0]);
  EXPECT_EQ(colour.contrastKept[2], colour.contrastKept[0]);
}

// Half grey, half strong red.
std::vector<Plane> HalfRed() {
  std::vector<Plane> channels(3, Plane(ORVANEL_PLANE_SAMPLES, 0.4));
  for (std::size_t k = 0; k < ORVANEL_PLANE_SAMPLES; ++k) {
    if (k % 256 >= 128) {
      channels[0][k] = 0.9;
      channels[1][k] = 0.01;
      channels[2][k] = 0.0;
    }
  }
  return channels;
}

TEST(SeenPicture, GreyStaysGreyWhateverColoursStandBesideIt) {
  constexpr double kLevel = 1.0 / 255.0;  // what nobody can see in 8 bits
  const SimulatedEye simulated = Simulated(PerfectEye(Millimetres(3.0)), {{1.0, Gap::kUp}});
  const SeenPicture picture = See(simulated, HalfRed());
  for (const auto* view : {&picture.seen, &picture.contrastKept}) {
    const std::size_t grey = 256 * 100 + 64;  // far from the red half
    EXPECT_NEAR((*view)[0][grey], (*view)[1][grey], kLevel);
    EXPECT_NEAR((*view)[0][grey], (*view)[2][grey], kLevel);
  }
}

TEST(SeenPicture, ThreeChannelsTogetherKeepTheirLight) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  std::vector<Plane> channels = HalfRed();
  for (Plane& channel : channels) {
    for (double& v : channel) v *= 0.5;  // far enough from white that nothing is clipped
  }
  const SeenPicture picture = See(simulated, channels);
  double before = 0.0, after = 0.0;
  for (std::size_t c = 0; c < 3; ++c) {
    before += Sum(channels[c]);
    after += Sum(picture.seen[c]);
    for (const double v : picture.seen[c]) ASSERT_LT(v, 1.0);
  }
  EXPECT_NEAR(after / before, 1.0, kRounding);
}

TEST(SeenPicture, ThreeEqualChannelsAreSeenAsOne) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  const Plane& star = simulated.results.star.original;
  const SeenPicture colour = See(simulated, {star, star, star});
  const Plane grey = See(simulated, {star}).seen[0];
  for (std::size_t k = 0; k < grey.size(); ++k) ASSERT_NEAR(colour.seen[1][k], grey[k], kRounding) << k;
}

}  // namespace
}  // namespace orvanel::evaluation
