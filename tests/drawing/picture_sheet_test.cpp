// Tests that the picture sheet stays inside its area and shows the pixels of the picture.
#include "drawing/picture_sheet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "base/number_text.h"
#include "drawing/sheet.h"
#include "evaluation/model_notes.h"
#include "tests/drawing/blank_margin.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::drawing {
namespace {

ColourPicture Sheet(SimulatedEye simulated, bool linear, std::vector<Plane> channels) {
  ObjectPicture object{{std::string(500, 'W'), Fit::kPad, linear}, 32768, 32768, 16, true, std::move(channels)};
  simulated.results.picture = RetinalPictureOf(simulated.eye, std::move(object));
  return DrawPictureSheet(simulated);
}

TEST(PictureSheet, LeavesItsMarginBlankWhateverTheEyeAndThePicture) {
  for (Eye eye : {AsymmetricEye(), PerfectEye(Millimetres(7.537)), PerfectEye(Millimetres(0.0123))}) {
    eye.name = std::string(300, 'W');
    eye.source = std::string(900, 'W');
    const SimulatedEye simulated = Simulated(eye, {{0.001, Gap::kUp}});
    const Plane& star = simulated.results.star.original;
    EXPECT_TRUE(HasBlankMargin(Sheet(simulated, true, {star}), 56, 20)) << eye.pupil.value();
    EXPECT_TRUE(HasBlankMargin(Sheet(simulated, false, {star, star, star}), 56, 20)) << eye.pupil.value();
  }
}

// A photograph's note is wider than the sheet: all of it is there, in two lines at the foot.
TEST(PictureSheet, TheNoteAtItsFootIsWhole) {
  Eye eye = AsymmetricEye();
  eye.pupil = Millimetres(5.0);
  SimulatedEye simulated = Simulated(eye, {{1.0, Gap::kUp}});
  ObjectPicture object{{"photograph.jpg", Fit::kPad, false}, 4032, 3024, 8, false, {simulated.results.star.original}};
  simulated.results.picture = RetinalPictureOf(simulated.eye, std::move(object));
  const ColourPicture sheet = DrawPictureSheet(simulated);
  const double span = simulated.results.picture->pixel.value() * ORVANEL_GRID_SIZE;
  std::string text = "4032 \u00d7 3024 pixels, all of it, white beside it. The 256 samples span " +
                     NumberText(span, 4) +
                     "\u2032. sRGB values are turned into light and back. Total light is kept. Edges wrap round: light "
                     "blurred over one edge returns at the opposite edge.";
  for (const std::string& sentence : ModelNotes(simulated.results)) text += " " + sentence;
  const Paragraph note(text, {18.0, kInk}, sheet.width - 120.0);
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
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  const ColourPicture sheet =
      Sheet(simulated, true,
            {Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.2), Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.4),
             Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.8)});
  const auto count = std::count_if(sheet.pixels.begin(), sheet.pixels.end(),
                                   [](const Colour& c) { return c.red == 51 && c.green == 102 && c.blue == 204; });
  EXPECT_EQ(count, 2 * 512 * 512);  // even light is seen as it is, as given and with contrast kept; its square is not
}

}  // namespace
}  // namespace orvanel::drawing
