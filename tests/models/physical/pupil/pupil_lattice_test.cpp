// Cells and fields of a pupil on a lattice.
#include "models/physical/pupil/pupil_lattice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <numeric>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
const Ellipse kTurned{0.8, 0.5, 0.6, 0.05, -0.12};

TEST(PupilLattice, SharesAddUpToTheArea) {
  for (const PupilLattice& lattice : {PupilLattice{40, 0.05}, PupilLattice{63, 0.033}}) {
    for (const Ellipse& outline : {Ellipse{}, kTurned}) {
      const std::vector<double> mask = MaskOf(outline, lattice);
      const double area = std::accumulate(mask.begin(), mask.end(), 0.0) * lattice.step * lattice.step;
      // The midpoint rule misses parts of the rows at the tips of the ellipse.
      EXPECT_NEAR(area, kPi * outline.semiAxisA * outline.semiAxisB, 1e-4);
    }
  }
}

// A net of 100 x 100 places in each cell.
TEST(PupilLattice, SharesAreThoseOfTheOutline) {
  const PupilLattice lattice{20, 0.1};
  const std::vector<double> mask = MaskOf(kTurned, lattice);
  constexpr int kNet = 100;
  for (int r = 0; r < 20; ++r) {
    for (int c = 0; c < 20; ++c) {
      int inside = 0;
      for (int i = 0; i < kNet * kNet; ++i) {
        const double x = lattice.Place(c) + ((i % kNet + 0.5) / kNet - 0.5) * 0.1 - kTurned.centreX;
        const double y = -(lattice.Place(r) + ((i / kNet + 0.5) / kNet - 0.5) * 0.1) - kTurned.centreY;
        const double along = x * std::cos(0.6) + y * std::sin(0.6), across = y * std::cos(0.6) - x * std::sin(0.6);
        inside += std::hypot(along / 0.8, across / 0.5) <= 1.0 ? 1 : 0;
      }
      EXPECT_NEAR(mask[static_cast<std::size_t>(r * 20 + c)], 1.0 * inside / (kNet * kNet), 0.01) << r << ' ' << c;
    }
  }
}

TEST(PupilLattice, SumsTheSharesOfAllSubLattices) {
  const PupilLattice lattice{41, 0.05};
  const std::vector<double> mask = MaskOf(kTurned, lattice);
  const SampledOutline outline(kTurned, lattice, 3);
  EXPECT_NEAR(outline.SumOfShares(), std::accumulate(mask.begin(), mask.end(), 0.0), 1e-10);
  EXPECT_NEAR(outline.SumOfSquaredShares(), std::inner_product(mask.begin(), mask.end(), mask.begin(), 0.0), 1e-10);
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

TEST(PupilLattice, HasTheFieldAtItsSamples) {
  Pupil pupil = PupilOf({0, 0.1, -0.2, 0.15, 0.2, -0.1, 0.05, 0.1, -0.08});
  pupil.stilesCrawford = {0.05, 0.4, -0.3};
  const double x = 1.3, y = -0.7;
  // Rows that end within a block, and densities that do not divide the side.
  for (const auto& [side, density] : {std::pair{21, 1}, {20, 1}, {20, 2}, {21, 3}, {20, 3}}) {
    const PupilLattice lattice{side, 2.0 / side};
    const std::vector<double> mask = MaskOf(pupil.outline, lattice);
    const SampledOutline outline(pupil.outline, lattice, density);
    std::vector<double> seen(static_cast<std::size_t>(side * side));
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
            seen[place] += 1.0;
          }
        }
      }
    }
    for (const double times : seen) EXPECT_EQ(times, 1.0);
  }
}

}  // namespace
}  // namespace orvanel::physical
