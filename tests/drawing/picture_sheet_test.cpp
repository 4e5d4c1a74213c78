// The sheet of a picture keeps to its area and shows the picture's own pixels.
#include "drawing/picture_sheet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "base/number_text.h"
#include "drawing/sheet.h"
#include "tests/drawing/blank_margin.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::drawing {
namespace {

ColourPicture Sheet(Results results, bool linear, std::vector<Plane> channels) {
  ObjectPicture object{{std::string(500, 'W'), Fit::kPad, linear}, 32768, 32768, 16, true, std::move(channels)};
  results.picture = SeePicture(results.eye.pupil, results.simulation.coefficients, std::move(object));
  return DrawPictureSheet(results);
}

TEST(PictureSheet, LeavesItsMarginBlankWhateverTheEyeAndThePicture) {
  for (Eye eye : {AsymmetricEye(), PerfectEye(Millimetres(7.537)), PerfectEye(Millimetres(0.0123))}) {
    eye.name = std::string(300, 'W');
    eye.source = std::string(900, 'W');
    const Results results = ResultsOf(eye, {{0.001, Gap::kUp}});
    const Plane& star = results.simulation.starOriginal;
    EXPECT_TRUE(HasBlankMargin(Sheet(results, true, {star}), 56, 20)) << eye.pupil.value();
    EXPECT_TRUE(HasBlankMargin(Sheet(results, false, {star, star, star}), 56, 20)) << eye.pupil.value();
  }
}

// A photograph's note is wider than the sheet: all of it is there, in two lines at the foot.
TEST(PictureSheet, TheNoteAtItsFootIsWhole) {
  Eye eye = AsymmetricEye();
  eye.pupil = Millimetres(5.0);
  Results results = ResultsOf(eye, {{1.0, Gap::kUp}});
  ObjectPicture object{{"photograph.jpg", Fit::kPad, false}, 4032, 3024, 8, false, {results.simulation.starOriginal}};
  results.picture = SeePicture(results.eye.pupil, results.simulation.coefficients, std::move(object));
  const ColourPicture sheet = DrawPictureSheet(results);
  const Paragraph note("4032 \u00d7 3024 pixels, all of it, white beside it. The 256 samples span " +
                           NumberText(FieldOf(results.scales.library).value(), 4) + "\u2032 on the library scale and " +
                           NumberText(FieldOf(results.scales.optical).value(), 4) +
                           "\u2032 on the optical scale of the pupil, whose cut-off is " +
                           NumberText(results.scales.opticalCutOff.value(), 4) + " cycles/degree; ratio " +
                           NumberText(results.scales.ratio, 5) +
                           ". sRGB values are turned into light and back; total light is kept. Edges wrap round: light "
                           "blurred over one edge returns at the opposite edge.",
                       {18.0, kInk}, sheet.width - 120.0);
  Canvas expected(sheet.width, note.height(), 1.0);
  note.Draw(expected, {60.0, 0.0});
  // The sheet ends with the note and a margin of 30.
  const std::size_t from = sheet.pixels.size() - static_cast<std::size_t>(sheet.width) *
                                                     static_cast<std::size_t>(expected.picture().height + 30);
  const auto same = [](const Colour& a, const Colour& b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
  };
  EXPECT_TRUE(std::equal(expected.picture().pixels.begin(), expected.picture().pixels.end(),
                         sheet.pixels.begin() + static_cast<std::ptrdiff_t>(from), same));
}

TEST(PictureSheet, ShowsThePictureInItsColours) {
  const Results results = ResultsOf(AsymmetricEye(), {{1.0, Gap::kUp}});
  const ColourPicture sheet =
      Sheet(results, true,
            {Plane(ORVANEL_PLANE_SAMPLES, 0.2), Plane(ORVANEL_PLANE_SAMPLES, 0.4), Plane(ORVANEL_PLANE_SAMPLES, 0.8)});
  const auto count = std::count_if(sheet.pixels.begin(), sheet.pixels.end(),
                                   [](const Colour& c) { return c.red == 51 && c.green == 102 && c.blue == 204; });
  EXPECT_EQ(count, 2 * 512 * 512);  // even light is seen as it is, as given and with contrast kept; its square is not
}

}  // namespace
}  // namespace orvanel::drawing
