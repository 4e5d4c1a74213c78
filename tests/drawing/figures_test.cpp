// Tests that figures and the overview are not cut off, and that axes have the direction of the planes.
#include "drawing/figures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "drawing/canvas/canvas.h"
#include "drawing/overview.h"
#include "drawing/sections_figure.h"
#include "files/eyes/eye_file.h"
#include "tests/drawing/blank_margin.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::drawing {
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
    const SimulatedEye r = Simulated(eye, {{0.001, Gap::kUp}});
    for (const PlaneFigure& figure : {WavefrontFigure(r.results, r.eye.side), PsfFigure(r.results, r.eye.side),
                                      PsfLogFigure(r.results, r.eye.side), MtfFigure(r.results)}) {
      Canvas canvas(kPlaneFigureWidth + 2 * kMargin, kFigureHeight + 2 * kMargin, 1.0);
      Draw(canvas, {kMargin, kMargin}, figure);
      EXPECT_TRUE(HasBlankMargin(canvas.picture(), static_cast<int>(kMargin))) << figure.title << eye.pupil.value();
    }
    Canvas canvas(kSectionsFigureWidth + 2 * kMargin, kFigureHeight + 2 * kMargin, 1.0);
    DrawSections(canvas, {kMargin, kMargin}, r.results);
    EXPECT_TRUE(HasBlankMargin(canvas.picture(), static_cast<int>(kMargin))) << "sections " << eye.pupil.value();
  }
}

TEST(Figures, WavefrontIsInMicrometresOnASymmetricScale) {
  const PlaneFigure figure = WavefrontFigure(Simulated(AsymmetricEye(), {{1.0, Gap::kUp}}).results, Side::kOd);
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

TEST(Figures, VerticalAxesRunUpwards) {
  const SimulatedEye r = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  for (const PlaneFigure& figure : {WavefrontFigure(r.results, r.eye.side), PsfFigure(r.results, r.eye.side),
                                    PsfLogFigure(r.results, r.eye.side), MtfFigure(r.results)}) {
    EXPECT_GT(figure.y.first, 0.0) << figure.title;
    EXPECT_LT(figure.y.last, 0.0) << figure.title;
    EXPECT_NE(figure.y.label.find(" up"), std::string::npos) << figure.title;
    // Sample 128 is at 0, and so the middle of a window lies half a sample above.
    const double pitch = (figure.y.first - figure.y.last) / figure.window.count;
    EXPECT_NEAR(figure.y.first - (128 - figure.window.first) * pitch, 0.5 * pitch, 1e-9 * pitch) << figure.title;
  }
}

// Vertical coma Z(3,-1) rises to y = 1, which is superior.
TEST(Figures, ThePupilHasSuperiorAtTheTop) {
  Eye eye = PerfectEye(Millimetres(4.0));
  eye.coefficients = {kOsaConvention, {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.3}};
  const PlaneFigure figure = WavefrontFigure(Simulated(eye, {{1.0, Gap::kUp}}).results, Side::kUnknown);
  const auto value = [&figure](double y) {  // in mm, at x = 0, where the figure's axis has y
    const double share = (y - figure.y.first) / (figure.y.last - figure.y.first);
    const int row = figure.window.first + static_cast<int>(share * figure.window.count);
    return figure.values[static_cast<std::size_t>(row * ORVANEL_GRID_SIZE + 128)];
  };
  EXPECT_NEAR(value(2.0), 0.3 * std::sqrt(8.0), 1e-12);
  EXPECT_NEAR(value(-2.0), -0.3 * std::sqrt(8.0), 1e-12);
}

TEST(Figures, NameTheirViewAndMarkTheNoseWhereItHasAMeaning) {
  const SimulatedEye r = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  EXPECT_EQ(WavefrontFigure(r.results, Side::kOs).view, View::kPupil);
  EXPECT_EQ(WavefrontFigure(r.results, Side::kOs).side, Side::kOs);
  for (const PlaneFigure& figure : {PsfFigure(r.results, Side::kOs), PsfLogFigure(r.results, Side::kOs)}) {
    EXPECT_EQ(figure.view, View::kRetina);
    EXPECT_EQ(figure.side, Side::kOs);
  }
  EXPECT_EQ(MtfFigure(r.results).view, View::kRetina);
  EXPECT_EQ(MtfFigure(r.results).side, Side::kUnknown);
}

TEST(Figures, RowZeroIsAtTheTop) {
  PlaneFigure figure = MtfFigure(Simulated(AsymmetricEye(), {{1.0, Gap::kUp}}).results);
  figure.values = Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
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
  const SimulatedEye r = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  const Window window = PsfFigure(r.results, r.eye.side).window;
  EXPECT_LT(window.count, ORVANEL_GRID_SIZE);
  for (int row = 0; row < ORVANEL_GRID_SIZE; ++row) {
    for (int column = 0; column < ORVANEL_GRID_SIZE; ++column) {
      const bool inside = row >= window.first && row < window.first + window.count && column >= window.first &&
                          column < window.first + window.count;
      if (!inside) {
        EXPECT_LT(r.results.psf[static_cast<std::size_t>(row * ORVANEL_GRID_SIZE + column)], 0.01);
      }
    }
  }
}

TEST(Figures, PointSpreadSaysHowMuchLightItsWindowHasUnlessNearlyAll) {
  Results results;
  results.model = ModelKind::kPhysical;
  results.psf = Plane(8, 8);
  results.retinaAxis = {ArcMinutes(0.25), 3.5};
  results.physical.emplace().psfLight = 0.621;
  for (const PlaneFigure& figure : {PsfFigure(results, Side::kOd), PsfLogFigure(results, Side::kOd)}) {
    EXPECT_TRUE(figure.note.ends_with("; 62.1 % of the light")) << figure.note;
  }
  results.physical->psfLight = 0.995;
  EXPECT_EQ(PsfFigure(results, Side::kOd).note.find("light"), std::string::npos);
}

TEST(Figures, WindowsAreCentredAndLargeEnough) {
  const Plane plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  for (int count = 1; count <= ORVANEL_GRID_SIZE; ++count) {
    const Window window = WindowFor(count, plane);
    EXPECT_GE(window.count, count);
    EXPECT_EQ(window.first + window.count / 2, 128);
  }
  EXPECT_EQ(WindowFor(1000, plane).count, ORVANEL_GRID_SIZE);
}

constexpr int kSides = 56, kEnds = 24;  // of a sheet's margin, which is 60 wide and 30 high

TEST(Overview, LeavesItsMarginBlankWhateverTheEyeAndTheNumberOfRings) {
  for (const Eye& eye : Eyes()) {
    const bool tiny = eye.pupil < Millimetres(1.0);
    const SimulatedEye r =
        Simulated(eye, Rings(tiny ? std::vector<double>{0.001} : std::vector<double>{0.1234, 1.0, 1.5}));
    EXPECT_TRUE(HasBlankMargin(DrawOverview(r), kSides, kEnds)) << eye.pupil.value();
  }
}

TEST(Overview, LeavesItsMarginBlankWhateverThePupilTheSideAndTheWarnings) {
  for (const double pupil : {2.0, 3.0, 5.0, 6.0, 8.0}) {
    Eye eye = AsymmetricEye();
    eye.pupil = Millimetres(pupil);
    eye.side = pupil < 4.0 ? Side::kOs : Side::kOd;
    for (int i = 0; i < 12; ++i) eye.source += "A journal of optics with a long name ";
    SimulatedEye r = Simulated(eye, {{0.4, Gap::kRight}, {2.5, Gap::kRight}});
    r.changes = {"one of the changes that are made to an eye", "another one, which is a little longer than the first"};
    for (const char* word : {"short", "as long as several lines of the sheet "}) {
      std::string warning;
      for (int i = 0; i < 14; ++i) warning += word;
      r.warnings.push_back(warning);
    }
    EXPECT_TRUE(HasBlankMargin(DrawOverview(r), kSides, kEnds)) << pupil;
  }
}

TEST(Overview, OfThePhysicalModelLeavesItsMarginBlankToo) {
  for (const double pupil : {0.7, 3.0, 8.0}) {
    Eye eye = AsymmetricEye();
    eye.pupil = Millimetres(pupil);
    eye.referenceWavelength = Nanometres(850.0);
    PhysicalSettings settings;
    settings.stilesCrawford.rho = 0.05;
    settings.origin = physical::Origin::kCentroid;
    if (pupil == 3.0) settings.light = {{500.0, 1.0}, {600.0, 1.0}};
    const SimulatedEye simulated = PhysicallySimulated(eye, {{0.5, Gap::kUp}, {1.0, Gap::kUp}}, settings);
    EXPECT_TRUE(HasBlankMargin(DrawOverview(simulated), kSides, kEnds)) << pupil;
  }
}

TEST(Overview, GrowsWithItsWarningsSoThatNoneIsCut) {
  SimulatedEye r = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  r.warnings = {"short"};
  const int one = DrawOverview(r).height;
  r.warnings[0].clear();
  for (int i = 0; i < 100; ++i) r.warnings[0] += "a warning that goes on and on ";
  const int several = DrawOverview(r).height;
  EXPECT_GT(several, one);
  r.warnings[0] += r.warnings[0];
  EXPECT_GT(DrawOverview(r).height, several);
}

TEST(Overview, HasRoomForASingleRing) {
  const SimulatedEye r = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  EXPECT_TRUE(HasBlankMargin(DrawOverview(r), kSides, kEnds));
}

}  // namespace
}  // namespace orvanel::drawing
