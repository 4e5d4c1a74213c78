// Tests wavefront synthesis: the terms in use, their positions, and the direction of y.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;

Coefficients Only(std::size_t j, double value) {
  Coefficients c{};
  c[j] = value;
  return c;
}

// A different value for every term.
Coefficients AllDifferent() {
  Coefficients c{};
  for (std::size_t j = 0; j < c.size(); ++j) c[j] = 1e-4 / static_cast<double>(j + 3);
  return c;
}

OpticsEngine Synthesized(const Coefficients& c, int n = 256, double diameter = 3.7) {
  return OpticsEngine(c.data(), diameter, n, 1, 1, 1);
}

double ValueAt(const Coefficients& c, int row, int column) { return Synthesized(c).wavefrontPlane(row, column); }

int InsideCount(const OpticsEngine& engine) {
  int count = 0;
  for (const double w : engine.wavefrontPlane) count += w != kWavefrontOutside;
  return count;
}

TEST(Wavefront, OfAPerfectEyeIsZeroInsideAndMarkedOutside) {
  const OpticsEngine engine = Synthesized({});
  for (int r = 0; r < 256; ++r) {
    for (int c = 0; c < 256; ++c) {
      const bool inside = (r - 128) * (r - 128) + (c - 128) * (c - 128) <= 4096;
      ASSERT_EQ(engine.wavefrontPlane(r, c), inside ? 0.0 : 1000.0) << r << "," << c;
    }
  }
}

TEST(Wavefront, PupilHasThePublishedNumberOfSamples) {
  EXPECT_EQ(InsideCount(Synthesized({})), 12853);
  EXPECT_EQ(InsideCount(Synthesized({}, 128)), 3209);
  EXPECT_EQ(Synthesized({}, 256).pupilSamples, 129);
  EXPECT_EQ(Synthesized({}, 128).pupilSamples, 65);
  EXPECT_EQ(Synthesized({}, 64).pupilSamples, 33);
}

TEST(Wavefront, PupilEdgeIsInsideAndTheGridEdgeOutside) {
  const OpticsEngine engine = Synthesized({});
  EXPECT_EQ(engine.wavefrontPlane(128, 192), 0.0);
  EXPECT_EQ(engine.wavefrontPlane(128, 193), 1000.0);
  EXPECT_EQ(engine.wavefrontPlane(128, 0), 1000.0);
  EXPECT_EQ(engine.wavefrontPlane(64, 128), 0.0);
  EXPECT_EQ(engine.wavefrontPlane(63, 128), 1000.0);
}

TEST(Wavefront, DefocusGoesFromMinusItsCoefficientToPlus) {
  const OpticsEngine engine = Synthesized(Only(4, 1e-3));
  EXPECT_EQ(engine.wavefrontPlane(128, 128), -1e-3);
  EXPECT_EQ(engine.wavefrontPlane(128, 64), 1e-3);
  EXPECT_EQ(engine.wavefrontPlane(128, 192), 1e-3);
  EXPECT_EQ(engine.wavefrontPlane(64, 128), 1e-3);
  EXPECT_EQ(engine.wavefrontPlane(192, 128), 1e-3);
}

TEST(Wavefront, PositiveVerticalComaRisesDownTheRows) {
  const Coefficients coma = Only(7, 2e-4);
  EXPECT_EQ(ValueAt(coma, 192, 128), 2e-4);
  EXPECT_EQ(ValueAt(coma, 64, 128), -2e-4);
  EXPECT_EQ(ValueAt(coma, 128, 192), 0.0);
}

TEST(Wavefront, PositiveHorizontalComaRisesAlongTheColumns) {
  const Coefficients coma = Only(8, 2e-4);
  EXPECT_EQ(ValueAt(coma, 128, 192), 2e-4);
  EXPECT_EQ(ValueAt(coma, 128, 64), -2e-4);
  EXPECT_EQ(ValueAt(coma, 192, 128), 0.0);
}

TEST(Wavefront, ObliqueAstigmatismIsPositiveDownToTheRight) {
  const Coefficients oblique = Only(3, 1e-4);  // 2XY
  EXPECT_GT(ValueAt(oblique, 160, 160), 0.0);
  EXPECT_LT(ValueAt(oblique, 96, 160), 0.0);
}

TEST(Wavefront, StraightAstigmatismIsPositiveAlongTheRow) {
  const Coefficients straight = Only(5, 1e-4);  // X^2 - Y^2
  EXPECT_EQ(ValueAt(straight, 128, 192), 1e-4);
  EXPECT_EQ(ValueAt(straight, 192, 128), -1e-4);
}

TEST(Wavefront, PistonAndTiltsAreNeverUsed) {
  Coefficients c = AllDifferent();
  const OpticsEngine plain = Synthesized(c);
  c[0] = 0.3;
  c[1] = std::numeric_limits<double>::infinity();
  c[2] = std::numeric_limits<double>::quiet_NaN();
  const OpticsEngine tilted = Synthesized(c);
  for (std::size_t i = 0; i < plain.wavefrontPlane.size(); ++i) {
    ASSERT_EQ(plain.wavefrontPlane[i], tilted.wavefrontPlane[i]);
  }
}

TEST(Wavefront, ANanFromTheThirdCoefficientOnIsOnEverySampleOfThePupil) {
  const OpticsEngine engine = Synthesized(Only(17, std::numeric_limits<double>::quiet_NaN()));
  int inside = 0;
  for (const double w : engine.wavefrontPlane) inside += w != w;
  EXPECT_EQ(inside, 12853);
}

TEST(Wavefront, AddsTermsInTheOrderOfTheirIndex) {
  // At X = 1, Y = 0: (1e20 - 1e20) + 1e-3, where any other order loses the small term.
  Coefficients c{};
  c[5] = 1e20;
  c[8] = -1e20;
  c[9] = 1e-3;
  EXPECT_EQ(ValueAt(c, 128, 192), 1e-3);
}

TEST(Wavefront, CoordinatePlanesAreTheCoordinateTimesThePupil) {
  const OpticsEngine engine = Synthesized(AllDifferent(), 256, 3.7);
  EXPECT_EQ(engine.pupilXPlane(128, 192), 3.7);
  EXPECT_EQ(engine.pupilXPlane(100, 64), 0.0);  // outside: as it was
  EXPECT_EQ(engine.pupilXPlane(128, 64), -3.7);
  EXPECT_EQ(engine.pupilYPlane(192, 128), 3.7);
  EXPECT_EQ(engine.pupilYPlane(100, 128), -28.0 / 64.0 * 3.7);
  EXPECT_EQ(engine.pupilXPlane(100, 128), 0.0);
}

TEST(Wavefront, CoordinatePlanesAreNotWrittenOutsideThePupil) {
  OpticsEngine engine = Synthesized({});
  engine.pupilXPlane(0, 0) = 5.5;
  engine.pupilYPlane(63, 128) = 6.5;
  engine.wavefrontPlane(63, 128) = 0.0;
  engine.synthesizeWavefront(AllDifferent().data(), 4.0, 1, 1, 1);
  EXPECT_EQ(engine.pupilXPlane(0, 0), 5.5);
  EXPECT_EQ(engine.pupilYPlane(63, 128), 6.5);
  EXPECT_EQ(engine.wavefrontPlane(63, 128), kWavefrontOutside);
}

// Both coordinates on every sample, to the sign of zero; outside the pupil what was there before.
void ExpectCoordinates(const OpticsEngine& engine, double diameter, double outside) {
  const int n = engine.gridSize;
  const GridPlane &x = engine.pupilXPlane, &y = engine.pupilYPlane;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const int dx = c - n / 2, dy = r - n / 2;
      const bool inside = dx * dx + dy * dy <= n / 4 * (n / 4);
      const auto bits = [](double v) { return std::bit_cast<std::uint64_t>(v); };
      ASSERT_EQ(bits(x(r, c)), bits(inside ? dx / (n / 4.0) * diameter : outside)) << r << "," << c;
      ASSERT_EQ(bits(y(r, c)), bits(inside ? dy / (n / 4.0) * diameter : outside)) << r << "," << c;
    }
  }
}

TEST(Wavefront, CoordinatePlanesAreWhatTheyAreWheneverSomebodyLooks) {
  for (const int n : {256, 64}) {
    for (const double diameter : {3.7, -3.0, 0.0, -0.0}) {
      OpticsEngine engine(AllDifferent().data(), 5.1, n, 1, 1, 1);
      engine.synthesizeWavefront(AllDifferent().data(), diameter, 1, 1, 1);
      engine.pupilDiameter = 8.0;
      const OpticsEngine moved = std::move(engine);
      ExpectCoordinates(moved, diameter, 0.0);
    }
  }
}

TEST(Wavefront, CoordinatePlanesThatSomebodyHasLookedAtFollow) {
  for (const int n : {256, 64}) {
    OpticsEngine engine(n);
    std::fill(engine.pupilXPlane.begin(), engine.pupilXPlane.end(), 2.5);
    std::fill(engine.pupilYPlane.begin(), engine.pupilYPlane.end(), 2.5);
    const double* const x = engine.pupilXPlane.data();
    engine.synthesizeWavefront(AllDifferent().data(), 4.4, 1, 1, 1);
    EXPECT_EQ(x[n * n / 2 + n / 2 + n / 4], 4.4);
    ExpectCoordinates(engine, 4.4, 2.5);
    engine.synthesizeWavefront(AllDifferent().data(), 6.0, 1, 1, 1);
    ExpectCoordinates(engine, 6.0, 2.5);
  }
}

TEST(Wavefront, CoordinatePlanesAreCopiedWholeToAnyAddress) {
  const OpticsEngine engine = Synthesized({}, 64, 3.7);
  std::vector<char> buffer(64 * 64 * sizeof(double) + 1, 1);
  engine.pupilYPlane.CopyTo(reinterpret_cast<double*>(buffer.data() + 1));
  EXPECT_EQ(std::memcmp(buffer.data() + 1, engine.pupilYPlane.data(), buffer.size() - 1), 0);
}

TEST(Wavefront, SynthesisMarksThePsfStaleAndAsksForStretchedImages) {
  OpticsEngine engine(64);
  engine.psfWavelength = 5e-4;
  engine.otfValid = 1;
  engine.synthesizeWavefront(AllDifferent().data(), 4.1, 1, 1, 1);
  EXPECT_EQ(engine.psfWavelength, 0.0);
  EXPECT_EQ(engine.normaliseOutput, 1);
  EXPECT_EQ(engine.pupilDiameter, 4.1);
  EXPECT_EQ(engine.otfValid, 1);  // until the PSF changes
}

TEST(Wavefront, LeavesTheCallersCoefficientsAlone) {
  Coefficients c = AllDifferent();
  OpticsEngine engine(64);
  engine.synthesizeWavefront(c.data(), 4.0, 0, 0, 1);
  EXPECT_EQ(c, AllDifferent());
}

}  // namespace
}  // namespace orvanel
