// Tests that the sheet of letters stays inside its area and shows the letters in their colours.
#include "drawing/letters_sheet.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "drawing/overview.h"
#include "tests/drawing/blank_margin.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::drawing {
namespace {

SimulatedEye WithLetters(Eye eye) {
  SimulatedEye simulated = PhysicallySimulated(eye, {{1.0, Gap::kUp}});
  simulated.letters = SeeLetters(simulated.eye, {});
  return simulated;
}

TEST(LettersSheet, LeavesItsMarginBlankWhateverTheEye) {
  Eye eye = AsymmetricEye();
  eye.name = std::string(300, 'W');
  eye.source = std::string(900, 'W');
  const SimulatedEye simulated = WithLetters(eye);
  ASSERT_TRUE(simulated.letters);
  EXPECT_TRUE(HasBlankMargin(DrawLetters(simulated), 56, 20));
  EXPECT_TRUE(HasBlankMargin(DrawOverview(simulated), 56, 20));
  SimulatedEye blurred = simulated;
  blurred.letters.reset();
  EXPECT_LT(DrawLetters(blurred).height, 600);
}

// Lines of one grey: each fills its panel. 188 is the sRGB value of the light 0.5.
TEST(LettersSheet, ShowsAllPanels) {
  SimulatedEye simulated = WithLetters(PerfectEye(Millimetres(3.0)));
  for (LetterLine& line : simulated.letters->lines) {
    for (Plane* const plane : {&line.image.object.channels[0], &line.image.seen[0]}) {
      std::fill(plane->begin(), plane->end(), 0.5);
    }
  }
  for (FocusStep& step : simulated.letters->throughFocus) {
    std::fill(step.image.seen[0].begin(), step.image.seen[0].end(), 0.5);
  }
  const auto greys = [](const ColourPicture& sheet) {
    return std::count_if(sheet.pixels.begin(), sheet.pixels.end(),
                         [](const Colour& c) { return c.red == 188 && c.green == 188 && c.blue == 188; });
  };
  EXPECT_NEAR(static_cast<double>(greys(DrawLetters(simulated))), 10 * 990 * 270 + 9 * 180 * 180, 1000.0);
  // Of three sizes, as shown and as seen.
  EXPECT_GT(greys(DrawOverview(simulated)), 6 * 990 * 270 - 1000);
}

}  // namespace
}  // namespace orvanel::drawing
