// Integrates waves over pixels in closed form, and composes stars and grids of shapes.
#include "targets/charts/patterns.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/elementary.h"
#include "targets/charts/coverage.h"

namespace orvanel::targets::charts {
namespace {

constexpr double kPi = 0x1.921fb54442d18p+1;
constexpr double kDegreesPerTurn = 360.0;

// Sine and cosine of an angle in turns. Whole turns are removed before the multiplication, so that zeros stay zeros.
SineCosine OfTurns(double turns) { return SineAndCosine(2.0 * kPi * (turns - std::floor(turns + 0.5))); }

// The unit vector perpendicular to the bars.
Point Across(double barDegrees) {
  const Point bar = Turned({1.0, 0.0}, barDegrees);
  return {-bar.y, bar.x};
}

// The mean of a wave over a pixel, compared with the wave at its centre.
double MeanOverPixel(double cyclesPerPixel) {
  const double angle = kPi * cyclesPerPixel;
  return angle == 0.0 ? 1.0 : SineAndCosine(angle).sine / angle;
}

// The integral from 0 to x of a wave that is 1 from 0 to 1, -1 from 1 to 2, and so on.
double IntegralOfChecks(double x) {
  const double part = x - 2.0 * std::floor(0.5 * x);
  return part < 1.0 ? part : 2.0 - part;
}

std::vector<double> MeansOfChecks(int count, double side, double origin) {
  std::vector<double> means;
  for (int i = 0; i < count; ++i) {
    const double from = (i - origin) / side, to = (i + 1 - origin) / side;
    means.push_back((IntegralOfChecks(to) - IntegralOfChecks(from)) * side);
  }
  return means;
}

}  // namespace

Plane SineGrating(int columns, int rows, const GratingWave& wave) {
  const Point step = wave.cyclesPerPixel * Across(wave.barDegrees);
  const double mean = MeanOverPixel(step.x) * MeanOverPixel(step.y);
  std::vector<SineCosine> across, down;
  for (int c = 0; c < columns; ++c) {
    across.push_back(OfTurns((c + 0.5 - wave.origin.x) * step.x + wave.phaseDegrees / kDegreesPerTurn));
  }
  for (int r = 0; r < rows; ++r) down.push_back(OfTurns((r + 0.5 - wave.origin.y) * step.y));
  Plane plane(columns, rows);
  double* sample = plane.data();
  for (const SineCosine& y : down) {
    for (const SineCosine& x : across) *sample++ = mean * (x.sine * y.cosine + x.cosine * y.sine);
  }
  return plane;
}

Plane SquareGrating(int columns, int rows, const GratingWave& wave) {
  const Point across = Across(wave.barDegrees), along = {across.y, -across.x};
  // Bars that are this far from the origin, and their ends, are outside.
  double reach = 1.0;
  for (const double x : {0.0, 1.0 * columns}) {
    for (const double y : {0.0, 1.0 * rows}) {
      const Point corner = Point{x, y} - wave.origin;
      reach = std::max(reach, 1.0 + std::sqrt(corner.x * corner.x + corner.y * corner.y));
    }
  }
  const double shift = wave.phaseDegrees / kDegreesPerTurn;
  const Point end = reach * along;
  Coverage coverage(columns, rows);
  const double cycles = reach * wave.cyclesPerPixel;
  for (int k = static_cast<int>(std::floor(shift - cycles)) - 1; k < shift + cycles; ++k) {
    const auto at = [&](double turns) { return std::clamp((turns - shift) / wave.cyclesPerPixel, -reach, reach); };
    const Point first = wave.origin + at(k) * across, last = wave.origin + at(k + 0.5) * across;
    coverage.Add(Polygon({first + end, last + end, last - end, first - end}));
  }
  return coverage.Take();
}

Plane Checkerboard(int columns, int rows, double side, Point origin) {
  const std::vector<double> across = MeansOfChecks(columns, side, origin.x), down = MeansOfChecks(rows, side, origin.y);
  Plane plane(columns, rows);
  double* sample = plane.data();
  for (const double y : down) {
    for (const double x : across) *sample++ = 0.5 + 0.5 * x * y;
  }
  return plane;
}

Shape SiemensStar(Point centre, double diameter, int cycles) {
  const double radius = 0.5 * diameter;
  const auto rim = [&](int sector) {
    const SineCosine t = OfTurns(0.5 * sector / cycles);
    return centre + Point{radius * t.cosine, -radius * t.sine};
  };
  Shape star;
  for (int i = 0; i < 2 * cycles; i += 2) {
    star.Add(Outline(centre).LineTo(rim(i + 1)).ArcTo(rim(i), centre, Turn::kClockwise));
  }
  return star;
}

Shape Points(Point centre, double diameter, int perSide, double spacing) {
  const double first = -0.5 * (perSide - 1) * spacing;
  Shape points;
  for (int r = 0; r < perSide; ++r) {
    for (int c = 0; c < perSide; ++c) {
      points.Add(Disc(centre + Point{first + c * spacing, first + r * spacing}, 0.5 * diameter));
    }
  }
  return points;
}

}  // namespace orvanel::targets::charts
