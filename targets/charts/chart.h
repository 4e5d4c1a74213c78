// Draws a chart from a request: optotypes in lines, or a pattern, as a plane of luminance with its size in degrees.
#ifndef ORVANEL_TARGETS_CHARTS_CHART_H
#define ORVANEL_TARGETS_CHARTS_CHART_H

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/layers.h"
#include "base/units.h"
#include "targets/charts/contrast.h"
#include "targets/charts/optotype.h"
#include "targets/plane.h"

namespace orvanel::targets::charts {

// Lines of optotypes, centred, with the spacing of Bailey and Lovie (layout.h).
struct OptotypeChart {
  const OptotypeSet* set = nullptr;
  std::vector<ArcMinutes> heights;  // of the optotypes of each line, from the top
  int perLine = 5;
  std::uint64_t seed = 1;  // of the order (letter_order.h)

  // The optotypes of each line, by name, instead of a random order; empty for that.
  std::vector<std::vector<std::string>> names;

  // For one optotype: the gap to crowding bars around it, in heights of the optotype.
  std::optional<double> crowdingGap;
};

// The luminance has the mean 1/2. The contrast must be a Michelson contrast; polarity does not apply.
struct GratingPattern {
  enum class Wave { kSine, kSquare } wave = Wave::kSine;
  CyclesPerDegree frequency;
  double barDegrees = 90.0;   // anticlockwise as seen; 90: vertical bars
  double phaseDegrees = 0.0;  // of the sine at the middle of the field
};

struct StarPattern {
  ArcMinutes diameter;
  int cycles = 20;  // pairs of sectors
};

// A square grid of discs.
struct PointPattern {
  ArcMinutes diameter;
  int perSide = 1;
  ArcMinutes spacing;  // between the centres of neighbours
};

// Corners of four checks meet at the middle of the field.
struct CheckPattern {
  ArcMinutes side;
};

// Angles of a rectangle. The plane of a chart is linear in angle.
struct Field {
  double widthDegrees = 0.0, heightDegrees = 0.0;
};

struct ChartRequest {
  std::variant<OptotypeChart, GratingPattern, StarPattern, PointPattern, CheckPattern> content;
  Contrast contrast;
  double pixelsPerDegree = 0.0;

  // Optotypes, stars and points without a field get one that fits, with a margin as wide as the largest optotype or
  // a quarter of the star or grid. Gratings and checkerboards fill a field and need one.
  std::optional<Field> field;

  // Moves the content from the middle of the plane, in pixels; fractions are possible.
  Point shift;
};

constexpr int kLargestChart = 4096;  // pixels in a side
constexpr int kMostLines = 64;       // of a chart
constexpr int kMostOptotypesInLine = 64;
constexpr int kMostStarCycles = 1000;
constexpr int kMostPointsPerSide = 100;
constexpr double kLargestShift = 4096.0;  // pixels
constexpr ArcMinutes kSmallestSize(1e-6);
constexpr CyclesPerDegree kLowestFrequency(1e-6);
constexpr double kFewestPixelsPerDegree = 1e-3, kMostPixelsPerDegree = 1e6;

// What is wrong with a request.
enum class ChartProblem {
  kPixelsPerDegree,
  kNoSet,
  kNoLines,  // or more than `high`
  kHeight,   // of the line `index`
  kPerLine,
  kLinesOfNames,     // `value` lines of names for `high` heights
  kUnknownOptotype,  // `word` of the line `index` is not in the set
  kCrowding,         // not a gap from 0 to `high`
  kCrowdingOfMany,   // bars around more than one optotype
  kContrast,
  kWeberOfGrating,
  kFrequency,  // above `high`, one cycle for each pixel
  kAngle,      // of bars or phase
  kDiameter,
  kCycles,
  kPointsPerSide,
  kSpacing,  // below the diameter, so that points overlap
  kSide,
  kNoField,
  kField,       // a side is not finite, or shorter than half a pixel
  kTooLarge,    // the longer side has `value` pixels
  kDoesNotFit,  // the content has a side of `value` degrees, the field `high`
  kShift,
};

// value is the number in question, low and high are its limits; each is 0 where it has no meaning.
struct ChartRefusal {
  ChartProblem problem{};
  double value = 0.0, low = 0.0, high = 0.0;
  int index = -1;    // of a line, from 0
  std::string word;  // an unknown name
};

struct ChartLine {
  ArcMinutes height;
  double strokePixels = 0.0;
  std::vector<int> optotypes;  // their places in the set

  // Pixels are wider than strokes and gaps: the plane has their light, but cannot show them.
  bool IsUndersampled() const;
};

struct Chart {
  Plane luminance;  // 0 to 1, linear
  double pixelsPerDegree = 0.0;
  Field field;  // of the plane
  Luminances luminances{};
  std::vector<ChartLine> lines;  // of optotypes

  // The finest detail, in pixels: a stroke, half a period, a sector at the rim, a point, a check.
  double finestPixels = 0.0;
  bool IsUndersampled() const;
};

// Every pixel has the mean luminance over its area.
std::variant<Chart, ChartRefusal> DrawChart(const ChartRequest& request);

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_CHART_H
