// Tests the elements of SVG: their places, texts and pictures.
#include "drawing/canvas/svg.h"

#include <gtest/gtest.h>

#include "drawing/canvas/font.h"

namespace orvanel::drawing {
namespace {

constexpr Colour kTeal{1, 128, 255};

bool Has(const Svg& svg, const std::string& part) { return svg.file().find(part) != std::string::npos; }

TEST(Svg, StatesItsSizeInPixelsAndItsUnits) {
  const Svg svg(120.0, 45.5, 2.0);
  EXPECT_TRUE(Has(svg, R"( width="240" height="91" viewBox="0 0 120 45.5" )"));
  EXPECT_TRUE(svg.file().starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "));
  EXPECT_TRUE(svg.file().ends_with("</svg>\n"));
  EXPECT_TRUE(Has(svg, R"(<rect x="0" y="0" width="120" height="45.5" fill="#ffffff"/>)"));
}

TEST(Svg, BoxesAndLinesHaveTheirPlacesToHundredths) {
  Svg svg(100, 100, 1.0);
  svg.Fill({1.25, 2.0, 30.0, 4.126}, kTeal);
  svg.Line({{0.0, -0.001}, {10.5, 20.25}, {33.333, 7.0}}, 3.5, kTeal);
  EXPECT_TRUE(Has(svg, R"(<rect x="1.25" y="2" width="30" height="4.13" fill="#0180ff"/>)"));
  EXPECT_TRUE(Has(svg, R"(<polyline points="0,0 10.5,20.25 33.33,7" fill="none" stroke="#0180ff" stroke-width="3.5")"));
}

TEST(Svg, AnOutlineIsOutsideItsBox) {
  Svg svg(100, 100, 1.0);
  svg.Outline({10.0, 20.0, 30.0, 40.0}, 2.0, kTeal);  // from 8 to 42 across
  EXPECT_TRUE(Has(svg, R"(<rect x="9" y="19" width="32" height="42" fill="none" stroke="#0180ff" stroke-width="2"/>)"));
}

TEST(Svg, ALineOfOnePointIsNone) {
  Svg svg(10, 10, 1.0);
  const std::string before = svg.file();
  svg.Line({{1.0, 1.0}}, 1.0, kTeal);
  svg.Text({1.0, 1.0}, "", {10.0, kTeal});
  EXPECT_EQ(svg.file(), before);
}

TEST(Svg, TextStaysTextWithItsPlaceAndWidth) {
  Svg svg(100, 100, 1.0);
  TextStyle style{16.0, kTeal, true, Align::kRight};
  svg.Text({50.0, 60.0}, "5 < 6 & \"7\" > 4\u2032\n", style);
  EXPECT_TRUE(Has(svg, R"(<text x="50" y="60" font-size="16" font-weight="bold" text-anchor="end" fill="#0180ff")"));
  EXPECT_TRUE(Has(svg, ">5 &lt; 6 &amp; &quot;7&quot; &gt; 4\u2032 </text>"));
  style.upwards = true;
  style.align = Align::kCentre;
  svg.Text({7.0, 8.5}, "up", style);
  EXPECT_TRUE(Has(svg, R"svg(text-anchor="middle" transform="rotate(-90 7 8.5)")svg"));
  EXPECT_DOUBLE_EQ(svg.TextWidth("up", style), TextLength("up", 16.0, true));
}

// The first bytes of each PNG file, and an end with one and with two signs of filling.
TEST(Svg, PicturesAreEmbeddedAsPngFiles) {
  Svg svg(100, 100, 1.0);
  svg.Paste({1.0, 2.0, 30.0, 40.0}, {1, 1, {kTeal}});
  EXPECT_TRUE(Has(svg, R"(<image x="1" y="2" width="30" height="40" preserveAspectRatio="none")"));
  EXPECT_TRUE(Has(svg, "xlink:href=\"data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAAB"));
  // Each PNG file ends in a chunk IEND, whose bytes are known; where it begins in a group of three depends on the size.
  EXPECT_TRUE(Has(svg, "SUVORK5CYII=\"/>") || Has(svg, "JRU5ErkJggg==\"/>") || Has(svg, "ElFTkSuQmCC\"/>"));
}

}  // namespace
}  // namespace orvanel::drawing
