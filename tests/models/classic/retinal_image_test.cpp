// Tests images of point-like objects and PSFs, which have closed forms.
#include "optics/retinal_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

#include "optics/samples.h"
#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;
using Plane = std::vector<double>;

// Rounding of the chain of transforms, relative to the image's brightest sample.
constexpr double kRounding = 1e-12;

constexpr int kSide = 256;

struct Point {
  int row;
  int column;
};

Plane PlaneOf(std::initializer_list<Point> points, double value) {
  Plane plane(SampleCount(kSide), 0.0);
  for (const Point p : points) plane[SampleIndex(p.row, p.column, kSide)] = value;
  return plane;
}

// The image of dim points through a PSF made of points; its total is kept, and is too small for the clip at 1.
constexpr double kDim = 0.25;
Plane ImageOf(std::initializer_list<Point> object, std::initializer_list<Point> psf) {
  OpticsEngine engine;
  const Plane points = PlaneOf(psf, 1.0);
  std::copy(points.begin(), points.end(), engine.psfPlane.begin());
  Plane image(SampleCount(kSide), -1.0);
  EXPECT_EQ(engine.PatternRetinalImage(image.data(), PlaneOf(object, kDim).data(), kSide), 1);
  return image;
}

double At(const Plane& plane, int row, int column) { return plane[SampleIndex(row, column, kSide)]; }

// An engine that holds the PSF of an eye.
OpticsEngine Eye(const Coefficients& c, double pupil = 4.0) {
  OpticsEngine engine(c.data(), pupil, kSide, 1, 1, 1);
  Plane psf(SampleCount(kSide));
  double pitch = 0.0, strehl = 0.0;
  engine.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, kSide);
  engine.normaliseOutput = 0;
  return engine;
}

Coefficients Blurred() {
  Coefficients c{};
  c[4] = 0.6 * kWavelength;
  c[7] = 0.35 * kWavelength;
  c[8] = 0.15 * kWavelength;
  return c;
}

Plane RingImage(OpticsEngine& engine, double acuity, int gapDirection, Plane* optotype = nullptr) {
  Plane image(SampleCount(kSide), -1.0), drawing(SampleCount(kSide), -1.0);
  double effective = 0.0;
  testing::internal::CaptureStdout();
  engine.RingRetinalImage(image.data(), drawing.data(), acuity, &effective, gapDirection);
  testing::internal::GetCapturedStdout();
  if (optotype != nullptr) *optotype = drawing;
  return image;
}

TEST(RetinalImage, OfAPointThroughACentredPointStaysWhereItIs) {
  const Plane image = ImageOf({{100, 80}}, {{128, 128}});
  EXPECT_NEAR(At(image, 100, 80), kDim, kRounding);
  EXPECT_NEAR(std::accumulate(image.begin(), image.end(), 0.0), kDim, kRounding);
}

TEST(RetinalImage, FiltersWithThePsfUpsideDown) {
  // The PSF's light is 5 rows below its centre and 3 columns to the right: above and to the right of the object.
  const Plane image = ImageOf({{100, 80}}, {{133, 131}});
  EXPECT_NEAR(At(image, 95, 83), kDim, kRounding);
}

TEST(RetinalImage, WrapsRoundTheEdges) {
  const Plane image = ImageOf({{2, 250}}, {{133, 140}});
  EXPECT_NEAR(At(image, 253, 6), kDim, kRounding);
}

TEST(RetinalImage, RowsAreMirroredAtTheLastOneSoThatThePhaseTurnsOnceDownThePsf) {
  // Two points of the PSF 64 rows apart meet on one sample from two points of the object: their fields are a quarter
  // turn apart, so that the sample gets 2 of light beside 1 each for the two that do not meet. Without the turn it
  // would get 4.
  const Plane image = ImageOf({{100, 80}, {164, 80}}, {{128, 128}, {192, 128}});
  const double single = At(image, 164, 80);
  EXPECT_GT(single, 0.1);
  EXPECT_NEAR(At(image, 36, 80), single, kRounding);
  EXPECT_NEAR(At(image, 100, 80) / single, 2.0, kRounding);
}

TEST(RetinalImage, PhaseDoesNotTurnAlongTheRows) {
  const Plane image = ImageOf({{80, 100}, {80, 164}}, {{128, 128}, {128, 192}});
  EXPECT_NEAR(At(image, 80, 164) / At(image, 80, 100), 4.0, kRounding);
}

TEST(RetinalImage, PhaseTurnsByAHalfOverHalfThePlane) {
  // 32 + 96 rows apart the fields are opposite, and the light vanishes where they meet.
  const Plane image = ImageOf({{60, 80}, {188, 80}}, {{96, 128}, {224, 128}});
  // The PSF's points lie 32 rows above and 96 below the centre: images at object + 32 and object - 96.
  EXPECT_NEAR(At(image, 92, 80), 0.0, kRounding);
}

TEST(RetinalImage, IsTheSquareOfTheFilteredField) {
  // Two points of light meet with the same phase: twice the field, four times the light.
  const Plane image = ImageOf({{50, 60}, {50, 70}}, {{128, 128}, {128, 138}});
  EXPECT_NEAR(At(image, 50, 70) / At(image, 50, 60), 4.0, kRounding);
}

TEST(RetinalImage, OfAWhitePlaneIsWhite) {
  OpticsEngine engine = Eye(Blurred());
  Plane optotype;
  const Plane image = RingImage(engine, 100.0, 3, &optotype);  // too fine to draw
  EXPECT_TRUE(std::all_of(optotype.begin(), optotype.end(), [](double v) { return v == 1.0; }));
  for (const double v : image) ASSERT_NEAR(v, 1.0, kRounding);
}

TEST(RetinalImage, GivesTheOptotypeAsDrawn) {
  OpticsEngine engine = Eye(Blurred());
  Plane optotype, drawn(SampleCount(kSide));
  RingImage(engine, 0.7, 2, &optotype);
  double effective = 0.0;
  testing::internal::CaptureStdout();
  engine.DrawRingOptotype(drawn.data(), kSide, 0.7, &effective, 2);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(optotype, drawn);
}

TEST(RetinalImage, ShowsTheGapWhereItIsDrawn) {
  // The mean of the image in the stroke on the right, above it, on the left and below.
  OpticsEngine engine = Eye(Coefficients{});
  const auto darkest = [](const Plane& image) {
    const std::array<double, 4> sides = {At(image, 144, 128), At(image, 112, 128), At(image, 128, 144),
                                         At(image, 128, 112)};
    return std::max_element(sides.begin(), sides.end()) - sides.begin() + 1;
  };
  for (int gap = 1; gap <= 4; ++gap) EXPECT_EQ(darkest(RingImage(engine, 1.0, gap)), gap);
}

TEST(RetinalImage, OfARingStaysBetweenBlackAndWhiteWithNoMoreLightThanTheRing) {
  OpticsEngine engine = Eye(Blurred());
  for (const double acuity : {0.13, 0.5, 1.1}) {
    Plane optotype;
    const Plane image = RingImage(engine, acuity, 4, &optotype);
    EXPECT_LE(*std::max_element(image.begin(), image.end()), 1.0);
    EXPECT_GE(*std::min_element(image.begin(), image.end()), 0.0);
    EXPECT_LE(Total({image.data(), kSide}), Total({optotype.data(), kSide}) + 1e-6);
  }
}

TEST(RetinalImage, HasTheObjectsTotalBeforeItIsClipped) {
  // The same chain told a total so small that nothing reaches the clip.
  OpticsEngine engine = Eye(Blurred());
  for (const int gap : {1, 4}) {
    Plane object, imaginary(SampleCount(kSide), 0.0), image(SampleCount(kSide), -1.0);
    RingImage(engine, 0.4, gap, &object);
    const double total = Total({object.data(), kSide}) / 64.0;
    engine.FilterThroughEye(object.data(), imaginary.data(), image.data(), total);
    ASSERT_LT(*std::max_element(image.begin(), image.end()), 1.0);
    EXPECT_NEAR(Total({image.data(), kSide}), total, total * kRounding);
  }
}

TEST(RetinalImage, UsesTheTransferFunctionHeldUntilItIsMarkedStale) {
  OpticsEngine engine = Eye(Blurred());
  const Plane first = RingImage(engine, 0.5, 1);
  EXPECT_EQ(engine.otfValid, 1);
  std::fill(engine.psfPlane.begin(), engine.psfPlane.end(), 0.0);
  engine.psfPlane(128, 128) = 1.0;
  EXPECT_EQ(RingImage(engine, 0.5, 1), first);
  engine.otfValid = 0;
  EXPECT_NE(RingImage(engine, 0.5, 1), first);
}

TEST(RetinalImage, TransferFunctionIsTheBackwardTransformWithItsOriginAtTheFirstSample) {
  OpticsEngine engine;
  engine.psfPlane(128, 130) = 0.75;
  engine.otfValid = 7;  // anything but 1 is stale
  engine.EnsureOtf();
  EXPECT_EQ(engine.otfValid, 1);
  constexpr double kScale = 0.75 / 65536.0;
  EXPECT_NEAR(engine.otfRealPlane(0, 0), kScale, kScale * kRounding);
  // exp(+2 pi i (128 p + 130 q) / 256) at (0, 1) and (1, 0).
  const double angle = 6.283185307179586 * 130.0 / 256.0;
  EXPECT_NEAR(engine.otfRealPlane(0, 1), kScale * std::cos(angle), kScale * kRounding);
  EXPECT_NEAR(engine.otfImagPlane(0, 1), kScale * std::sin(angle), kScale * kRounding);
  EXPECT_NEAR(engine.otfRealPlane(1, 0), -kScale, kScale * kRounding);
}

TEST(RetinalImage, OfAnEmptyPsfIsBlack) {
  OpticsEngine engine;
  const Plane image = RingImage(engine, 0.5, 1);
  EXPECT_TRUE(std::all_of(image.begin(), image.end(), [](double v) { return v == 0.0; }));
}

TEST(RetinalImage, IsStretchedWhereTheFlagIsNotZero) {
  for (const std::uint8_t flag : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{255}}) {
    OpticsEngine engine = Eye(Blurred());
    engine.normaliseOutput = flag;
    const Plane image = RingImage(engine, 0.5, 1);
    EXPECT_EQ(*std::max_element(image.begin(), image.end()), 1.0) << int{flag};
    EXPECT_EQ(*std::min_element(image.begin(), image.end()), 0.0) << int{flag};
  }
}

TEST(RetinalImage, DoesNotChangeTheFlag) {
  for (const std::uint8_t flag : {std::uint8_t{0}, std::uint8_t{1}}) {
    OpticsEngine engine = Eye(Blurred());
    engine.normaliseOutput = flag;
    RingImage(engine, 0.5, 1);
    EXPECT_EQ(engine.normaliseOutput, flag);
  }
}

}  // namespace
}  // namespace orvanel
