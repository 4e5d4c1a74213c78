// Line spread functions against the closed form of a round pupil and against the point spread function.
#include "models/physical/spread/line_spread.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

double UnitOf(double nm, double mm) { return nm * 1e-3 / mm * 10.8 / kPi; }

// Of a line through the middle: 8/3 pi of the peak, at x = 0. The integral of the MTF 2/pi (acos v - v sqrt(1 - v^2))
// from -1 to 1 is 8/(3 pi).
TEST(LineSpread, OfARoundPupilHasItsHeight) {
  Workspace workspace(*ActiveKernels());
  const double unit = UnitOf(550, 6);
  const std::vector<double> places = {0.0, 3.0};
  const std::vector<double> spread =
      *LineSpreadOf(EyeOf({}), Monochromatic(550), 0.3, places, View::kPatient, workspace);
  EXPECT_NEAR(spread[0], 8 / (3 * kPi) / unit, 1e-7 / unit);
}

// Struve (1882): 8/(3 pi) times 3 pi/2 H1(2 v)/(2 v)^2, v = pi x. Its first dark place does not reach 0.
TEST(LineSpread, OfARoundPupilIsStruvesFunction) {
  Workspace workspace(*ActiveKernels());
  const double unit = UnitOf(550, 6);
  const std::vector<double> places = {0.2 * unit, 0.8 * unit, 1.6 * unit, 4.3 * unit};
  const std::vector<double> spread =
      *LineSpreadOf(EyeOf({}), Monochromatic(550), -1.1, places, View::kRetina, workspace);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const double z = 2 * kPi * places[i] / unit;
    // H1(z) = 2/pi int (1 - cos(z cos t)) ... by its integral 2z/pi int sin(z cos t) sin^2 t dt, 0 to pi/2.
    long double struve = 0.0L;
    constexpr int kSteps = 20000;
    for (int k = 0; k < kSteps; ++k) {
      const long double t = (k + 0.5L) / kSteps * kPi / 2;
      struve += std::sin(z * std::cos(t)) * std::pow(std::sin(t), 2) * kPi / 2 / kSteps;
    }
    struve *= 2 * z / kPi;
    EXPECT_NEAR(spread[i] * unit, static_cast<double>(4 * struve / (z * z)), 1e-6) << i;
  }
}

// The PSF added up along the line, far enough that what is beyond it counts less than the bound.
TEST(LineSpread, IsTheIntegralOfThePointSpread) {
  Eye eye = EyeOf({0, 0.3, -0.2, 0.1, 0.25, -0.12, 0.05, 0.11, -0.06}, 4.0, 560);
  eye.outline = {0.9, 0.75, 0.4, 0.02, -0.03};
  const double direction = 0.7, place = 0.9;
  Workspace workspace(*ActiveKernels());
  for (const View view : {View::kPatient, View::kRetina}) {
    const std::vector<double> places = {place};
    const double spread = (*LineSpreadOf(eye, Monochromatic(560), direction, places, view, workspace))[0];
    double sum = 0.0;
    constexpr double kStep = 0.15, kHalf = 40.0;  // finer than half a wavelength / diameter: the sum is exact
    for (double t = -kHalf; t <= kHalf; t += kStep) {
      const RetinalGrid grid{place * std::cos(direction) - t * std::sin(direction),
                             place * std::sin(direction) + t * std::cos(direction),
                             1.0,
                             1,
                             1,
                             view};
      sum += PointSpreadOf(eye, Monochromatic(560), grid, PsfUnit::kPerArcmin2, workspace)->samples[0] * kStep;
    }
    // Beyond: 2 int 1/(pi^3 t^3), some more for the smaller pupil.
    EXPECT_NEAR(spread, sum, 2e-4 * spread + 2 * UnitOf(560, 4 * 0.75) / (std::pow(kPi, 3) * kHalf * kHalf));
  }
}

TEST(LineSpread, HasAllTheLight) {
  const Eye eye = EyeOf({0, 0, 0, 0.1, 0.25, -0.12, 0.05, 0.11}, 4.0, 560);
  const Light light = {{500, 0.3}, {600, 0.7}};
  std::vector<double> places;
  constexpr double kStep = 0.1, kHalf = 60.0;
  for (double x = -kHalf; x <= kHalf; x += kStep) places.push_back(x);
  Workspace workspace(*ActiveKernels());
  double sum = 0.0;
  const std::vector<double> spread = *LineSpreadOf(eye, light, 1.9, places, View::kPatient, workspace);
  for (const double s : spread) sum += s * kStep;
  const double beyond = 4 / std::pow(kPi, 3) * (0.3 * UnitOf(500, 4) + 0.7 * UnitOf(600, 4)) / kHalf;
  EXPECT_NEAR(sum, 1 - beyond, 2e-5);
}

TEST(LineSpread, IsMovedByAPrism) {
  const double slope = 2 * 2 * 0.4 / 0.55 * UnitOf(550, 6);  // of 0.4 um, in arcmin
  Workspace workspace(*ActiveKernels());
  const std::vector<double> there = {-slope + 0.1}, here = {0.1};  // to the left in both views
  EXPECT_NEAR((*LineSpreadOf(EyeOf({0, 0, 0.4}), Monochromatic(550), 0.0, there, View::kPatient, workspace))[0],
              (*LineSpreadOf(EyeOf({}), Monochromatic(550), 0.0, here, View::kPatient, workspace))[0], 1e-7);
}

TEST(LineSpread, SectionsAreTheTransferFunctionAlongADirection) {
  const Eye eye = EyeOf({0, 0.1, 0.2, 0.1, 0.25, -0.12, 0.05, 0.11});
  Workspace workspace(*ActiveKernels());
  const std::vector<double> frequencies = {0.0, 7.0, 31.0};
  const std::vector<Frequency> places = {{31.0 * std::cos(2.2), 31.0 * std::sin(2.2)}};
  const auto section = *SectionOfTransferFunction(eye, Monochromatic(550), 2.2, frequencies, View::kRetina, workspace);
  const auto single = *TransferFunctionAt(eye, Monochromatic(550), places, View::kRetina, workspace);
  EXPECT_NEAR(std::abs(section[0] - 1.0), 0.0, 1e-12);
  EXPECT_NEAR(std::abs(section[2] - single[0]), 0.0, 1e-12);
}

TEST(LineSpread, RefusesPlacesThatAreNoneOrTooFar) {
  Workspace workspace(*ActiveKernels());
  const std::vector<double> none = {0.0, std::nan("")}, far = {1e6};
  const auto refused = [&](const std::vector<double>& places) {
    return LineSpreadOf(EyeOf({}), Monochromatic(550), 0.0, places, View::kPatient, workspace).refusal();
  };
  EXPECT_EQ(refused(none).problem, Problem::kPlace);
  EXPECT_EQ(refused(none).index, 1);
  EXPECT_EQ(refused(far).problem, Problem::kTooManyNodes);
}

TEST(LineSpread, RefusesADirectionThatIsNone) {
  Workspace workspace(*ActiveKernels());
  const std::vector<double> places = {0.0};
  for (const double direction : {std::nan(""), HUGE_VAL}) {
    const auto spread = LineSpreadOf(EyeOf({}), Monochromatic(550), direction, places, View::kPatient, workspace);
    const auto section =
        SectionOfTransferFunction(EyeOf({}), Monochromatic(550), direction, places, View::kPatient, workspace);
    ASSERT_FALSE(spread);
    ASSERT_FALSE(section);
    EXPECT_EQ(spread.refusal().problem, Problem::kDirection);
    EXPECT_EQ(section.refusal().problem, Problem::kDirection);
  }
}

}  // namespace
}  // namespace orvanel::physical
