// Chooses the window, and adds up the power spectra of the pupils.
#include "models/physical/window/light_window.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "models/physical/pupil/pupil_lattice.h"
#include "models/physical/window/paraboloid.h"

namespace orvanel::physical {
namespace {

constexpr double kMargin = 1.5;  // around the slopes, for the pattern of a perfect pupil
constexpr double kBright = 0.2;

std::vector<double> HighestOfRows(const LightWindow& window) {
  std::vector<double> highest(static_cast<std::size_t>(window.side));
  const double* row = window.samples;
  for (double& most : highest) {
    for (int c = 0; c < window.side; ++c) most = most < row[c] ? row[c] : most;
    row += window.side;
  }
  return highest;
}

}  // namespace

SlopeWindow SlopesOf(std::span<const Beam> beams, std::span<const double> factors) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  double lowX = infinity, highX = -infinity, lowY = infinity, highY = -infinity;
  SlopeWindow window;
  window.unit = infinity;
  const double bright = kBright * *std::max_element(factors.begin(), factors.end());
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double unit = beams[i].unitArcmin;
    window.unit = std::min(window.unit, unit);
    if (factors[i] < bright) continue;
    const SlopeRange range = SlopesOf(beams[i].pupil);
    lowX = std::min(lowX, (range.lowX - kMargin) * unit);
    highX = std::max(highX, (range.highX + kMargin) * unit);
    lowY = std::min(lowY, (range.lowY - kMargin) * unit);
    highY = std::max(highY, (range.highY + kMargin) * unit);
  }
  window.centreX = (lowX + highX) / 2.0;
  window.centreY = (lowY + highY) / 2.0;
  window.width = std::max(highX - lowX, highY - lowY);
  return window;
}

Outcome<LightWindow> WindowOf(std::span<const Beam> beams, std::span<const double> factors, int minSide) {
  const SlopeWindow slopes = SlopesOf(beams, factors);
  const double least = kWindowSpacing * slopes.unit, most = kWidestWindowSpacing * slopes.unit;
  if (!(slopes.width > 0.0 && slopes.width <= kLargestWindow * most)) {
    return Refusal{Problem::kTooSteep, 0.0, 0.0, kWidestWindowSpacing * kLargestWindow, beams.front().line};
  }
  LightWindow window{slopes.centreX, slopes.centreY};
  window.side = PlaneTransform::SideFor(std::max(minSide, static_cast<int>(std::ceil(slopes.width / most))));
  window.spacing = std::max(least, slopes.width / window.side);
  return window;
}

LatticeField FieldInWindow(const Beam& beam, const LightWindow& window, Workspace& workspace, AlignedMemory& re,
                           AlignedMemory& im) {
  const Pupil& pupil = beam.pupil;
  const double unit = beam.unitArcmin, across = window.side * window.spacing / unit;
  const PupilLattice lattice{static_cast<int>(std::ceil(across)) + 2 * kMaskReach, 2.0 / across};
  const SampledOutline& outline = workspace.outlines.Of(pupil.outline, lattice, 1);
  const std::size_t samples = static_cast<std::size_t>(lattice.side) * static_cast<std::size_t>(outline.pitch());
  re.Reserve(samples);
  im.Reserve(samples);
  outline.FieldOf(pupil, {}, window.centreX / unit, window.centreY / unit, workspace.chords, re.data(), im.data());
  const double cells =
      std::numbers::pi * pupil.outline.semiAxisA * pupil.outline.semiAxisB / (lattice.step * lattice.step);
  return {{re.data(), im.data(), outline.pitch(), lattice.side, outline.pitch()}, samples, cells, &outline};
}

void SampleLight(std::span<const Beam> beams, std::span<const double> factors, LightWindow& window,
                 Workspace& workspace) {
  const PlaneTransform& transform = workspace.transforms.Of(window.side);
  workspace.sum.Reserve(static_cast<std::size_t>(window.side) * static_cast<std::size_t>(window.side));
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const LatticeField field = FieldInWindow(beams[i], window, workspace, workspace.re, workspace.im);
    transform.PowerSpectrum(field.plane, factors[i] / (field.cells * field.cells), i > 0, workspace.sum.data(),
                            workspace.transforms.memory);
  }
  window.samples = workspace.sum.data();
}

std::vector<Hill> HillsIn(const LightWindow& window, double share) {
  const std::vector<double> highest = HighestOfRows(window);
  const double least = share * *std::max_element(highest.begin(), highest.end());
  const int side = window.side;
  const auto rowAt = [&window, side](int r) {
    return window.samples + static_cast<std::size_t>(r < 0      ? r + side
                                                     : r < side ? r
                                                                : r - side) *
                                static_cast<std::size_t>(side);
  };
  std::vector<Hill> hills;
  for (int r = 0; r < side; ++r) {
    if (highest[static_cast<std::size_t>(r)] < least) continue;
    const double *const above = rowAt(r - 1), *const row = rowAt(r), *const below = rowAt(r + 1);
    for (int c = 0; c < side; ++c) {
      const double s = row[c];
      if (s < least) continue;
      const int before = c == 0 ? side - 1 : c - 1, after = c == side - 1 ? 0 : c + 1;
      const double up = above[c], down = below[c], left = row[before], right = row[after];
      if (s < left || s < right || s < up || s < down) continue;
      const double leftUp = above[before], rightUp = above[after], leftDown = below[before], rightDown = below[after];
      if (s < std::max({leftUp, rightUp, leftDown, rightDown})) continue;
      // Per sample: columns to the left and rows upwards, as directions go.
      const Paraboloid hill = {s,
                               (left - right) / 2.0,
                               (down - up) / 2.0,
                               left - 2.0 * s + right,
                               (leftDown - rightDown - leftUp + rightUp) / 4.0,
                               up - 2.0 * s + down};
      const Step step = Shortened(StepFrom(hill), 0.7);
      const double x = window.centreX + (window.Folded(-c) + step.x) * window.spacing;
      const double y = window.centreY + (window.Folded(r) + step.y) * window.spacing;
      hills.push_back({s + std::max(0.0, Gain(hill, step)), x, y});
    }
  }
  std::stable_sort(hills.begin(), hills.end(), [](const Hill& a, const Hill& b) { return a.value > b.value; });
  return hills;
}

}  // namespace orvanel::physical
