// Integrates the kernel of interpolation over the outline, and computes fields row by row.
#include "models/physical/pupil/pupil_lattice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "models/physical/plane_index.h"

namespace orvanel::physical {
namespace {

// The kernel of interpolation by Lagrange's polynomials through six samples: pieces in |t| from 0, 1 and 2 on.
using Piece = std::array<double, 6>;
constexpr std::array<Piece, kMaskReach> kKernel = {{
    {1.0, -1.0 / 3.0, -5.0 / 4.0, 5.0 / 12.0, 1.0 / 4.0, -1.0 / 12.0},
    {1.0, -13.0 / 12.0, -5.0 / 8.0, 25.0 / 24.0, -3.0 / 8.0, 1.0 / 24.0},
    {1.0, -137.0 / 60.0, 15.0 / 8.0, -17.0 / 24.0, 1.0 / 8.0, -1.0 / 120.0},
}};
constexpr std::array<double, kMaskReach> kIntegralAtZero = {0.0, 11.0 / 96.0,
                                                            29.0 / 160.0};  // of each piece, continued

double Kernel(double t) {
  t = std::fabs(t);
  if (t >= kMaskReach) return 0.0;
  double value = 0.0;
  const Piece& piece = kKernel[static_cast<std::size_t>(t)];
  for (std::size_t k = piece.size(); k-- > 0;) value = value * t + piece[k];
  return value;
}

// From 0 to t.
double KernelIntegral(double t) {
  const double x = std::fabs(t);
  if (x >= kMaskReach) return t < 0.0 ? -0.5 : 0.5;
  const auto number = static_cast<std::size_t>(x);
  const Piece& piece = kKernel[number];
  double value = 0.0;
  for (std::size_t k = piece.size(); k-- > 0;) value = value * x + piece[k] / static_cast<double>(k + 1);
  value = value * x + kIntegralAtZero[number];
  return t < 0.0 ? -value : value;
}

}  // namespace

std::vector<double> MaskOf(const Ellipse& outline, const PupilLattice& lattice) {
  constexpr int kFine = 64;
  // Rows go down: the outline is mirrored.
  const Chords chords =
      ChordsOf({outline.semiAxisA, outline.semiAxisB, -outline.angle, outline.centreX, -outline.centreY});
  const int side = lattice.side;
  const double step = lattice.step;
  std::vector<double> mask(At(side, 0, side), 0.0);
  // Where the kernel lies whole in the chord its integral is 1. The weights of such samples are stored as the
  // differences from one column to the next, so that a chord costs the same at any width.
  std::vector<double> differences(At(side, 0, side), 0.0);
  std::vector<int> ends(static_cast<std::size_t>(side), 0);
  std::vector<double> line(static_cast<std::size_t>(side));
  // Heights between two samples, from the farthest on that reach the first row.
  for (int fine = -kMaskReach * kFine; fine < (side - 1 + kMaskReach) * kFine; ++fine) {
    const double row = (fine + 0.5) / kFine;  // in samples
    const double v = ((row - (side - 1) / 2.0) * step - chords.centreY) / chords.halfHeight;
    if (!(v * v < 1.0)) continue;
    const double half = chords.halfWidth * std::sqrt(1.0 - v * v) / step;
    const double middle = chords.MiddleAt(v) / step + (side - 1) / 2.0;
    const double left = middle - half, right = middle + half;
    const int first = std::max(0, static_cast<int>(std::floor(left)) - kMaskReach + 1);
    const int end = std::min(side, static_cast<int>(std::ceil(right)) + kMaskReach);
    const int firstWhole = std::clamp(static_cast<int>(std::ceil(left)) + kMaskReach, first, std::max(first, end));
    const int endWhole =
        std::clamp(static_cast<int>(std::floor(right)) - kMaskReach + 1, firstWhole, std::max(firstWhole, end));
    const auto forEdges = [&](const auto& visit) {
      for (int c = first; c < std::min(firstWhole, end); ++c) visit(c);
      for (int c = endWhole; c < end; ++c) visit(c);
    };
    forEdges([&](int c) { line[static_cast<std::size_t>(c)] = KernelIntegral(right - c) - KernelIntegral(left - c); });
    const int above = static_cast<int>(std::floor(row));
    for (int r = std::max(0, above - kMaskReach + 1); r <= std::min(side - 1, above + kMaskReach); ++r) {
      const double weight = Kernel(row - r) / kFine;
      double* const cells = mask.data() + At(r, 0, side);
      forEdges([&](int c) { cells[c] += weight * line[static_cast<std::size_t>(c)]; });
      if (firstWhole >= endWhole) continue;
      differences[At(r, firstWhole, side)] += weight;
      if (endWhole < side) differences[At(r, endWhole, side)] -= weight;
      int& last = ends[static_cast<std::size_t>(r)];
      last = std::max(last, endWhole);
    }
  }
  for (int r = 0; r < side; ++r) {
    double whole = 0.0;
    for (int c = 0; c < ends[static_cast<std::size_t>(r)]; ++c) {
      whole += differences[At(r, c, side)];
      mask[At(r, c, side)] += whole;
    }
  }
  return mask;
}

SampledOutline::SampledOutline(const Ellipse& outline, const PupilLattice& lattice, int density)
    : outline_(outline), lattice_(lattice), density_(density) {
  const int side = lattice.side;
  pitch_ = WholeBlocks((side + density - 1) / density);
  places_.resize(At(density, 0, pitch_));
  weights_.resize(At(side * density, 0, pitch_));
  const std::vector<double> mask = MaskOf(outline, lattice);
  for (int c = 0; c < side; ++c) {
    places_[At(c % density, c / density, pitch_)] = lattice.Place(c);
    for (int r = 0; r < side; ++r) {
      weights_[At(r * density + c % density, c / density, pitch_)] = mask[At(r, c, side)];
    }
  }
  for (int i = 0; i < side * density; ++i) {
    const double* const row = weights_.data() + At(i, 0, pitch_);
    Range range{0, pitch_};
    while (range.first < range.end && row[range.first] == 0.0) ++range.first;
    while (range.first < range.end && row[range.end - 1] == 0.0) --range.end;
    range.first = range.first / kChordBlock * kChordBlock;
    range.end = (range.end + kChordBlock - 1) / kChordBlock * kChordBlock;
    inside_.push_back(range);
  }
}

double SampledOutline::SumOfSquaredWeights() const {
  double sum = 0.0;
  for (const double weight : weights_) sum += weight * weight;
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
    row.weights = weights_.data() + At(index, range.first, pitch_);
    row.count = range.end - range.first;
    row.phase = phase.data();
    row.attenuation = attenuation.perSquare == 0.0 ? nullptr : logAmplitude.data();
    kernels.fieldOnRow(row, re + range.first, im + range.first);
  }
}

void SampledOutline::AddMoments(const double* values, const ChordKernels& kernels, double factor,
                                Polynomial& moments) const {
  for (int r = 0; r < lattice_.side; ++r, values += pitch_) {
    const Range range = inside_[static_cast<std::size_t>(r)];
    if (range.first == range.end) continue;
    std::array<double, kPowers * kChordBlock> sums;
    kernels.powerSums(places_.data() + range.first, values + range.first, range.end - range.first, sums.data());
    double power = factor;
    for (int b = 0; b <= kHighestOrder; ++b, power *= -lattice_.Place(r)) {
      for (int a = 0; a + b <= kHighestOrder; ++a) {
        moments.coefficients[Monomial(a, b)] += power * SumOfLanes(sums.data() + a * kChordBlock);
      }
    }
  }
}

const SampledOutline& SampledOutlines::Of(const Ellipse& outline, const PupilLattice& lattice, int density) {
  for (const SampledOutline& kept : kept_) {
    if (kept.outline() == outline && kept.lattice() == lattice && kept.density() == density) return kept;
  }
  kept_.emplace_back(outline, lattice, density);
  while (kept_.size() > kMaxOutlines || (kept_.size() > 1 && samples() > kMaxSamples)) kept_.pop_front();
  return kept_.back();
}

std::size_t SampledOutlines::samples() const {
  std::size_t sum = 0;
  for (const SampledOutline& kept : kept_) sum += kept.samples();
  return sum;
}

}  // namespace orvanel::physical
