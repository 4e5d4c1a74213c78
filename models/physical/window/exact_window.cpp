// Fills the quarters of a window, each by quadrature on a separate grid.
#include "models/physical/window/exact_window.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "base/elementary.h"
#include "models/physical/window/light_between_samples.h"

namespace orvanel::physical {
namespace {

constexpr double kSpacing = 0.2;  // of samples, in the smallest wavelength / diameter

// A Gaussian weights the samples. Its transform smooths the edge of the band at half a cycle a sample; the light has no
// frequency above `spacing` cycles a sample. What the smooth edge leaves out and lets in is below the Gaussian's tail.
// The end of the weights leaves less than 2e-7 (measured).
double ErrorBetween(double spacing) {
  constexpr double kSides = 2.0, kOfTheEnd = 2e-7;
  const double tail = std::numbers::pi * kFineSd * (0.5 - spacing);
  return kSides * Exponential(-2.0 * tail * tail) + kOfTheEnd;
}

// Rows or columns of one half of the window.
struct Half {
  int first = 0;        // in the window
  double middle = 0.0;  // spacings from the window's centre
};

// Of the window, in the light of one beam.
struct Quarter {
  std::size_t beam;
  DirectionGrid grid;
  NodeCounts counts;
  std::ptrdiff_t first;  // sample
};

}  // namespace

std::optional<ExactWindow> ExactWindowOf(std::span<const Beam> beams, std::span<const double> factors,
                                         ChordQuadrature& quadrature) {
  const SlopeWindow slopes = SlopesOf(beams, factors);
  ExactWindow exact;
  LightWindow& window = exact.window;
  window.centreX = slopes.centreX;
  window.centreY = slopes.centreY;
  const int inner = std::min(static_cast<int>(std::ceil(slopes.width / (kSpacing * slopes.unit))), kLargestWindow);
  const int half = inner / 2 + 1 + kFineReach;
  window.side = 2 * half;
  window.spacing = std::max(kSpacing * slopes.unit, slopes.width / inner);
  exact.errorBetween = ErrorBetween(window.spacing / slopes.unit);
  const double middle = (half - 1) / 2.0;
  const Half halves[] = {{0, middle}, {half, middle - half}};
  std::vector<Quarter> quarters;
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double unit = beams[i].unitArcmin;
    for (const Half& rows : halves) {
      for (const Half& columns : halves) {
        const DirectionGrid grid{(window.centreX - columns.middle * window.spacing) / unit,
                                 (window.centreY + rows.middle * window.spacing) / unit, window.spacing / unit, half,
                                 half};
        const NodeCounts counts = ChordQuadrature::CountsFor(beams[i].pupil, grid);
        if (std::max(counts.chords, counts.nodes) > kMaxNodes) return std::nullopt;
        quarters.push_back({i, grid, counts, static_cast<std::ptrdiff_t>(rows.first) * window.side + columns.first});
      }
    }
  }
  exact.samples.resize(static_cast<std::size_t>(window.side) * static_cast<std::size_t>(window.side));
  window.samples = exact.samples.data();
  for (const Quarter& quarter : quarters) {
    GridOutput output;
    output.data = exact.samples.data() + quarter.first;
    output.pitch = window.side;
    output.mirrorX = output.mirrorY = true;  // columns go to the left, rows upwards
    output.factor = factors[quarter.beam];
    output.add = quarter.beam > 0;
    quadrature.Intensity(beams[quarter.beam].pupil, quarter.grid, quarter.counts, output);
  }
  return exact;
}

}  // namespace orvanel::physical
