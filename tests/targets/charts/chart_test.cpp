// Tests charts: size, place and light of what they show, and every refusal.
#include "targets/charts/chart.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <set>

#include "targets/charts/sizes.h"

namespace orvanel::targets::charts {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

ChartRequest EtdrsRequest() {
  OptotypeChart content;
  content.set = OptotypeSetNamed("sloan");
  for (const double logMar : Steps(0.5, -0.3, 0.1, 20)) content.heights.push_back(HeightOfLogMar(logMar));
  ChartRequest request;
  request.content = content;
  request.pixelsPerDegree = 120.0;
  return request;
}

ChartRequest One(const char* set, const char* name, double minutes, double pixelsPerDegree) {
  OptotypeChart content;
  content.set = OptotypeSetNamed(set);
  content.heights = {ArcMinutes(minutes)};
  content.names = {{name}};
  ChartRequest request;
  request.content = content;
  request.pixelsPerDegree = pixelsPerDegree;
  return request;
}

OptotypeChart& Optotypes(ChartRequest& request) { return std::get<OptotypeChart>(request.content); }

Chart Drawn(const ChartRequest& request) { return std::get<Chart>(DrawChart(request)); }

ChartRefusal Refused(const ChartRequest& request) {
  const auto outcome = DrawChart(request);
  if (std::holds_alternative<Chart>(outcome)) {
    ADD_FAILURE() << "is drawn";
    return {};
  }
  return std::get<ChartRefusal>(outcome);
}

// Light that the targets take from the background, in pixels.
double Missing(const Chart& chart) {
  double sum = 0.0;
  for (const double value : chart.luminance) sum += chart.luminances.background - value;
  return sum / (chart.luminances.background - chart.luminances.target);
}

TEST(Chart, EtdrsLinesHaveTheSizesOfTheirLogMar) {
  const Chart chart = Drawn(EtdrsRequest());
  ASSERT_EQ(chart.lines.size(), 9U);
  double area = 0.0, height = 0.0;
  for (std::size_t i = 0; i < 9; ++i) {
    const double minutes = 5.0 * std::pow(10.0, 0.5 - 0.1 * static_cast<double>(i));
    EXPECT_NEAR(chart.lines[i].height.value(), minutes, 1e-12);
    EXPECT_NEAR(chart.lines[i].strokePixels, minutes / 5.0 * 2.0, 1e-12);
    ASSERT_EQ(chart.lines[i].optotypes.size(), 5U);
    EXPECT_EQ(std::set<int>(chart.lines[i].optotypes.begin(), chart.lines[i].optotypes.end()).size(), 5U);
    for (const int k : chart.lines[i].optotypes) {
      const double strokes = OptotypeSetNamed("sloan")->optotypes[static_cast<std::size_t>(k)].Drawn().Area();
      area += strokes * std::pow(chart.lines[i].strokePixels, 2);
    }
    height += minutes * (i == 0 ? 1.0 : 2.0);
  }
  // All light of all letters, and a margin of one large letter around them.
  EXPECT_NEAR(Missing(chart) / area, 1.0, 1e-9);
  const double largest = 5.0 * std::pow(10.0, 0.5);
  EXPECT_EQ(chart.luminance.columns(), static_cast<int>(std::ceil((9.0 + 2.0) * largest * 2.0)));
  EXPECT_EQ(chart.luminance.rows(), static_cast<int>(std::ceil((height + 2.0 * largest) * 2.0)));
  EXPECT_DOUBLE_EQ(chart.field.widthDegrees, chart.luminance.columns() / 120.0);
  EXPECT_DOUBLE_EQ(chart.field.heightDegrees, chart.luminance.rows() / 120.0);
  EXPECT_NEAR(chart.finestPixels, 2.0 * std::pow(10.0, -0.3), 1e-12);
  EXPECT_FALSE(chart.IsUndersampled());
}

TEST(Chart, AnOptotypeIsDrawnInTheMiddleAtItsSize) {
  // A stroke of 2', 4 pixels; the margin is 10'.
  const Chart chart = Drawn(One("tumbling-e", "right", 10.0, 120.0));
  ASSERT_EQ(chart.luminance.columns(), 60);
  ASSERT_EQ(chart.luminance.rows(), 60);
  for (int r = 0; r < 60; ++r) {
    for (int c = 0; c < 60; ++c) {
      const bool inside = r >= 20 && r < 40 && c >= 20 && c < 40;
      const bool gap = (r - 20) / 4 % 2 == 1 && c >= 24;
      EXPECT_EQ(chart.luminance.At(r, c), inside && !gap ? 0.0 : 1.0) << r << " " << c;
    }
  }
}

// The centre of the dark light, from the middle of the plane.
Point Centroid(const Chart& chart) {
  Point sum;
  for (int r = 0; r < chart.luminance.rows(); ++r) {
    for (int c = 0; c < chart.luminance.columns(); ++c) {
      const Point place = {c + 0.5 - 0.5 * chart.luminance.columns(), r + 0.5 - 0.5 * chart.luminance.rows()};
      sum = sum + (1.0 - chart.luminance.At(r, c)) * place;
    }
  }
  return (1.0 / Missing(chart)) * sum;
}

TEST(Chart, ASubpixelShiftKeepsTheLight) {
  for (const double pixelsPerDegree : {7.3, 60.0, 311.7}) {
    ChartRequest request = One("landolt8", "up-left", 11.3, pixelsPerDegree);
    const double stroke = 11.3 / 5.0 / 60.0 * pixelsPerDegree;
    const double area = OptotypeSetNamed("landolt4")->optotypes[0].Drawn().Area() * stroke * stroke;
    for (const Point shift : {Point{}, Point{0.31, -0.77}, Point{-0.013, 0.5}}) {
      request.shift = shift;
      EXPECT_NEAR(Missing(Drawn(request)) / area, 1.0, 1e-9);
    }
  }
}

TEST(Chart, AShiftMovesTheCentreOfTheLight) {
  // Strokes are 4 pixels wide, so that both sides of a stroke cut pixels in the same way, and the errors of the pixels'
  // centres cancel.
  ChartRequest request = One("hotv", "H", 20.0, 60.0);
  for (const Point shift : {Point{}, Point{2.0, -3.0}, Point{0.25, -0.75}}) {
    request.shift = shift;
    const Point centre = Centroid(Drawn(request));
    EXPECT_NEAR(centre.x, shift.x, 1e-9);
    EXPECT_NEAR(centre.y, shift.y, 1e-9);
  }
}

TEST(Chart, ContrastAndPolarityAreThoseRequested) {
  ChartRequest request = One("sloan", "O", 40.0, 60.0);
  request.contrast = {Contrast::Kind::kWeber, 0.25, Polarity::kDarkOnLight};
  const Chart dark = Drawn(request);
  EXPECT_EQ(dark.luminance.At(0, 0), 1.0);
  EXPECT_EQ(dark.luminance.At(60, 60), 1.0);
  EXPECT_EQ(dark.luminance.At(60, 60 - 16), 0.75);
  request.contrast = {Contrast::Kind::kMichelson, 1.0, Polarity::kLightOnDark};
  const Chart light = Drawn(request);
  EXPECT_EQ(light.luminance.At(0, 0), 0.0);
  EXPECT_EQ(light.luminance.At(60, 60 - 16), 1.0);
}

TEST(Chart, CrowdingBarsSurroundOneOptotype) {
  ChartRequest request = One("hotv", "H", 10.0, 60.0);
  Optotypes(request).crowdingGap = 0.5;
  // 10' and twice 5' + 2', with 10' of margin: 44 pixels, the optotype from 17 to 27.
  const Chart chart = Drawn(request);
  ASSERT_EQ(chart.luminance.columns(), 44);
  EXPECT_NEAR(Missing(chart), 13.0 * 4.0 + 4.0 * 20.0, 1e-9);
  EXPECT_EQ(chart.luminance.At(22, 10), 0.0);
  EXPECT_EQ(chart.luminance.At(22, 11), 0.0);
  EXPECT_EQ(chart.luminance.At(22, 12), 1.0);
  EXPECT_EQ(chart.luminance.At(22, 9), 1.0);
  EXPECT_EQ(chart.luminance.At(10, 22), 0.0);
  EXPECT_EQ(chart.luminance.At(33, 22), 0.0);
  EXPECT_EQ(chart.luminance.At(22, 33), 0.0);
}

TEST(Chart, AFieldSetsTheSizeOfThePlane) {
  ChartRequest request = One("sloan", "Z", 10.0, 60.0);
  request.field = Field{1.5, 0.5};
  const Chart chart = Drawn(request);
  EXPECT_EQ(chart.luminance.columns(), 90);
  EXPECT_EQ(chart.luminance.rows(), 30);
  EXPECT_EQ(chart.field.widthDegrees, 1.5);
  EXPECT_EQ(chart.luminance.At(10, 44), 0.0);
  EXPECT_EQ(chart.luminance.At(9, 44), 1.0);
  request.field = Field{1.5, 10.0 / 60.0};
  EXPECT_EQ(Drawn(request).luminance.rows(), 10);
}

TEST(Chart, StrokesBelowAPixelAreUndersampled) {
  const Chart fine = Drawn(One("sloan", "R", 5.0, 60.0));
  EXPECT_EQ(fine.lines[0].strokePixels, 1.0);
  EXPECT_FALSE(fine.lines[0].IsUndersampled());
  EXPECT_FALSE(fine.IsUndersampled());
  const Chart coarse = Drawn(One("sloan", "R", 5.0, 59.9));
  EXPECT_TRUE(coarse.lines[0].IsUndersampled());
  EXPECT_TRUE(coarse.IsUndersampled());
  // The light is there nevertheless.
  EXPECT_NEAR(Missing(coarse), (12.5 + kPi) * std::pow(59.9 / 60.0, 2), 1e-9);
}

TEST(Chart, GratingsHaveMeanAndContrast) {
  ChartRequest request;
  GratingPattern grating;
  grating.frequency = CyclesPerDegree(3.0);
  request.content = grating;
  request.pixelsPerDegree = 60.0;
  request.field = Field{2.0, 1.0};
  request.contrast.value = 0.4;
  const Chart sine = Drawn(request);
  ASSERT_EQ(sine.luminance.columns(), 120);
  EXPECT_NEAR(std::accumulate(sine.luminance.begin(), sine.luminance.end(), 0.0) / (120.0 * 60.0), 0.5, 1e-12);
  // A pixel's mean at the crest: the wave from 2 pi 4.5/20 to 2 pi 5.5/20.
  const double crest = std::sin(kPi / 20.0) / (kPi / 20.0) * std::sin(2.0 * kPi * 4.5 / 20.0);
  EXPECT_NEAR(sine.luminance.At(3, 64), 0.5 + 0.2 * crest, 1e-12);
  EXPECT_EQ(sine.finestPixels, 10.0);
  grating.wave = GratingPattern::Wave::kSquare;
  request.content = grating;
  const Chart square = Drawn(request);
  for (int c = 60; c < 70; ++c) EXPECT_DOUBLE_EQ(square.luminance.At(30, c), 0.7);
  for (int c = 70; c < 80; ++c) EXPECT_DOUBLE_EQ(square.luminance.At(30, c), 0.3);
}

TEST(Chart, StarsPointsAndChecksAreDrawnAtTheirSizes) {
  ChartRequest request;
  request.pixelsPerDegree = 60.0;
  request.content = StarPattern{ArcMinutes(80.0), 10};
  const Chart star = Drawn(request);
  EXPECT_EQ(star.luminance.columns(), 120);
  EXPECT_NEAR(Missing(star), 0.5 * kPi * 1600.0, 1e-7);
  EXPECT_NEAR(star.finestPixels, kPi * 80.0 / 20.0, 1e-12);
  request.content = PointPattern{ArcMinutes(0.5), 3, ArcMinutes(12.0)};
  const Chart points = Drawn(request);
  EXPECT_EQ(points.luminance.columns(), 37);
  EXPECT_NEAR(Missing(points), 9.0 * kPi * 0.0625, 1e-9);
  EXPECT_TRUE(points.IsUndersampled());
  request.content = CheckPattern{ArcMinutes(4.0)};
  request.field = Field{0.2, 0.2};
  const Chart checks = Drawn(request);
  for (int r = 0; r < 12; ++r) {
    for (int c = 0; c < 12; ++c) {
      EXPECT_NEAR(checks.luminance.At(r, c), ((r + 2) / 4 + (c + 2) / 4) % 2 == 0 ? 0.0 : 1.0, 1e-12);
    }
  }
}

TEST(Chart, RequestsThatCannotBeDrawnAreRefusedWithTheirNumbers) {
  for (const double bad : {0.0, -60.0, kInfinity, kNan}) {
    ChartRequest request = EtdrsRequest();
    request.pixelsPerDegree = bad;
    EXPECT_EQ(Refused(request).problem, ChartProblem::kPixelsPerDegree);
    request = EtdrsRequest();
    Optotypes(request).heights[2] = ArcMinutes(bad);
    EXPECT_EQ(Refused(request).problem, ChartProblem::kHeight);
    EXPECT_EQ(Refused(request).index, 2);
    request = EtdrsRequest();
    request.contrast.value = bad;
    EXPECT_EQ(Refused(request).problem, ChartProblem::kContrast);
    request = EtdrsRequest();
    request.field = Field{10.0, bad};
    EXPECT_EQ(Refused(request).problem, ChartProblem::kField);
    request = EtdrsRequest();
    request.content = StarPattern{ArcMinutes(bad), 10};
    EXPECT_EQ(Refused(request).problem, ChartProblem::kDiameter);
    request.content = PointPattern{ArcMinutes(bad), 1, {}};
    EXPECT_EQ(Refused(request).problem, ChartProblem::kDiameter);
    request.content = PointPattern{ArcMinutes(1.0), 2, ArcMinutes(bad)};
    EXPECT_EQ(Refused(request).problem, ChartProblem::kSpacing);
    request.content = CheckPattern{ArcMinutes(bad)};
    EXPECT_EQ(Refused(request).problem, ChartProblem::kSide);
    request.content = GratingPattern{{}, CyclesPerDegree(bad)};
    EXPECT_EQ(Refused(request).problem, ChartProblem::kFrequency);
  }
  for (const double bad : {kInfinity, kNan}) {
    ChartRequest request = EtdrsRequest();
    request.shift.y = bad;
    EXPECT_EQ(Refused(request).problem, ChartProblem::kShift);
    request = EtdrsRequest();
    request.field = Field{2.0, 2.0};
    request.content = GratingPattern{{}, CyclesPerDegree(4.0), bad};
    EXPECT_EQ(Refused(request).problem, ChartProblem::kAngle);
    request.content = GratingPattern{{}, CyclesPerDegree(4.0), 90.0, bad};
    EXPECT_EQ(Refused(request).problem, ChartProblem::kAngle);
  }
}

TEST(Chart, RefusalsOfOptotypesSayWhichLine) {
  ChartRequest request = EtdrsRequest();
  Optotypes(request).set = nullptr;
  EXPECT_EQ(Refused(request).problem, ChartProblem::kNoSet);
  request = EtdrsRequest();
  Optotypes(request).heights.clear();
  EXPECT_EQ(Refused(request).problem, ChartProblem::kNoLines);
  request = EtdrsRequest();
  Optotypes(request).heights.resize(65, ArcMinutes(1.0));
  EXPECT_EQ(Refused(request).problem, ChartProblem::kNoLines);
  EXPECT_EQ(Refused(request).value, 65.0);
  for (const int bad : {0, -1, 65}) {
    request = EtdrsRequest();
    Optotypes(request).perLine = bad;
    EXPECT_EQ(Refused(request).problem, ChartProblem::kPerLine);
  }
  request = EtdrsRequest();
  Optotypes(request).names = {{"C"}};
  EXPECT_EQ(Refused(request).problem, ChartProblem::kLinesOfNames);
  request = One("sloan", "E", 10.0, 60.0);
  EXPECT_EQ(Refused(request).problem, ChartProblem::kUnknownOptotype);
  EXPECT_EQ(Refused(request).word, "E");
  EXPECT_EQ(Refused(request).index, 0);
  Optotypes(request).names = {{}};
  EXPECT_EQ(Refused(request).problem, ChartProblem::kPerLine);
  for (const double bad : {-0.1, kNan, 101.0}) {
    request = One("sloan", "C", 10.0, 60.0);
    Optotypes(request).crowdingGap = bad;
    EXPECT_EQ(Refused(request).problem, ChartProblem::kCrowding);
  }
  request = EtdrsRequest();
  Optotypes(request).crowdingGap = 0.5;
  EXPECT_EQ(Refused(request).problem, ChartProblem::kCrowdingOfMany);
  EXPECT_EQ(Refused(request).value, 45.0);
}

TEST(Chart, RefusalsOfPatternsAndSizes) {
  ChartRequest request = EtdrsRequest();
  request.pixelsPerDegree = 2000.0;
  EXPECT_EQ(Refused(request).problem, ChartProblem::kTooLarge);
  EXPECT_EQ(Refused(request).high, 4096.0);
  EXPECT_GT(Refused(request).value, 4096.0);
  request = EtdrsRequest();
  request.field = Field{2.0, 10.0};
  EXPECT_EQ(Refused(request).problem, ChartProblem::kDoesNotFit);
  EXPECT_NEAR(Refused(request).value, 9.0 * 5.0 * std::pow(10.0, 0.5) / 60.0, 1e-12);
  EXPECT_EQ(Refused(request).high, 2.0);
  request.content = GratingPattern{{}, CyclesPerDegree(121.0)};
  EXPECT_EQ(Refused(request).problem, ChartProblem::kFrequency);
  EXPECT_EQ(Refused(request).high, 120.0);
  request.content = GratingPattern{{}, CyclesPerDegree(4.0)};
  request.contrast.kind = Contrast::Kind::kWeber;
  EXPECT_EQ(Refused(request).problem, ChartProblem::kWeberOfGrating);
  request.contrast.kind = Contrast::Kind::kMichelson;
  request.field.reset();
  EXPECT_EQ(Refused(request).problem, ChartProblem::kNoField);
  request.content = CheckPattern{ArcMinutes(4.0)};
  EXPECT_EQ(Refused(request).problem, ChartProblem::kNoField);
  request.content = StarPattern{ArcMinutes(80.0), 0};
  EXPECT_EQ(Refused(request).problem, ChartProblem::kCycles);
  request.content = PointPattern{ArcMinutes(2.0), 0, ArcMinutes(4.0)};
  EXPECT_EQ(Refused(request).problem, ChartProblem::kPointsPerSide);
  request.content = PointPattern{ArcMinutes(2.0), 2, ArcMinutes(1.9)};
  EXPECT_EQ(Refused(request).problem, ChartProblem::kSpacing);
}

}  // namespace
}  // namespace orvanel::targets::charts
