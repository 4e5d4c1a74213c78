// Tests the images of letters: sizes, and a lens that corrects the eye.
#include "evaluation/letters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/eye/eyes.h"

namespace orvanel::evaluation {
namespace {

double LargestDifference(const Plane& a, const Plane& b) {
  double largest = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::fabs(a[i] - b[i]));
  return largest;
}

Eye Sharp() {
  Eye eye = PerfectEye(Millimetres(4.0));
  eye.referenceWavelength = Nanometres(555.0);
  return eye;
}

TEST(Letters, HaveTheirAngularSize) {
  const LetterViews views = *SeeLetters(Sharp(), {});
  ASSERT_EQ(views.lines.size(), 5u);
  for (const LetterLine& line : views.lines) {
    const SizedObject& object = line.image.object;
    // Five letters, four gaps and two margins of 5' * 10^logMAR; one letter between two margins.
    const double letter = 5.0 * std::pow(10.0, line.logMar);
    EXPECT_NEAR(object.pixel.value() * object.channels[0].columns(), 11.0 * letter, 1e-9);
    EXPECT_NEAR(object.pixel.value() * object.channels[0].rows(), 3.0 * letter, 1e-9);
    EXPECT_EQ(object.surround.at(0), 1.0);
  }
  EXPECT_EQ(views.throughFocus.size(), 9u);
}

// The eye of -0.5 D is sharp behind a lens of -0.5 D, and an eye that is 1 D short-sighted through +0.5 D.
TEST(Letters, ALensMovesTheFocus) {
  const LetterViews sharp = *SeeLetters(Sharp(), {}), myope = *SeeLetters(BehindLens(Sharp(), 0.5), {});
  for (std::size_t i = 2; i < 9; ++i) {
    EXPECT_EQ(myope.throughFocus[i].lensDioptres, sharp.throughFocus[i].lensDioptres);
    EXPECT_LT(LargestDifference(myope.throughFocus[i - 2].image.seen[0], sharp.throughFocus[i].image.seen[0]), 1e-9);
  }
  EXPECT_GT(LargestDifference(myope.throughFocus[4].image.seen[0], sharp.throughFocus[4].image.seen[0]), 0.1);
}

// The sharp eye behind +0.5 D sees what the eye that is 0.5 D short-sighted sees without a lens.
TEST(Letters, AStripHasTheImageOfEachLens) {
  int images = 0;
  const FocusStrip strip = SeeStrip(Sharp(), {}, {"K", 0.2, {-0.25, 0.5}}, [&images] { ++images; });
  const FocusStrip myope = SeeStrip(BehindLens(Sharp(), 0.5), {}, {"K", 0.2, {0.0}});
  EXPECT_EQ(images, 2);
  ASSERT_EQ(strip.steps.size(), 2u);
  EXPECT_EQ(strip.steps[1].lensDioptres, 0.5);
  EXPECT_LT(LargestDifference(strip.steps[1].image.seen[0], myope.steps[0].image.seen[0]), 1e-9);
  EXPECT_GT(LargestDifference(strip.steps[0].image.seen[0], myope.steps[0].image.seen[0]), 0.01);
  const SizedObject& object = strip.steps[0].image.object;
  EXPECT_NEAR(object.pixel.value() * object.channels[0].columns(), 15.0 * std::pow(10.0, 0.2), 1e-9);
}

// A short-sighted eye has a positive coefficient of defocus: 1 D over 4 mm is 4 / (4 sqrt 3) um.
TEST(Letters, APlusLensMakesAnEyeShortSighted) {
  const Eye eye = BehindLens(Sharp(), 1.0);
  EXPECT_NEAR(eye.coefficients.osa().at(4), 1.0 / std::sqrt(3.0), 1e-15);
}

TEST(Letters, AreLeftOutWhereTheBlurIsTooWide) {
  Eye eye = Sharp();
  eye.pupil = Millimetres(8.0);
  EXPECT_FALSE(SeeLetters(BehindLens(eye, 60.0), {}));
}

}  // namespace
}  // namespace orvanel::evaluation
