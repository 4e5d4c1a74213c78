// The sheet of a picture keeps to its area and shows the picture's own pixels.
#include "cli/pictures/picture_sheet.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/cli/blank_margin.h"
#include "tests/cli/simulated_eyes.h"

namespace orvanel::cli {
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
    EXPECT_TRUE(HasBlankMargin(Sheet(results, true, {star}), 30)) << eye.pupil.value();
    EXPECT_TRUE(HasBlankMargin(Sheet(results, false, {star, star, star}), 30)) << eye.pupil.value();
  }
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
}  // namespace orvanel::cli
