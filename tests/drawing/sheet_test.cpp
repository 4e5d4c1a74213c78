// Tests the text of the heads of sheets, and that they stay inside their area.
#include "drawing/sheet.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/drawing/blank_margin.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::drawing {
namespace {

constexpr double kWidth = 1600.0, kMargin = 60.0;

SimulatedEye Seen(Eye eye) { return Simulated(std::move(eye), {{1.0, Gap::kUp}}); }

TEST(SheetHead, SaysWhichLensCorrectsTheEye) {
  Eye eye = AsymmetricEye();
  eye.pupil = Millimetres(4.0);
  // -1 D sphere, -0.5 D cylinder at axis 180 over 4 mm: M = -1.25 D, J0 = 0.25 D.
  eye.coefficients = {kOsaConvention,
                      {0.0, 0.0, 0.0, 0.0, 1.25 * 4.0 / (4.0 * std::sqrt(3.0)), -0.25 * 4.0 / (2.0 * std::sqrt(6.0))}};
  EXPECT_EQ(HeadTextsOf(Seen(eye)).lens,
            "Correcting lens: -1.00 D sphere, -0.50 D cylinder, axis 180 (least squares)\u00a0\u00a0\u00a0\u00a0"
            "\u00b7\u00a0\u00a0\u00a0 -1.00 D sphere, -0.50 D cylinder, axis 180 (paraxial)");
}

TEST(SheetHead, DrawsANameOrSaysWhereItIs) {
  Eye eye = AsymmetricEye();
  eye.name = "Gr\u00e4fin \u0418\u0432\u0430\u043d\u043e\u0432\u0430";
  EXPECT_EQ(HeadTextsOf(Seen(eye)).name, eye.name);
  EXPECT_TRUE(WarningsOfTexts(eye).empty());
  eye.name = "\u5c71\u7530";
  EXPECT_EQ(HeadTextsOf(Seen(eye)).name, "asymmetric.json");
  EXPECT_TRUE(HeadTextsOf(Seen(eye)).origin.starts_with("Name: in a script that is not drawn here"));
  EXPECT_EQ(WarningsOfTexts(eye).size(), 1U);
  eye.file = "\u5c71.json";
  EXPECT_EQ(HeadTextsOf(Seen(eye)).name, "An eye");
  eye.source = "\u0645\u062d\u0645\u062f";
  EXPECT_TRUE(HeadTextsOf(Seen(eye)).origin.ends_with("Source: in a script that is not drawn here, see summary.json"));
  EXPECT_EQ(WarningsOfTexts(eye).size(), 2U);
  eye.name.clear();
  EXPECT_EQ(HeadTextsOf(Seen(eye)).name, "An eye");
}

TEST(SheetHead, KeepsToItsAreaHoweverLongItsTexts) {
  for (const std::size_t length : {std::size_t{5}, std::size_t{40}, std::size_t{100}, std::size_t{3000}}) {
    Eye eye = AsymmetricEye();
    eye.pupil = Millimetres(5.0);
    eye.name = std::string(length, 'W');
    eye.source = std::string(2 * length, 'W');
    const SheetHead head(Seen(eye), kWidth);
    Canvas canvas(kWidth + 2.0 * kMargin, head.height(), 1.0);
    head.Draw(canvas, {kMargin, 0.0});
    EXPECT_TRUE(HasBlankMargin(canvas.picture(), 56, 20)) << length;
    EXPECT_LT(head.height(), 400.0) << length;
  }
}

}  // namespace
}  // namespace orvanel::drawing
