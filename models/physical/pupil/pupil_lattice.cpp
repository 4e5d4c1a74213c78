// Areas of cells inside the outline, and fields row by row.
#include "models/physical/pupil/pupil_lattice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace orvanel::physical {
namespace {

std::size_t At(int row, int column, int side) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(side) + static_cast<std::size_t>(column);
}

// The part of a row of cells that is inside, from left to right.
struct Inside {
  double left, right;  // equal if there is none
};

}  // namespace

std::vector<double> MaskOf(const Ellipse& outline, const PupilLattice& lattice) {
  constexpr int kFine = 64;
  // Rows go down: the outline is mirrored.
  const Chords chords =
      ChordsOf({outline.semiAxisA, outline.semiAxisB, -outline.angle, outline.centreX, -outline.centreY});
  const int side = lattice.side;
  const double step = lattice.step;
  std::vector<double> mask(At(side, 0, side), 0.0);
  for (int r = 0; r < side; ++r) {
    // In cells: cell c is from c to c + 1.
    std::array<Inside, kFine> rows;
    double whole = 0.0, end = side;  // what is inside in all fine rows
    for (int fine = 0; fine < kFine; ++fine) {
      const double height = lattice.Place(r) + ((fine + 0.5) / kFine - 0.5) * step;
      const double v = (height - chords.centreY) / chords.halfHeight;
      const double half = v * v < 1.0 ? chords.halfWidth * std::sqrt(1.0 - v * v) : 0.0;
      const double middle = chords.MiddleAt(v) / step + side / 2.0;
      rows[static_cast<std::size_t>(fine)] = {std::max(0.0, middle - half / step),
                                              std::min(1.0 * side, middle + half / step)};
      whole = std::max(whole, middle - half / step);
      end = std::min(end, middle + half / step);
    }
    const int firstWhole = static_cast<int>(std::ceil(whole)), endOfWhole = static_cast<int>(std::floor(end));
    double* const cells = mask.data() + At(r, 0, side);
    for (int c = firstWhole; c < endOfWhole; ++c) cells[c] = 1.0;
    for (const Inside& row : rows) {
      for (int c = static_cast<int>(row.left); c < row.right; ++c) {
        if (c >= firstWhole && c < endOfWhole) {
          c = endOfWhole - 1;
          continue;
        }
        cells[c] += std::max(0.0, std::min(c + 1.0, row.right) - std::max(1.0 * c, row.left)) / kFine;
      }
    }
  }
  return mask;
}

const std::vector<double>& Masks::Of(const Ellipse& outline, const PupilLattice& lattice) {
  constexpr std::size_t kMost = 32;  // one for each line of white light
  for (const Kept& kept : kept_) {
    if (kept.outline == outline && kept.lattice == lattice) return kept.mask;
  }
  if (kept_.size() == kMost) kept_.pop_front();
  kept_.push_back({outline, lattice, MaskOf(outline, lattice)});
  return kept_.back().mask;
}

void FieldOnLattice(const Pupil& pupil, const PupilLattice& lattice, const std::vector<double>& mask,
                    const SubLattice& part, double x, double y, const ChordKernels& kernels, int planeSide, double* re,
                    double* im) {
  const int side = lattice.side, density = part.density;
  std::fill_n(re, At(planeSide, 0, planeSide), 0.0);
  std::fill_n(im, At(planeSide, 0, planeSide), 0.0);
  constexpr double pi = std::numbers::pi;
  const Attenuation attenuation = AttenuationOf(pupil);
  // A node of the right half, or of the middle, stands for its mirror image too.
  std::vector<double> nodes;
  std::vector<int> columns;
  for (int c = side / 2; c < side; ++c) {
    if (c % density != part.firstColumn && (side - 1 - c) % density != part.firstColumn) continue;
    nodes.push_back(lattice.Place(c));
    columns.push_back(c);
  }
  const std::size_t count = (nodes.size() + kChordBlock - 1) / kChordBlock * kChordBlock;
  nodes.resize(count, 0.0);
  const std::vector<double> weights(count, 0.5);
  std::vector<double> field(4 * count);
  for (int r = part.firstRow; r < side; r += density) {
    const double* const shares = mask.data() + At(r, 0, side);
    if (std::all_of(shares, shares + side, [](double share) { return share == 0.0; })) continue;
    const double height = -lattice.Place(r);
    LinePolynomial phase = AlongLine(pupil.wavefrontUm, height);
    for (double& c : phase) c *= 2.0 * pi / pupil.wavelengthUm;
    phase[0] -= pi * y * height;
    phase[1] -= pi * x;
    const std::array<double, 3> logAmplitude = attenuation.AlongLine(0.0, height);
    ChordField chord{};
    chord.nodes = nodes.data();
    chord.weights = weights.data();
    chord.count = static_cast<int>(count);
    chord.halfLength = 1.0;
    chord.weight = 1.0;
    chord.phase = phase.data();
    chord.attenuation = attenuation.perSquare == 0.0 ? nullptr : logAmplitude.data();
    kernels.fieldOnChord(chord, field.data());
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const int right = columns[i], left = side - 1 - right;
      for (const int c : {right, left}) {
        if (c % density != part.firstColumn) continue;
        const double sign = c == right ? 1.0 : -1.0;
        const std::size_t to = At(r / density, c / density, planeSide);
        re[to] = shares[c] * (field[i] + sign * field[2 * count + i]);
        im[to] = shares[c] * (field[count + i] + sign * field[3 * count + i]);
      }
    }
  }
}

}  // namespace orvanel::physical
