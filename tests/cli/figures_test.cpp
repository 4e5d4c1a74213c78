// Figures and the sheet: nothing is cut off, and axes run as the planes do.
#include "cli/figures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "cli/eyes/eye_file.h"
#include "cli/overview.h"
#include "cli/sections_figure.h"
#include "tests/cli/blank_margin.h"
#include "tests/cli/simulated_eyes.h"

namespace orvanel::cli {
namespace {

std::vector<RingRequest> Rings(const std::vector<double>& acuities) {
  std::vector<RingRequest> rings;
  for (const double acuity : acuities) {
    for (const Gap gap : {Gap::kDown, Gap::kUp, Gap::kRight, Gap::kLeft}) rings.push_back({acuity, gap});
  }
  return rings;
}

std::vector<Eye> Eyes() {
  std::vector<Eye> eyes = {AsymmetricEye(), PerfectEye(Millimetres(3.0)), PerfectEye(Millimetres(7.537)),
                           PerfectEye(Millimetres(0.0123))};
  for (const char* name : {"/standard_observer_6mm.json", "/watson_2015_example_6mm.json"}) {
    eyes.push_back(ReadEyeFile(ORVANEL_EYES + std::string(name)));
  }
  eyes[0].name = std::string(300, 'W');
  eyes[0].source = std::string(900, 'W');
  return eyes;
}

TEST(Figures, ReachNoEdgeOfTheirArea) {
  constexpr double kMargin = 30.0;
  for (const Eye& eye : Eyes()) {
    const Results r = ResultsOf(eye, {{0.001, Gap::kUp}});
    for (const PlaneFigure& figure : {WavefrontFigure(r.simulation), PsfFigure(r.simulation, r.scales),
                                      PsfLogFigure(r.simulation, r.scales), MtfFigure(r.simulation, r.scales)}) {
      Canvas canvas(kPlaneFigureWidth + 2 * kMargin, kFigureHeight + 2 * kMargin, 1.0);
      Draw(canvas, {kMargin, kMargin}, figure);
      EXPECT_TRUE(HasBlankMargin(canvas.picture(), static_cast<int>(kMargin))) << figure.title << eye.pupil.value();
    }
    Canvas canvas(kSectionsFigureWidth + 2 * kMargin, kFigureHeight + 2 * kMargin, 1.0);
    DrawSections(canvas, {kMargin, kMargin}, r.simulation, r.scales);
    EXPECT_TRUE(HasBlankMargin(canvas.picture(), static_cast<int>(kMargin))) << "sections " << eye.pupil.value();
  }
}

TEST(Figures, WavefrontIsInMicrometresOnASymmetricScale) {
  const PlaneFigure figure = WavefrontFigure(ResultsOf(AsymmetricEye(), {{1.0, Gap::kUp}}).simulation);
  EXPECT_EQ(figure.low, -figure.high);
  double highest = 0.0;
  for (const double w : figure.values) highest = std::max(highest, std::isnan(w) ? 0.0 : std::abs(w));
  EXPECT_EQ(figure.high, highest);
  EXPECT_EQ(figure.barLabel, "\u00b5m");
  // Samples 64 and 192 are the edge of the pupil of 4.5 mm.
  const double pitch = 4.5 / 128.0;
  EXPECT_NEAR(figure.x.first, (figure.window.first - 128.5) * pitch, 1e-12);
  EXPECT_NEAR(figure.x.last - figure.x.first, figure.window.count * pitch, 1e-12);
}

TEST(Figures, VerticalAxesRunDownwards) {
  const Results r = ResultsOf(AsymmetricEye(), {{1.0, Gap::kUp}});
  for (const PlaneFigure& figure : {WavefrontFigure(r.simulation), PsfFigure(r.simulation, r.scales),
                                    PsfLogFigure(r.simulation, r.scales), MtfFigure(r.simulation, r.scales)}) {
    EXPECT_LT(figure.y.first, figure.y.last) << figure.title;
    EXPECT_NE(figure.y.label.find("downwards"), std::string::npos) << figure.title;
  }
}

TEST(Figures, RowZeroIsAtTheTop) {
  PlaneFigure figure = MtfFigure(ResultsOf(AsymmetricEye(), {{1.0, Gap::kUp}}).simulation, Scales());
  figure.values.assign(ORVANEL_PLANE_SAMPLES, 0.0);
  std::fill_n(figure.values.begin(), 100 * ORVANEL_GRID_SIZE, 1.0);
  Canvas canvas(kPlaneFigureWidth, kFigureHeight, 1.0);
  Draw(canvas, {0, 0}, figure);
  const auto green = [&canvas](int x, int y) {
    return canvas.picture().pixels[static_cast<std::size_t>(y * canvas.picture().width + x)].green;
  };
  EXPECT_GT(green(300, 120), 200) << "yellow above";
  EXPECT_LT(green(300, 420), 20) << "violet below";
}

TEST(Figures, LinearPointSpreadShowsAllThatIsBrighterThanAHundredth) {
  const Results r = ResultsOf(AsymmetricEye(), {{1.0, Gap::kUp}});
  const Window window = PsfFigure(r.simulation, r.scales).window;
  EXPECT_LT(window.count, ORVANEL_GRID_SIZE);
  for (int row = 0; row < ORVANEL_GRID_SIZE; ++row) {
    for (int column = 0; column < ORVANEL_GRID_SIZE; ++column) {
      const bool inside = row >= window.first && row < window.first + window.count && column >= window.first &&
                          column < window.first + window.count;
      if (!inside) {
        EXPECT_LT(r.simulation.psf[static_cast<std::size_t>(row * ORVANEL_GRID_SIZE + column)], 0.01);
      }
    }
  }
}

TEST(Figures, WindowsAreCentredAndLargeEnough) {
  for (int count = 1; count <= ORVANEL_GRID_SIZE; ++count) {
    const Window window = WindowFor(count);
    EXPECT_GE(window.count, count);
    EXPECT_EQ(window.first + window.count / 2, 128);
  }
  EXPECT_EQ(WindowFor(1000).count, ORVANEL_GRID_SIZE);
}

TEST(Overview, LeavesItsMarginBlankWhateverTheEyeAndTheNumberOfRings) {
  for (const Eye& eye : Eyes()) {
    const bool tiny = eye.pupil < Millimetres(1.0);
    const Results r = ResultsOf(eye, Rings(tiny ? std::vector<double>{0.001} : std::vector<double>{0.1234, 1.0, 1.5}));
    EXPECT_TRUE(HasBlankMargin(DrawOverview(r), 30)) << eye.pupil.value();
  }
}

TEST(Overview, HasRoomForASingleRing) {
  const Results r = ResultsOf(AsymmetricEye(), {{1.0, Gap::kUp}});
  EXPECT_TRUE(HasBlankMargin(DrawOverview(r), 30));
}

}  // namespace
}  // namespace orvanel::cli
