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

SampledOutline::SampledOutline(const Ellipse& outline, const PupilLattice& lattice, int density)
    : outline_(outline), lattice_(lattice), density_(density) {
  const int side = lattice.side;
  pitch_ = ((side + density - 1) / density + kChordBlock - 1) / kChordBlock * kChordBlock;
  places_.resize(At(density, 0, pitch_));
  shares_.resize(At(side * density, 0, pitch_));
  const std::vector<double> mask = MaskOf(outline, lattice);
  for (int c = 0; c < side; ++c) {
    places_[At(c % density, c / density, pitch_)] = lattice.Place(c);
    for (int r = 0; r < side; ++r) {
      shares_[At(r * density + c % density, c / density, pitch_)] = mask[At(r, c, side)];
    }
  }
  for (int i = 0; i < side * density; ++i) {
    const double* const row = shares_.data() + At(i, 0, pitch_);
    Range range{0, pitch_};
    while (range.first < range.end && row[range.first] == 0.0) ++range.first;
    while (range.first < range.end && row[range.end - 1] == 0.0) --range.end;
    range.first = range.first / kChordBlock * kChordBlock;
    range.end = (range.end + kChordBlock - 1) / kChordBlock * kChordBlock;
    inside_.push_back(range);
  }
}

double SampledOutline::SumOfShares() const {
  double sum = 0.0;
  for (const double share : shares_) sum += share;
  return sum;
}

double SampledOutline::SumOfSquaredShares() const {
  double sum = 0.0;
  for (const double share : shares_) sum += share * share;
  return sum;
}

void SampledOutline::FieldOf(const Pupil& pupil, const SubLattice& part, double x, double y,
                             const ChordKernels& kernels, double* re, double* im) const {
  constexpr double pi = std::numbers::pi;
  const Attenuation attenuation = AttenuationOf(pupil);
  for (int r = part.firstRow; r < lattice_.side; r += density_, re += pitch_, im += pitch_) {
    const int index = r * density_ + part.firstColumn;
    const Range range = inside_[static_cast<std::size_t>(index)];
    std::fill(re, re + range.first, 0.0);
    std::fill(im, im + range.first, 0.0);
    std::fill(re + range.end, re + pitch_, 0.0);
    std::fill(im + range.end, im + pitch_, 0.0);
    if (range.first == range.end) continue;
    const double height = -lattice_.Place(r);
    LinePolynomial phase = AlongLine(pupil.wavefrontUm, height);
    for (double& c : phase) c *= 2.0 * pi / pupil.wavelengthUm;
    phase[0] -= pi * y * height;
    phase[1] -= pi * x;
    const std::array<double, 3> logAmplitude = attenuation.AlongLine(0.0, height);
    RowField row{};
    row.places = places_.data() + At(part.firstColumn, range.first, pitch_);
    row.shares = shares_.data() + At(index, range.first, pitch_);
    row.count = range.end - range.first;
    row.phase = phase.data();
    row.attenuation = attenuation.perSquare == 0.0 ? nullptr : logAmplitude.data();
    kernels.fieldOnRow(row, re + range.first, im + range.first);
  }
}

const SampledOutline& SampledOutlines::Of(const Ellipse& outline, const PupilLattice& lattice, int density) {
  constexpr std::size_t kMost = 32;  // one for each line of white light
  for (const SampledOutline& kept : kept_) {
    if (kept.outline() == outline && kept.lattice() == lattice && kept.density() == density) return kept;
  }
  if (kept_.size() == kMost) kept_.pop_front();
  kept_.emplace_back(outline, lattice, density);
  return kept_.back();
}

}  // namespace orvanel::physical
