// Tests the primaries of displays: chromaticity, luminance, and the lines of measured spectra.
#include "models/physical/display.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace orvanel::physical {
namespace {

double Sum(const Light& light) {
  double sum = 0.0;
  for (const SpectralLine& line : light) sum += line.weight;
  return sum;
}

double MeanWavelength(const Light& light) {
  double sum = 0.0;
  for (const SpectralLine& line : light) sum += line.weight * line.wavelengthNm;
  return sum / Sum(light);
}

// The colour matching functions of CIE 1931 as sums of Gaussians. Source: Wyman, Sloan and Shirley (2013), Journal of
// Computer Graphics Techniques 2(2):1, which states errors of about 1 %.
double Lobe(double nm, double peak, double below, double above) {
  const double t = (nm - peak) / (nm < peak ? below : above);
  return std::exp(-0.5 * t * t);
}

struct Chromaticity {
  double x, y;
};

Chromaticity ChromaticityOf(const Light& light) {
  double x = 0.0, y = 0.0, z = 0.0;
  for (const auto& [nm, weight] : light) {
    const double power = weight / PhotopicSensitivity(nm);
    x += power * (1.056 * Lobe(nm, 599.8, 37.9, 31.0) + 0.362 * Lobe(nm, 442.0, 16.0, 26.7) -
                  0.065 * Lobe(nm, 501.1, 20.4, 26.2));
    y += power * (0.821 * Lobe(nm, 568.8, 46.9, 40.5) + 0.286 * Lobe(nm, 530.9, 16.3, 31.1));
    z += power * (1.217 * Lobe(nm, 437.0, 11.8, 36.0) + 0.681 * Lobe(nm, 459.0, 26.0, 13.8));
  }
  return {x / (x + y + z), y / (x + y + z)};
}

TEST(Display, BuiltInPrimariesAreCloseToThoseOfSrgb) {
  const Display display = BuiltInDisplay();
  constexpr std::pair<double, double> kSrgb[] = {{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}};
  constexpr double kLuminances[] = {0.2126, 0.7152, 0.0722};
  for (std::size_t c = 0; c < display.primaries.size(); ++c) {
    const auto [x, y] = ChromaticityOf(display.primaries[c]);
    EXPECT_LT(std::hypot(x - kSrgb[c].first, y - kSrgb[c].second), 0.025) << c;
    EXPECT_NEAR(Sum(display.primaries[c]), kLuminances[c], 1e-15) << c;
  }
}

// The integral of the sensitivity by trapezoids is exact for its linear pieces.
TEST(Display, AMeasuredSpectrumKeepsItsLuminance) {
  const Display display = DisplayOf({{300, {1, 0, 2}}, {503, {1, 0, 2}}, {1000, {1, 0, 2}}});
  double sum = 0.0;
  for (int i = 0; i < 60; ++i) sum += 2.5 * (PhotopicSensitivity(400 + 5 * i) + PhotopicSensitivity(405 + 5 * i));
  // Lines below 1e-4 of a primary's light are left out.
  EXPECT_NEAR(Sum(display.primaries[0]), sum, 2e-4 * sum);
  EXPECT_NEAR(Sum(display.primaries[2]), 2 * sum, 4e-4 * sum);
  EXPECT_TRUE(display.primaries[1].empty());
}

// A triangle of power from 551 to 554 nm has its lines at 550 and 555 nm.
TEST(Display, AMeasuredSpectrumKeepsItsMeanWavelength) {
  const Display display = DisplayOf({{551, {0, 0, 0}}, {553, {1, 0, 0}}, {554, {0, 0, 0}}});
  const Light& light = display.primaries[0];
  ASSERT_EQ(light.size(), 2u);
  EXPECT_EQ(light[0].wavelengthNm, 550.0);
  EXPECT_EQ(light[1].wavelengthNm, 555.0);
  // By Simpson's rule on both pieces of P V and of P V times the wavelength, which are cubic at most.
  double sum = 0.0, first = 0.0;
  for (const auto& [nm, weight] :
       {std::pair{551.0, 0.0}, {552.0, 0.5 * 4 * 2}, {553.0, 1.0 * 2}, {553.0, 1.0}, {553.5, 0.5 * 4}, {554.0, 0.0}}) {
    sum += weight / 6 * PhotopicSensitivity(nm);
    first += weight / 6 * PhotopicSensitivity(nm) * nm;
  }
  EXPECT_NEAR(Sum(light), sum, 1e-12);
  EXPECT_NEAR(MeanWavelength(light), first / sum, 1e-9);
}

TEST(Display, WhiteHasTheLightOfAllPrimaries) {
  const Display display = BuiltInDisplay();
  const Light white = WhiteOf(display);
  EXPECT_NEAR(Sum(white), 1.0, 1e-15);
  for (std::size_t i = 1; i < white.size(); ++i) EXPECT_LT(white[i - 1].wavelengthNm, white[i].wavelengthNm);
  double at550 = 0.0;
  for (const Light& primary : display.primaries) {
    for (const SpectralLine& line : primary) {
      if (line.wavelengthNm == 550.0) at550 += line.weight;
    }
  }
  for (const SpectralLine& line : white) {
    EXPECT_DOUBLE_EQ(line.wavelengthNm == 550.0 ? line.weight : at550, at550);
  }
  EXPECT_GT(at550, 0.1);
}

}  // namespace
}  // namespace orvanel::physical
