// Adds up the light of all wavelengths on one grid.
#include "models/physical/point_spread.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "models/physical/pupil/perfect_pupil.h"
#include "models/physical/window/centroid.h"
#include "models/physical/window/peak.h"

namespace orvanel::physical {
namespace {

// Directions of the wavefront's slopes have x to the examiner's right and y up.
struct Place {
  double x = 0.0;
  double y = 0.0;
};
Place InView(Place slopes, View view) { return {-slopes.x, view == View::kPatient ? slopes.y : -slopes.y}; }

std::optional<Refusal> CheckGrid(const RetinalGrid& grid) {
  constexpr double kLargestSpacing = 60.0, kFarthest = 600.0;
  if (!(grid.spacing > 0.0 && grid.spacing <= kLargestSpacing)) {
    return Refusal{Problem::kGridSpacing, grid.spacing, 0.0, kLargestSpacing};
  }
  for (const int side : {grid.columns, grid.rows}) {
    if (side < 1 || side > kLargestSide) {
      return Refusal{Problem::kGridSize, static_cast<double>(side), 1.0, static_cast<double>(kLargestSide)};
    }
  }
  for (const double place : {grid.centreX, grid.centreY}) {
    if (!(std::fabs(place) <= kFarthest)) return Refusal{Problem::kGridCentre, place, -kFarthest, kFarthest};
  }
  return std::nullopt;
}

// For each beam the density where its |U|^2 is 1, times its share; and what they add up to for perfect pupils.
struct Densities {
  std::vector<double> factors;
  double perfect = 0.0;
};
Densities DensitiesOf(const std::vector<Beam>& beams, ChordQuadrature& quadrature) {
  Densities densities;
  for (const Beam& beam : beams) {
    const PerfectPupil perfect = PerfectPupilOf(beam.pupil, quadrature);
    densities.factors.push_back(beam.share * DensityOf(beam, perfect));
    densities.perfect += densities.factors.back() * perfect.peak;
  }
  return densities;
}

Outcome<NodeCounts> CheckedCounts(const Beam& beam, const DirectionGrid& grid) {
  const NodeCounts counts = ChordQuadrature::CountsFor(beam.pupil, grid);
  const int most = std::max(counts.chords, counts.nodes);
  if (most <= kMaxNodes) return counts;
  return Refusal{Problem::kTooManyNodes, static_cast<double>(most), 0.0, static_cast<double>(kMaxNodes), beam.line};
}

Outcome<Place> OriginOf(const std::vector<Beam>& beams, const Densities& densities, Origin origin,
                        Workspace& workspace) {
  if (origin == Origin::kAxis) return Place{};
  if (origin == Origin::kCentroid) {
    const Centroid centroid = CentroidOf(beams);
    return Place{centroid.x, centroid.y};
  }
  const Outcome<Peak> peak = HighestOf(beams, densities.factors, workspace);
  if (!peak) return peak.refusal();
  return Place{peak->x, peak->y};
}

}  // namespace

Outcome<PointSpread> PointSpreadOf(const Eye& eye, const Light& light, const RetinalGrid& grid, PsfUnit unit,
                                   Workspace& workspace) {
  if (const std::optional<Refusal> refusal = CheckGrid(grid)) return *refusal;
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  const Densities densities = DensitiesOf(*beams, workspace.quadrature);
  const Outcome<Place> origin = OriginOf(*beams, densities, grid.origin, workspace);
  if (!origin) return origin.refusal();
  const Place shown = InView(*origin, grid.view);
  // The views are their own inverses.
  const Place centre = InView({shown.x + grid.centreX, shown.y + grid.centreY}, grid.view);

  std::vector<DirectionGrid> grids;
  std::vector<NodeCounts> counts;
  for (const Beam& beam : *beams) {
    const double scale = beam.unitArcmin;
    grids.push_back({centre.x / scale, centre.y / scale, grid.spacing / scale, grid.columns, grid.rows});
    const Outcome<NodeCounts> checked = CheckedCounts(beam, grids.back());
    if (!checked) return checked.refusal();
    counts.push_back(*checked);
  }

  PointSpread psf{grid, shown.x, shown.y, {}, densities.perfect};
  psf.samples.resize(static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows));
  GridOutput output;
  output.data = psf.samples.data();
  output.pitch = grid.columns;
  output.mirrorX = true;
  output.mirrorY = grid.view == View::kRetina;
  for (std::size_t i = 0; i < beams->size(); ++i) {
    output.factor = densities.factors[i] / (unit == PsfUnit::kStrehl ? densities.perfect : 1.0);
    output.add = i > 0;
    workspace.quadrature.Intensity((*beams)[i].pupil, grids[i], counts[i], output);
  }
  return psf;
}

Outcome<StrehlRatios> StrehlRatiosOf(const Eye& eye, const Light& light, View view, Workspace& workspace) {
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  const Densities densities = DensitiesOf(*beams, workspace.quadrature);
  const DirectionGrid axis{0.0, 0.0, 1.0, 1, 1};
  StrehlRatios ratios;
  for (std::size_t i = 0; i < beams->size(); ++i) {
    const Pupil& pupil = (*beams)[i].pupil;
    const Outcome<NodeCounts> counts = CheckedCounts((*beams)[i], axis);
    if (!counts) return counts.refusal();
    ratios.axis +=
        densities.factors[i] * std::norm(workspace.quadrature.Field(pupil, 0.0, 0.0, *counts).u) / densities.perfect;
  }
  const Outcome<Peak> peak = HighestOf(*beams, densities.factors, workspace);
  if (!peak) return peak.refusal();
  const Place place = InView({peak->x, peak->y}, view);
  ratios.peak = peak->value / densities.perfect;
  constexpr double kRounding = 1e-12;  // no aberration concentrates light more than none
  if (ratios.peak > 1.0 && ratios.peak <= 1.0 + kRounding) ratios.peak = 1.0;
  ratios.peakX = place.x;
  ratios.peakY = place.y;
  return ratios;
}

}  // namespace orvanel::physical
