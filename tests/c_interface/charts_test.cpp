// Tests charts as objects.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "targets/charts/chart.h"
#include "targets/charts/sizes.h"
#include "tests/c_interface/c_eyes.h"

namespace orvanel::test {
namespace {

namespace charts = targets::charts;

orvanel_chart_request UsualChart() {
  orvanel_chart_request request{};
  request.size = sizeof request;
  EXPECT_EQ(orvanel_chart_default(&request), ORVANEL_OK);
  request.pixels_per_degree = 60.0;
  return request;
}

PlaneHandle Chart(const orvanel_chart_request& request) {
  orvanel_plane* made = nullptr;
  EXPECT_EQ(orvanel_chart(&request, &made), ORVANEL_OK) << LastError().text;
  return PlaneHandle(made);
}

TEST(CCharts, LettersHaveTheBitsOfTheLayerBelow) {
  orvanel_chart_request request = UsualChart();
  const double sizes[] = {0.9, 0.7};
  request.logmar = sizes;
  request.lines = 2;
  const PlaneHandle chart = Chart(request);
  charts::ChartRequest same;
  charts::OptotypeChart letters;
  letters.set = charts::OptotypeSetNamed("sloan");
  letters.heights = {charts::HeightOfLogMar(0.9), charts::HeightOfLogMar(0.7)};
  same.content = letters;
  same.pixelsPerDegree = 60.0;
  const auto outcome = DrawChart(same);
  const auto& luminance = std::get<charts::Chart>(outcome).luminance;
  EXPECT_EQ(SamplesOf(chart), std::vector<double>(luminance.begin(), luminance.end()));
  EXPECT_EQ(FactsOf(chart).samples.shape[0], luminance.rows());
  EXPECT_DOUBLE_EQ(FactsOf(chart).x_step, 1.0);
  EXPECT_EQ(FactsOf(chart).surround, 1.0);
  EXPECT_STREQ(FactsOf(chart).warnings, "");
}

TEST(CCharts, NamesAreTheLettersOfTheLines) {
  orvanel_chart_request request = UsualChart();
  const double size = 1.0;
  request.logmar = &size;
  request.lines = 1;
  request.names = "C O";
  const PlaneHandle two = Chart(request);
  request.names = "O C";
  EXPECT_NE(SamplesOf(two), SamplesOf(Chart(request)));
  request.names = "C Q";
  orvanel_plane* made = nullptr;
  EXPECT_EQ(orvanel_chart(&request, &made), ORVANEL_INVALID_ARGUMENT);
  EXPECT_NE(std::string(LastError().text).find("names has an optotype that is not in the set: 'Q'"), std::string::npos)
      << LastError().text;
}

TEST(CCharts, AGratingHasItsMeanAroundItAndNeedsAField) {
  orvanel_chart_request request = UsualChart();
  request.content = ORVANEL_SINE_GRATING;
  request.frequency = 6.0;
  orvanel_plane* made = nullptr;
  EXPECT_EQ(orvanel_chart(&request, &made), ORVANEL_INVALID_ARGUMENT);
  EXPECT_STREQ(LastError().code, "chart_invalid");
  request.width_degrees = request.height_degrees = 1.0;
  const PlaneHandle chart = Chart(request);
  EXPECT_EQ(FactsOf(chart).surround, 0.5);
  double sum = 0.0;
  for (const double v : SamplesOf(chart)) sum += v;
  EXPECT_NEAR(sum / (60.0 * 60.0), 0.5, 1e-12);
}

TEST(CCharts, PixelsThatAreTooWideAreWarnedOf) {
  orvanel_chart_request request = UsualChart();
  const double size = -0.3;
  request.logmar = &size;
  request.lines = 1;
  EXPECT_NE(std::string(FactsOf(Chart(request)).warnings).find("use more pixels per degree"), std::string::npos);
}

}  // namespace
}  // namespace orvanel::test
