// Cells and fields of a pupil on a lattice.
#include "models/physical/pupil/pupil_lattice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <numeric>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
const Ellipse kTurned{0.8, 0.5, 0.6, 0.05, -0.12};

// The sum of weight x^a y^b over the samples, times the area of a cell; y up.
double Moment(const std::vector<double>& mask, const PupilLattice& lattice, int a, int b) {
  double sum = 0.0;
  for (int r = 0; r < lattice.side; ++r) {
    for (int c = 0; c < lattice.side; ++c) {
      sum += mask[static_cast<std::size_t>(r * lattice.side + c)] * std::pow(lattice.Place(c), a) *
             std::pow(-lattice.Place(r), b);
    }
  }
  return sum * lattice.step * lattice.step;
}

// The bound is that of the midpoint rule at the tips of the outline. Shares of the cells' areas would miss the second
// moments by step^2 / 12 of the area, 6.5e-4 and more.
constexpr double kMomentBound = 5e-5;

TEST(PupilLattice, WeightsGiveTheMomentsOfADisc) {
  for (const PupilLattice& lattice : {PupilLattice{46, 0.05}, PupilLattice{47, 0.05}}) {
    const std::vector<double> mask = MaskOf(Ellipse{}, lattice);
    EXPECT_NEAR(Moment(mask, lattice, 0, 0), kPi, kMomentBound);
    EXPECT_NEAR(Moment(mask, lattice, 1, 0), 0.0, kMomentBound);
    EXPECT_NEAR(Moment(mask, lattice, 2, 0), kPi / 4, kMomentBound);
    EXPECT_NEAR(Moment(mask, lattice, 0, 2), kPi / 4, kMomentBound);
    EXPECT_NEAR(Moment(mask, lattice, 2, 2), kPi / 24, kMomentBound);
    EXPECT_NEAR(Moment(mask, lattice, 4, 0), kPi / 8, kMomentBound);
    EXPECT_NEAR(Moment(mask, lattice, 0, 4), kPi / 8, kMomentBound);
  }
}

TEST(PupilLattice, WeightsGiveTheMomentsOfATurnedEllipse) {
  const PupilLattice lattice{46, 0.05};
  const std::vector<double> mask = MaskOf(kTurned, lattice);
  const double area = kPi * 0.8 * 0.5, c = std::cos(0.6), s = std::sin(0.6);
  const double along = 0.8 * 0.8 / 4, across = 0.5 * 0.5 / 4;  // mean squares
  EXPECT_NEAR(Moment(mask, lattice, 0, 0), area, kMomentBound);
  EXPECT_NEAR(Moment(mask, lattice, 1, 0), area * 0.05, kMomentBound);
  EXPECT_NEAR(Moment(mask, lattice, 0, 1), area * -0.12, kMomentBound);
  EXPECT_NEAR(Moment(mask, lattice, 2, 0), area * (along * c * c + across * s * s + 0.05 * 0.05), kMomentBound);
  EXPECT_NEAR(Moment(mask, lattice, 0, 2), area * (along * s * s + across * c * c + 0.12 * 0.12), kMomentBound);
  EXPECT_NEAR(Moment(mask, lattice, 1, 1), area * ((along - across) * c * s - 0.05 * 0.12), kMomentBound);
}

TEST(PupilLattice, WeightsAreWholeInsideAndNothingOutside) {
  const PupilLattice lattice{46, 0.05};
  const std::vector<double> mask = MaskOf(Ellipse{}, lattice);
  const double reach = std::sqrt(2.0) * kMaskReach * lattice.step;
  for (int r = 0; r < lattice.side; ++r) {
    for (int c = 0; c < lattice.side; ++c) {
      const double weight = mask[static_cast<std::size_t>(r * lattice.side + c)];
      const double distance = std::hypot(lattice.Place(c), lattice.Place(r));
      if (distance < 1.0 - reach) {
        EXPECT_NEAR(weight, 1.0, 1e-12) << r << ' ' << c;
      } else if (distance > 1.0 + reach) {
        EXPECT_EQ(weight, 0.0) << r << ' ' << c;
      }
      EXPECT_GT(weight, -0.15);
      EXPECT_LT(weight, 1.15);
    }
  }
}

TEST(PupilLattice, WeightsOfASmallerLatticeAreThoseOfTheMiddleOfALarger) {
  const PupilLattice whole{46, 0.05};
  for (const Ellipse& outline : {Ellipse{}, kTurned}) {
    const std::vector<double> larger = MaskOf(outline, whole);
    for (int side = 2; side < whole.side; side += 2) {
      const std::vector<double> mask = MaskOf(outline, {side, whole.step});
      ASSERT_EQ(mask.size(), static_cast<std::size_t>(side * side));
      const int shift = (whole.side - side) / 2;
      for (int r = 0; r < side; ++r) {
        for (int c = 0; c < side; ++c) {
          EXPECT_NEAR(mask[static_cast<std::size_t>(r * side + c)],
                      larger[static_cast<std::size_t>((r + shift) * whole.side + c + shift)], 1e-12)
              << side << ": " << r << ' ' << c;
        }
      }
    }
  }
}

TEST(PupilLattice, SumsTheWeightsOfAllSubLattices) {
  const PupilLattice lattice{41, 0.05};
  const std::vector<double> mask = MaskOf(kTurned, lattice);
  const SampledOutline outline(kTurned, lattice, 3);
  EXPECT_NEAR(outline.SumOfSquaredWeights(), std::inner_product(mask.begin(), mask.end(), mask.begin(), 0.0), 1e-10);
}

TEST(PupilLattice, KeepsTheOutlinesThatWereUsedLast) {
  SampledOutlines outlines;
  for (int turn = 0; turn < 2; ++turn) {
    for (int side = 10; side < 50; ++side) {
      const PupilLattice lattice{side, 2.0 / side};
      for (const int density : {1, 2}) {
        for (const Ellipse& ellipse : {kTurned, Ellipse{}}) {
          const SampledOutline& kept = outlines.Of(ellipse, lattice, density);
          EXPECT_EQ(kept.outline(), ellipse);
          EXPECT_EQ(kept.lattice(), lattice);
          EXPECT_EQ(kept.density(), density);
          EXPECT_EQ(&kept, &outlines.Of(ellipse, lattice, density));
        }
      }
    }
  }
}

// Lattices as large as that of a steep eye. A small outline takes less time.
TEST(PupilLattice, KeepsNoMoreSamplesThanItStates) {
  SampledOutlines outlines;
  const Ellipse small{0.02, 0.02, 0.0, 0.0, 0.0};
  std::size_t most = 0;
  for (int i = 0; i < 6; ++i) {
    const PupilLattice lattice{1600 + 8 * i, 2.0 / 1600};
    EXPECT_EQ(outlines.Of(small, lattice, 1).lattice(), lattice);
    EXPECT_LE(outlines.samples(), SampledOutlines::kMaxSamples);
    most = std::max(most, outlines.samples());
  }
  EXPECT_GT(most, SampledOutlines::kMaxSamples / 2);
  // Larger than all that may be kept: alone.
  const PupilLattice large{3000, 2.0 / 3000};
  EXPECT_EQ(outlines.Of(small, large, 1).lattice(), large);
  EXPECT_EQ(outlines.samples(), 3000U * 3000U);
  outlines.Of(small, {20, 0.1}, 1);
  EXPECT_EQ(outlines.samples(), 20U * 24U);
}

TEST(PupilLattice, HasTheFieldAtItsSamples) {
  Pupil pupil = PupilOf({0, 0.1, -0.2, 0.15, 0.2, -0.1, 0.05, 0.1, -0.08});
  pupil.stilesCrawford = {0.05, 0.4, -0.3};
  const double x = 1.3, y = -0.7;
  // Rows that end within a block, and densities that do not divide the side.
  for (const auto& [side, density] : {std::pair{21, 1}, {20, 1}, {20, 2}, {21, 3}, {20, 3}}) {
    const PupilLattice lattice{side, 2.0 / side};
    const std::vector<double> mask = MaskOf(pupil.outline, lattice);
    const SampledOutline outline(pupil.outline, lattice, density);
    std::vector<double> times(static_cast<std::size_t>(side * side));
    for (int row = 0; row < density; ++row) {
      for (int column = 0; column < density; ++column) {
        const int rows = outline.Rows(row), pitch = outline.pitch();
        std::vector<double> re(static_cast<std::size_t>(rows * pitch), 42.0), im = re;
        outline.FieldOf(pupil, {row, column}, x, y, ActiveChords(), re.data(), im.data());
        EXPECT_EQ(rows, (side - row + density - 1) / density);
        for (int i = 0; i < rows; ++i) {
          for (int j = 0; j < pitch; ++j) {
            const int r = i * density + row, c = j * density + column;
            const auto at = static_cast<std::size_t>(i * pitch + j);
            if (c >= side) {
              EXPECT_EQ(re[at], 0.0);
              EXPECT_EQ(im[at], 0.0);
              continue;
            }
            const double u = lattice.Place(c), v = -lattice.Place(r), dx = 3 * u - 0.4, dy = 3 * v + 0.3;
            const double phase = 2 * kPi / 0.55 * At(pupil.wavefrontUm, u, v).value - kPi * (x * u + y * v);
            const double amplitude = std::pow(10.0, -0.025 * (dx * dx + dy * dy));
            const auto place = static_cast<std::size_t>(r * side + c);
            EXPECT_NEAR(re[at], mask[place] * amplitude * std::cos(phase), 1e-13);
            EXPECT_NEAR(im[at], mask[place] * amplitude * std::sin(phase), 1e-13);
            times[place] += 1.0;
          }
        }
      }
    }
    for (const double of : times) EXPECT_EQ(of, 1.0);
  }
}

}  // namespace
}  // namespace orvanel::physical
