// Tests images of objects of true size: each channel in its own light, against single wavelengths, and conserved light.
#include "models/adapters/sized_image.h"

#include <gtest/gtest.h>

#include <cmath>

#include "models/adapters/physical_eye.h"
#include "models/adapters/physical_refusal.h"
#include "models/physical/retinal_image.h"
#include "tests/support/every_kernel.h"
#include "tests/support/planes.h"

namespace orvanel::models {
namespace {

// Coma, astigmatism and defocus; blue light focuses in front.
Eye AnEye() {
  Eye eye;
  eye.pupil = Millimetres(4.5);
  eye.coefficients.Replace({0, 0.1, -0.05, 0.08, 0.1, -0.09, 0.05, 0.1, -0.07, 0.03});
  eye.referenceWavelength = Nanometres(555.0);
  return eye;
}

PhysicalSettings DisplaySettings() {
  PhysicalSettings settings;
  settings.display = physical::BuiltInDisplay();
  settings.light = WhiteOf(*settings.display);
  return settings;
}

Plane NoiseOf(int columns, int rows, unsigned seed) { return {columns, rows, reference::Noise(columns * rows, seed)}; }

SizedObject ColourNoise() {
  return {{NoiseOf(17, 12, 3), NoiseOf(17, 12, 4), NoiseOf(17, 12, 5)}, {0.2, 0.5, 0.1}, ArcMinutes(0.7)};
}

double LargestDifference(const Plane& a, const Plane& b) {
  double largest = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::fabs(a[i] - b[i]));
  return largest;
}

TEST(SizedImage, OfAUniformFieldIsUniformInEachChannel) {
  SizedObject object{{}, {0.9, 0.4, 0.05}, ArcMinutes(0.5)};
  for (const double value : object.surround) object.channels.emplace_back(20, 14, value);
  const SizedImage image = SizedImager(DisplaySettings()).ImageOf(AnEye(), object);
  ASSERT_EQ(image.seen.size(), 3u);
  for (std::size_t c = 0; c < 3; ++c) {
    for (const double v : image.seen[c]) ASSERT_NEAR(v, object.surround[c], 1e-6);
  }
}

TEST(SizedImage, OneChannelDoesNotReachTheOthers) {
  SizedImager imager(DisplaySettings());
  SizedObject object = ColourNoise();
  const SizedImage before = imager.ImageOf(AnEye(), object);
  object.channels[1] = NoiseOf(17, 12, 8);
  const SizedImage after = imager.ImageOf(AnEye(), object);
  EXPECT_EQ(after.seen[0], before.seen[0]);
  EXPECT_EQ(after.seen[2], before.seen[2]);
  EXPECT_GT(LargestDifference(after.seen[1], before.seen[1]), 0.05);
}

// The sum of images in single wavelengths, each with its share of its primary. The error is twice that of an image,
// 1e-4 of the range, since both sides have one.
TEST(SizedImage, IsTheSumOfImagesInSingleWavelengths) {
  PhysicalSettings settings = DisplaySettings();
  const SizedObject object = ColourNoise();
  const SizedImage image = SizedImager(settings).ImageOf(AnEye(), object);
  physical::Workspace workspace(*ActiveKernels());
  for (std::size_t c = 0; c < 3; ++c) {
    const physical::Light& light = settings.display->primaries[c];
    double whole = 0.0;
    for (const physical::SpectralLine& line : light) whole += line.weight;
    Plane sum(17, 12);
    for (const physical::SpectralLine& line : light) {
      const auto filter =
          *physical::ImageFilter::Of(PhysicalEyeOf(AnEye()), {{line.wavelengthNm, 1.0}}, {17, 12, 0.7, 0}, workspace);
      const auto part =
          *filter.ImageOf(object.channels[c].data(), object.surround[c], physical::View::kPatient, workspace);
      for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += line.weight / whole * part.luminance[i];
    }
    EXPECT_LE(LargestDifference(image.seen[c], sum), 2e-4) << c;
  }
}

// A point in a wide dark field: almost all light stays in the field.
TEST(SizedImage, KeepsTheLightOfEachChannel) {
  SizedObject object{{}, {0.0, 0.0, 0.0}, ArcMinutes(1.0)};
  for (const double value : {0.9, 0.5, 0.2}) {
    object.channels.emplace_back(121, 121);
    object.channels.back()[121 * 60 + 60] = value;
  }
  const SizedImage image = SizedImager(DisplaySettings()).ImageOf(AnEye(), object);
  // The rim of a pupil sends 2 / (pi^2 q) of the light beyond q wavelengths / diameter: 0.15 % at 60' here.
  for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(SumOf(image.seen[c]) / SumOf(object.channels[c]), 1.0, 0.004) << c;
}

// The eye is sharp in green. A white edge has fringes: blue is blurred more than green.
TEST(SizedImage, ChromaticAberrationShowsAsFringes) {
  Eye eye = AnEye();
  eye.coefficients.Replace({0.0});
  SizedObject object{{Plane(64, 9)}, {1.0}, ArcMinutes(0.5)};
  for (int r = 0; r < 9; ++r) {
    for (int c = 32; c < 64; ++c) object.channels[0][static_cast<std::size_t>(64 * r + c)] = 1.0;
  }
  const SizedImage image = SizedImager(DisplaySettings()).ImageOf(eye, object);
  ASSERT_EQ(image.seen.size(), 3u);
  EXPECT_EQ(image.object.channels.size(), 3u);
  const double red = image.seen[0].At(4, 30), green = image.seen[1].At(4, 30), blue = image.seen[2].At(4, 30);
  EXPECT_GT(blue, green + 0.1);
  EXPECT_GT(red, green);
}

TEST(SizedImage, WithoutADisplayIsTheImageOfTheLuminance) {
  PhysicalSettings settings;
  settings.light = physical::WhiteLight();
  SizedImager imager(settings);
  const SizedObject object = ColourNoise();
  const SizedImage image = imager.ImageOf(AnEye(), object);
  ASSERT_EQ(image.seen.size(), 1u);
  EXPECT_DOUBLE_EQ(image.object.surround[0], 0.2126 * 0.2 + 0.7152 * 0.5 + 0.0722 * 0.1);
  const double luminance =
      0.2126 * object.channels[0][7] + 0.7152 * object.channels[1][7] + 0.0722 * object.channels[2][7];
  EXPECT_DOUBLE_EQ(image.object.channels[0][7], luminance);
  EXPECT_EQ(imager.ImageOf(AnEye(), image.object).seen, image.seen);
}

TEST(SizedImage, CountsItsSpectralLines) {
  SizedImager imager(DisplaySettings());
  std::size_t lines = 0;
  imager.ImageOf(AnEye(), {{Plane(5, 4, 0.5)}, {0.5}, ArcMinutes(1.0)}, [&lines] { ++lines; });
  EXPECT_EQ(lines, imager.Lines());
  EXPECT_GT(lines, 20u);
}

// The eye does not state the wavelength at which its coefficients hold.
TEST(SizedImage, InSeveralWavelengthsNeedsTheReference) {
  Eye eye = AnEye();
  eye.referenceWavelength.reset();
  EXPECT_THROW(SizedImager(DisplaySettings()).ImageOf(eye, ColourNoise()), PhysicalRefusal);
}

class SizedImageBits : public test::EveryKernel {};

TEST_P(SizedImageBits, AreThoseOfTheBaseline) {
  const SizedImage image = SizedImager(DisplaySettings()).ImageOf(AnEye(), ColourNoise());
  UseKernels(*RunnableKernels().front());
  const SizedImage expected = SizedImager(DisplaySettings()).ImageOf(AnEye(), ColourNoise());
  for (std::size_t c = 0; c < 3; ++c) {
    EXPECT_TRUE(test::SameBits(image.seen[c].data(), expected.seen[c].data(), expected.seen[c].size())) << c;
  }
}

ORVANEL_ON_EVERY_KERNEL(SizedImageBits);

}  // namespace
}  // namespace orvanel::models
