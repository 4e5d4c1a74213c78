// Checks a request, lays its content out and draws it.
#include "targets/charts/chart.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "targets/charts/coverage.h"
#include "targets/charts/layout.h"
#include "targets/charts/letter_order.h"
#include "targets/charts/patterns.h"

namespace orvanel::targets::charts {
namespace {

constexpr double kMinutesPerDegree = 60.0;
constexpr double kLargest = std::numeric_limits<double>::max();

using Problem = ChartProblem;
using Refused = std::optional<ChartRefusal>;

bool IsSize(ArcMinutes size) { return size >= kSmallestSize && size.value() <= kLargest; }

ChartRefusal Refusal(Problem problem, double value, double low = 0.0, double high = 0.0, int index = -1) {
  return {problem, value, low, high, index, {}};
}

// What the plane has: its size, the content's place and scale.
struct Canvas {
  int columns = 0, rows = 0;
  Point middle;  // of the content, in pixels
  double pixelsPerMinute = 0.0;
};

// The size of the content and the margin beside it, in arc minutes.
struct Extent {
  double width = 0.0, height = 0.0, margin = 0.0;
};

// A content without extent fills its field.
std::variant<Canvas, ChartRefusal> CanvasFor(const ChartRequest& request, const std::optional<Extent>& extent) {
  Canvas canvas;
  canvas.pixelsPerMinute = request.pixelsPerDegree / kMinutesPerDegree;
  double columns = 0.0, rows = 0.0;
  if (request.field) {
    for (const double side : {request.field->widthDegrees, request.field->heightDegrees}) {
      const double least = 0.5 / request.pixelsPerDegree;
      if (!std::isfinite(side) || !(side >= least)) return Refusal(Problem::kField, side, least);
    }
    columns = std::floor(request.field->widthDegrees * request.pixelsPerDegree + 0.5);
    rows = std::floor(request.field->heightDegrees * request.pixelsPerDegree + 0.5);
    if (extent) {
      for (const auto& [content, field] : {std::pair{extent->width, request.field->widthDegrees},
                                           std::pair{extent->height, request.field->heightDegrees}}) {
        constexpr double kRounding = 1e-9;
        const double degrees = content / kMinutesPerDegree;
        if (degrees > field * (1.0 + kRounding)) return Refusal(Problem::kDoesNotFit, degrees, 0.0, field);
      }
    }
  } else if (extent) {
    // A side that is a whole number up to rounding gets no further pixel.
    constexpr double kRounding = 1e-6;
    const auto pixels = [&](double side) {
      return std::max(1.0, std::ceil((side + 2.0 * extent->margin) * canvas.pixelsPerMinute - kRounding));
    };
    columns = pixels(extent->width);
    rows = pixels(extent->height);
  } else {
    return Refusal(Problem::kNoField, 0.0);
  }
  const double longer = std::max(columns, rows);
  if (!(longer <= kLargestChart)) return Refusal(Problem::kTooLarge, longer, 0.0, kLargestChart);
  canvas.columns = static_cast<int>(columns);
  canvas.rows = static_cast<int>(rows);
  canvas.middle = Point{0.5 * columns, 0.5 * rows} + request.shift;
  return canvas;
}

// ---- Optotypes

Refused CheckOptotypes(const OptotypeChart& content) {
  if (content.set == nullptr) return Refusal(Problem::kNoSet, 0.0);
  const auto lines = static_cast<double>(content.heights.size());
  if (lines < 1.0 || lines > kMostLines) return Refusal(Problem::kNoLines, lines, 1.0, kMostLines);
  for (std::size_t i = 0; i < content.heights.size(); ++i) {
    const ArcMinutes height = content.heights[i];
    if (IsSize(height)) continue;
    return Refusal(Problem::kHeight, height.value(), kSmallestSize.value(), kLargest, static_cast<int>(i));
  }
  if (content.names.empty()) {
    if (content.perLine < 1 || content.perLine > kMostOptotypesInLine) {
      return Refusal(Problem::kPerLine, content.perLine, 1.0, kMostOptotypesInLine);
    }
  } else if (content.names.size() != content.heights.size()) {
    return Refusal(Problem::kLinesOfNames, static_cast<double>(content.names.size()), 0.0, lines);
  }
  for (std::size_t i = 0; i < content.names.size(); ++i) {
    const std::vector<std::string>& names = content.names[i];
    if (names.empty() || names.size() > kMostOptotypesInLine) {
      return Refusal(Problem::kPerLine, static_cast<double>(names.size()), 1.0, kMostOptotypesInLine,
                     static_cast<int>(i));
    }
    for (const std::string& name : names) {
      if (!FindOptotype(*content.set, name)) {
        return ChartRefusal{Problem::kUnknownOptotype, 0.0, 0.0, 0.0, static_cast<int>(i), name};
      }
    }
  }
  if (!content.crowdingGap) return std::nullopt;
  constexpr double kWidestGap = 100.0;
  const double gap = *content.crowdingGap;
  if (!(gap >= 0.0 && gap <= kWidestGap)) return Refusal(Problem::kCrowding, gap, 0.0, kWidestGap);
  const std::size_t inLine =
      content.names.empty() ? static_cast<std::size_t>(content.perLine) : content.names[0].size();
  if (content.heights.size() * inLine > 1) {
    return Refusal(Problem::kCrowdingOfMany, static_cast<double>(content.heights.size() * inLine), 1.0, 1.0);
  }
  return std::nullopt;
}

std::vector<LineOfOptotypes> LinesOf(const OptotypeChart& content) {
  std::vector<LineOfOptotypes> lines;
  for (std::size_t i = 0; i < content.heights.size(); ++i) {
    LineOfOptotypes line;
    line.height = content.heights[i].value();
    if (content.names.empty()) {
      line.optotypes = RandomLine(static_cast<int>(content.set->optotypes.size()), content.perLine, content.seed,
                                  static_cast<std::uint32_t>(i));
    } else {
      for (const std::string& name : content.names[i]) line.optotypes.push_back(*FindOptotype(*content.set, name));
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

// ---- Drawings of each content: shares of target and background, or why there is none

struct Drawing {
  Plane shares;  // of the target in each pixel, 0 to 1
  std::vector<ChartLine> lines;
  double finestPixels = 0.0;
};

using Drawn = std::variant<Drawing, ChartRefusal>;

Drawn Draw(const OptotypeChart& content, const ChartRequest& request) {
  if (const Refused refused = CheckOptotypes(content)) return *refused;
  const std::vector<LineOfOptotypes> lines = LinesOf(content);
  const double largest = std::max_element(lines.begin(), lines.end(), [](const auto& a, const auto& b) {
                           return a.height < b.height;
                         })->height;
  const Layout layout =
      content.crowdingGap ? LayOutCrowded(lines[0].optotypes[0], lines[0].height, *content.crowdingGap) : LayOut(lines);
  const auto place = CanvasFor(request, Extent{layout.width, layout.height, largest});
  if (const auto* const refusal = std::get_if<ChartRefusal>(&place)) return *refusal;
  const auto& canvas = std::get<Canvas>(place);
  Coverage coverage(canvas.columns, canvas.rows);
  for (const PlacedOptotype& placed : layout.optotypes) {
    const double scale = placed.height / kStrokesPerOptotype * canvas.pixelsPerMinute;
    const Optotype& optotype = content.set->optotypes[static_cast<std::size_t>(placed.optotype)];
    coverage.Add(optotype.Drawn().Placed({canvas.middle + canvas.pixelsPerMinute * placed.centre, scale, 0.0}));
  }
  coverage.Add(layout.bars.Placed({canvas.middle, canvas.pixelsPerMinute, 0.0}));
  Drawing drawing;
  drawing.shares = coverage.Take();
  drawing.finestPixels = kLargest;
  for (const LineOfOptotypes& line : lines) {
    const double stroke = line.height / kStrokesPerOptotype * canvas.pixelsPerMinute;
    drawing.lines.push_back({ArcMinutes(line.height), stroke, line.optotypes});
    drawing.finestPixels = std::min(drawing.finestPixels, stroke);
  }
  return drawing;
}

Drawn Draw(const GratingPattern& content, const ChartRequest& request) {
  if (request.contrast.kind == Contrast::Kind::kWeber) return Refusal(Problem::kWeberOfGrating, 0.0);
  const double frequency = content.frequency.value();
  if (!(frequency >= kLowestFrequency.value() && frequency <= request.pixelsPerDegree)) {
    return Refusal(Problem::kFrequency, frequency, kLowestFrequency.value(), request.pixelsPerDegree);
  }
  constexpr double kLargestAngle = 3600.0;
  for (const double angle : {content.barDegrees, content.phaseDegrees}) {
    if (!(std::fabs(angle) <= kLargestAngle)) return Refusal(Problem::kAngle, angle, -kLargestAngle, kLargestAngle);
  }
  const auto place = CanvasFor(request, std::nullopt);
  if (const auto* const refusal = std::get_if<ChartRefusal>(&place)) return *refusal;
  const auto& canvas = std::get<Canvas>(place);
  const GratingWave wave = {frequency / request.pixelsPerDegree, content.barDegrees, content.phaseDegrees,
                            canvas.middle};
  Drawing drawing;
  if (content.wave == GratingPattern::Wave::kSquare) {
    drawing.shares = SquareGrating(canvas.columns, canvas.rows, wave);
  } else {
    drawing.shares = SineGrating(canvas.columns, canvas.rows, wave);
    for (double& share : drawing.shares) share = 0.5 + 0.5 * share;
  }
  drawing.finestPixels = 0.5 / wave.cyclesPerPixel;
  return drawing;
}

Drawn DrawShape(const Shape& shape, const Extent& extent, const ChartRequest& request, double finest) {
  const auto place = CanvasFor(request, extent);
  if (const auto* const refusal = std::get_if<ChartRefusal>(&place)) return *refusal;
  const auto& canvas = std::get<Canvas>(place);
  Coverage coverage(canvas.columns, canvas.rows);
  coverage.Add(shape.Placed({canvas.middle, canvas.pixelsPerMinute, 0.0}));
  return Drawing{coverage.Take(), {}, finest * canvas.pixelsPerMinute};
}

Drawn Draw(const StarPattern& content, const ChartRequest& request) {
  const double diameter = content.diameter.value();
  if (!IsSize(content.diameter)) return Refusal(Problem::kDiameter, diameter, kSmallestSize.value(), kLargest);
  if (content.cycles < 1 || content.cycles > kMostStarCycles) {
    return Refusal(Problem::kCycles, content.cycles, 1.0, kMostStarCycles);
  }
  constexpr double kHalfPi = 0x1.921fb54442d18p+0;
  return DrawShape(SiemensStar({}, diameter, content.cycles), {diameter, diameter, 0.25 * diameter}, request,
                   kHalfPi * diameter / content.cycles);
}

Drawn Draw(const PointPattern& content, const ChartRequest& request) {
  const double diameter = content.diameter.value(), spacing = content.spacing.value();
  if (!IsSize(content.diameter)) return Refusal(Problem::kDiameter, diameter, kSmallestSize.value(), kLargest);
  if (content.perSide < 1 || content.perSide > kMostPointsPerSide) {
    return Refusal(Problem::kPointsPerSide, content.perSide, 1.0, kMostPointsPerSide);
  }
  if (content.perSide > 1 && !(spacing >= diameter && spacing <= kLargest)) {
    return Refusal(Problem::kSpacing, spacing, diameter);
  }
  const double side = diameter + (content.perSide - 1) * (content.perSide > 1 ? spacing : 0.0);
  return DrawShape(Points({}, diameter, content.perSide, content.perSide > 1 ? spacing : 0.0),
                   {side, side, 0.25 * side}, request, diameter);
}

Drawn Draw(const CheckPattern& content, const ChartRequest& request) {
  const double side = content.side.value();
  if (!IsSize(content.side)) return Refusal(Problem::kSide, side, kSmallestSize.value(), kLargest);
  const auto place = CanvasFor(request, std::nullopt);
  if (const auto* const refusal = std::get_if<ChartRefusal>(&place)) return *refusal;
  const auto& canvas = std::get<Canvas>(place);
  const double pixels = side * canvas.pixelsPerMinute;
  return Drawing{Checkerboard(canvas.columns, canvas.rows, pixels, canvas.middle), {}, pixels};
}

Refused CheckCommon(const ChartRequest& request) {
  if (!(request.pixelsPerDegree >= kFewestPixelsPerDegree && request.pixelsPerDegree <= kMostPixelsPerDegree)) {
    return Refusal(Problem::kPixelsPerDegree, request.pixelsPerDegree, kFewestPixelsPerDegree, kMostPixelsPerDegree);
  }
  const double largest = LargestContrast(request.contrast);
  if (!(request.contrast.value > 0.0 && request.contrast.value <= largest)) {
    return Refusal(Problem::kContrast, request.contrast.value, 0.0, largest);
  }
  for (const double shift : {request.shift.x, request.shift.y}) {
    if (!(std::fabs(shift) <= kLargestShift)) return Refusal(Problem::kShift, shift, -kLargestShift, kLargestShift);
  }
  return std::nullopt;
}

// A grating has the mean 1/2 at any contrast; in other charts the lighter luminance is 1.
Luminances LuminancesFor(const ChartRequest& request) {
  if (!std::holds_alternative<GratingPattern>(request.content)) return LuminancesOf(request.contrast);
  return {0.5 + 0.5 * request.contrast.value, 0.5 - 0.5 * request.contrast.value};
}

// A stroke of one pixel up to rounding is not below one.
bool IsBelowOnePixel(double pixels) { return pixels < 1.0 - 1e-9; }

}  // namespace

bool ChartLine::IsUndersampled() const { return IsBelowOnePixel(strokePixels); }

bool Chart::IsUndersampled() const { return IsBelowOnePixel(finestPixels); }

std::variant<Chart, ChartRefusal> DrawChart(const ChartRequest& request) {
  if (const Refused refused = CheckCommon(request)) return *refused;
  Drawn drawn = std::visit([&](const auto& content) { return Draw(content, request); }, request.content);
  if (const auto* const refusal = std::get_if<ChartRefusal>(&drawn)) return *refusal;
  auto& drawing = std::get<Drawing>(drawn);
  Chart chart;
  chart.luminances = LuminancesFor(request);
  const auto [target, background] = chart.luminances;
  chart.luminance = std::move(drawing.shares);
  for (double& sample : chart.luminance) sample = background + (target - background) * sample;
  chart.pixelsPerDegree = request.pixelsPerDegree;
  chart.field = {chart.luminance.columns() / request.pixelsPerDegree, chart.luminance.rows() / request.pixelsPerDegree};
  chart.lines = std::move(drawing.lines);
  chart.finestPixels = drawing.finestPixels;
  return chart;
}

}  // namespace orvanel::targets::charts
