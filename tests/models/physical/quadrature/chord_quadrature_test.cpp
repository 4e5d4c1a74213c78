// The Fourier integral of the pupil against closed forms and against polar quadrature in long double.
#include "models/physical/quadrature/chord_quadrature.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

#include "tests/models/physical/examples.h"
#include "tests/support/every_kernel.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
// CountsFor promises 1e-10.
constexpr double kBound = 1e-10;

std::vector<double> Computed(const Pupil& pupil, const DirectionGrid& grid) {
  std::vector<double> samples(static_cast<std::size_t>(grid.columns * grid.rows));
  GridOutput output;
  output.data = samples.data();
  output.pitch = grid.columns;
  ChordQuadrature(ActiveChords()).Intensity(pupil, grid, ChordQuadrature::CountsFor(pupil, grid), output);
  return samples;
}

double XOf(const DirectionGrid& grid, int column) {
  return grid.centreX + (column - (grid.columns - 1) / 2.0) * grid.spacing;
}
double YOf(const DirectionGrid& grid, int row) { return grid.centreY + ((grid.rows - 1) / 2.0 - row) * grid.spacing; }

double Airy(double x) { return x == 0.0 ? 1.0 : std::pow(2.0 * std::cyl_bessel_j(1.0, x) / x, 2); }

// |U|^2 by midpoints in rho^2 and theta on the ellipse, which for smooth periodic integrands is another rule
// altogether.
double Direct(const Pupil& pupil, double qx, double qy) {
  constexpr int kAngles = 240, kPanels = 48;
  // Gauss-Legendre with five nodes on each panel of rho.
  constexpr long double node[5] = {-0.90617984593866399280L, -0.53846931010568309104L, 0.0L, 0.53846931010568309104L,
                                   0.90617984593866399280L};
  constexpr long double weight[5] = {0.23692688505618908751L, 0.47862867049936646804L, 0.56888888888888888889L,
                                     0.47862867049936646804L, 0.23692688505618908751L};
  const long double pi = std::numbers::pi_v<long double>;
  std::complex<long double> sum = 0;
  const Ellipse& e = pupil.outline;
  for (int p = 0; p < kPanels; ++p) {
    for (int g = 0; g < 5; ++g) {
      const long double rho = (p + 0.5L + node[g] / 2) / kPanels;
      for (int a = 0; a < kAngles; ++a) {
        const long double theta = 2 * pi * a / kAngles;
        const long double s = e.semiAxisA * rho * std::cos(theta), t = e.semiAxisB * rho * std::sin(theta);
        const double x = static_cast<double>(e.centreX + s * std::cos(e.angle) - t * std::sin(e.angle));
        const double y = static_cast<double>(e.centreY + s * std::sin(e.angle) + t * std::cos(e.angle));
        const long double phase =
            2 * pi / pupil.wavelengthUm * At(pupil.wavefrontUm, x, y).value - pi * (qx * x + qy * y);
        const long double dx = x * pupil.radiusMm - pupil.stilesCrawford.centreXmm;
        const long double dy = y * pupil.radiusMm - pupil.stilesCrawford.centreYmm;
        const long double amplitude = std::pow(10.0L, -pupil.stilesCrawford.rho * (dx * dx + dy * dy) / 2);
        sum += weight[g] / 2 / kPanels * rho * amplitude * std::polar(1.0L, phase);
      }
    }
  }
  return static_cast<double>(std::norm(sum * 2.0L / static_cast<long double>(kAngles)));
}

const std::vector<double> kAsymmetric = {0.0,  0.11,  -0.23, 0.21, 0.34,  -0.13, 0.08,
                                         0.19, -0.11, 0.05,  0.03, -0.04, 0.12,  0.02};

class ChordQuadratures : public test::EveryKernel {};

TEST_P(ChordQuadratures, GiveTheAiryPatternOfAPerfectPupil) {
  const DirectionGrid grid{0.0, 0.0, 0.37, 33, 24};
  const std::vector<double> samples = Computed(PupilOf({}), grid);
  for (int r = 0; r < grid.rows; ++r) {
    for (int c = 0; c < grid.columns; ++c) {
      EXPECT_NEAR(samples[static_cast<std::size_t>(r * grid.columns + c)],
                  Airy(kPi * std::hypot(XOf(grid, c), YOf(grid, r))), 1e-14);
    }
  }
}

// Single places, whose count of nodes has to allow for the whole distance from the axis.
TEST_P(ChordQuadratures, GiveTheAiryPatternFarFromTheAxis) {
  for (const double distance : {3.0, 6.0, 13.0, 63.0, 175.0, 450.0}) {
    for (const double angle : {0.0, 0.4, 1.1, kPi / 2}) {
      const double x = distance * std::cos(angle), y = distance * std::sin(angle);
      EXPECT_NEAR(Computed(PupilOf({}), {x, y, 1.0, 1, 1})[0], Airy(kPi * distance), kBound)
          << distance << ' ' << angle;
    }
  }
}

TEST_P(ChordQuadratures, GiveTheIntegralOfAnAsymmetricEyeOnAnAsymmetricGrid) {
  const Pupil pupil = PupilOf(kAsymmetric);
  const DirectionGrid grid{-2.3, 1.7, 1.9, 4, 5};
  const std::vector<double> samples = Computed(pupil, grid);
  for (int r = 0; r < grid.rows; ++r) {
    for (int c = 0; c < grid.columns; ++c) {
      EXPECT_NEAR(samples[static_cast<std::size_t>(r * grid.columns + c)], Direct(pupil, XOf(grid, c), YOf(grid, r)),
                  kBound)
          << r << ' ' << c;
    }
  }
}

TEST_P(ChordQuadratures, GiveTheIntegralOverATurnedAndShiftedEllipseWithAttenuation) {
  Pupil pupil = PupilOf(kAsymmetric);
  pupil.outline = {0.8, 0.5, 0.6, 0.05, -0.12};
  pupil.stilesCrawford = {0.05, 0.4, -0.3};
  const DirectionGrid grid{0.6, -0.8, 2.3, 5, 4};
  const std::vector<double> samples = Computed(pupil, grid);
  for (int r = 0; r < grid.rows; ++r) {
    for (int c = 0; c < grid.columns; ++c) {
      EXPECT_NEAR(samples[static_cast<std::size_t>(r * grid.columns + c)], Direct(pupil, XOf(grid, c), YOf(grid, r)),
                  kBound)
          << r << ' ' << c;
    }
  }
}

// U(0) = int_0^1 exp((i phi - g) s) ds with s = rho^2.
TEST_P(ChordQuadratures, GiveDefocusOnTheAxisWithAndWithoutStilesCrawford) {
  for (const double rho : {0.0, 0.05, 0.12, 1.0}) {
    for (const double c4 : {0.05, 0.4, 1.3, -2.1}) {
      Pupil pupil = PupilOf({0, 0, 0, 0, c4});
      pupil.stilesCrawford.rho = rho;
      const std::complex<double> z(-rho * std::log(10.0) / 2 * 9.0, 2 * kPi / 0.55 * 2 * std::sqrt(3.0) * c4);
      EXPECT_NEAR(Computed(pupil, {0, 0, 1.0, 1, 1})[0], std::norm((std::exp(z) - 1.0) / z), kBound)
          << rho << ' ' << c4;
    }
  }
}

TEST_P(ChordQuadratures, SendTheLightOfATiltToItsSlope) {
  // c2 Z(1, 1) = 2 c2 x: a slope of 2 c2 / r, in units of wavelength / (2 r): 4 c2 / wavelength.
  const double c2 = 0.31, c1 = -0.17;
  const DirectionGrid grid{4 * c2 / 0.55, 4 * c1 / 0.55, 0.5, 3, 3};
  const std::vector<double> samples = Computed(PupilOf({0, c1, c2}), grid);
  for (int i = 0; i < 9; ++i) {
    EXPECT_NEAR(samples[static_cast<std::size_t>(i)], Airy(kPi * 0.5 * std::hypot(i % 3 - 1, i / 3 - 1)), 1e-13);
  }
}

TEST_P(ChordQuadratures, MirrorScaleAndAdd) {
  const Pupil pupil = PupilOf(kAsymmetric);
  const DirectionGrid grid{0.3, -0.2, 0.8, 19, 6};
  const std::vector<double> plain = Computed(pupil, grid);
  for (const bool mirrorX : {false, true}) {
    for (const bool mirrorY : {false, true}) {
      std::vector<double> samples(plain.size(), 0.25);
      GridOutput output{samples.data(), grid.columns, mirrorX, mirrorY, 3.0, true};
      ChordQuadrature(ActiveChords()).Intensity(pupil, grid, ChordQuadrature::CountsFor(pupil, grid), output);
      for (int r = 0; r < grid.rows; ++r) {
        for (int c = 0; c < grid.columns; ++c) {
          const int from = (mirrorY ? grid.rows - 1 - r : r) * grid.columns + (mirrorX ? grid.columns - 1 - c : c);
          EXPECT_NEAR(samples[static_cast<std::size_t>(r * grid.columns + c)],
                      0.25 + 3.0 * plain[static_cast<std::size_t>(from)], 1e-15);
        }
      }
    }
  }
}

TEST_P(ChordQuadratures, DoNotRememberTheLastEye) {
  const DirectionGrid wide{0, 0, 0.9, 12, 9}, narrow{0.1, 0.2, 0.4, 7, 10};
  const Pupil first = PupilOf(kAsymmetric), second = PupilOf({0, 0, 0, 0.1, 0.2}, 2.0);
  ChordQuadrature quadrature(ActiveChords());
  const auto with = [&quadrature](const Pupil& pupil, const DirectionGrid& grid) {
    std::vector<double> samples(static_cast<std::size_t>(grid.columns * grid.rows));
    quadrature.Intensity(pupil, grid, ChordQuadrature::CountsFor(pupil, grid), {samples.data(), grid.columns});
    return samples;
  };
  with(first, wide);
  EXPECT_TRUE(test::SameBits(with(second, wide), Computed(second, wide)));
  EXPECT_TRUE(test::SameBits(with(second, narrow), Computed(second, narrow)));
  EXPECT_TRUE(test::SameBits(with(first, wide), Computed(first, wide)));
}

TEST_P(ChordQuadratures, HaveTheBitsOfTheBaseline) {
  Pupil pupil = PupilOf(kAsymmetric);
  pupil.outline = {0.9, 0.7, -0.4, 0.02, 0.03};
  pupil.stilesCrawford = {0.05, 0.1, 0.2};
  const DirectionGrid grid{0.3, -0.2, 0.8, 37, 30};
  const std::vector<double> here = Computed(pupil, grid);
  UseKernels(*RunnableKernels().front());
  EXPECT_TRUE(test::SameBits(here, Computed(pupil, grid)));
}

// The counts against many more nodes, for eyes of up to five waves.
TEST(ChordQuadratureCounts, KeepTheirPromiseForRandomEyes) {
  std::mt19937 random(11);
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> uniform;
  ChordQuadrature quadrature(ActiveChords());
  for (int eye = 0; eye < 16; ++eye) {
    std::vector<double> modes(kModes);
    const double waves = std::pow(10.0, -2 + 2.7 * uniform(random)), decay = 0.3 + 0.7 * uniform(random);
    double squares = 0.0;
    std::size_t j = 0;
    for (int n = 0; n <= kHighestOrder; ++n) {
      for (int m = 0; m <= n; ++m, ++j) {
        modes[j] = n < 2 ? 0.0 : normal(random) * std::pow(decay, n);
        squares += modes[j] * modes[j];
      }
    }
    for (double& c : modes) c *= waves * 0.55 / std::sqrt(squares);
    Pupil pupil = PupilOf(modes);
    if (eye % 2 == 1) {
      pupil.stilesCrawford = {std::pow(10.0, -2 * uniform(random)), normal(random), normal(random)};
      pupil.outline = {0.5 + 0.3 * uniform(random), 0.5, normal(random), 0.1, -0.05};
    }
    const double half = std::pow(10.0, 0.5 + 1.3 * uniform(random));
    const DirectionGrid grid{3 * normal(random), 3 * normal(random), half / 8, 17, 17};
    const NodeCounts counts = ChordQuadrature::CountsFor(pupil, grid);
    std::vector<double> few(17 * 17), many(17 * 17);
    quadrature.Intensity(pupil, grid, counts, {few.data(), 17});
    quadrature.Intensity(pupil, grid, {counts.chords * 2 + 64, counts.nodes * 2 + 64}, {many.data(), 17});
    for (std::size_t i = 0; i < few.size(); ++i) ASSERT_NEAR(few[i], many[i], kBound) << "eye " << eye;
  }
}

// A grid is a part of a larger one, whose rows were kept.
TEST(ChordQuadratureGrids, HaveTheSamplesOfLargerOnes) {
  const Pupil pupil = PupilOf(kAsymmetric);
  const NodeCounts counts{128, 128};
  const DirectionGrid large{0.3, -0.2, 0.05, 640, 9}, small{0.3, -0.2, 0.05, 20, 3};
  ChordQuadrature quadrature(ActiveChords());
  std::vector<double> some(20 * 3), many(640 * 9);
  quadrature.Intensity(pupil, large, counts, {many.data(), 640});
  quadrature.Intensity(pupil, small, counts, {some.data(), 20});
  for (std::size_t r = 0; r < 3; ++r) {
    for (std::size_t c = 0; c < 20; ++c) EXPECT_NEAR(many[(r + 3) * 640 + 310 + c], some[r * 20 + c], 1e-14);
  }
}

TEST(ChordQuadratureCounts, AskForTooManyWhereTheWavefrontIsNoNumber) {
  const Pupil pupil = PupilOf({0, 0, 0, std::nan(""), 0});
  EXPECT_GT(ChordQuadrature::CountsFor(pupil, {0, 0, 1, 9, 9}).chords, kMaxNodes);
}

ORVANEL_ON_EVERY_KERNEL(ChordQuadratures);

}  // namespace
}  // namespace orvanel::physical
