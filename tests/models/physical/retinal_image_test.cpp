// Images against the convolution with the point spread function, integrated over each pixel.
#include "models/physical/retinal_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <vector>

#include "models/physical/otf/otf_overlap.h"
#include "tests/models/physical/examples.h"
#include "tests/support/planes.h"

namespace orvanel::physical {
namespace {

// Of white.
constexpr double kBound = 1e-4;

const Eye kAsymmetricEye = EyeOf({0, 0.2, -0.1, 0.08, 0.1, -0.09, 0.05, 0.1, -0.07, 0.03, 0.02, -0.02, 0.08}, 4.5, 560);

RetinalImage ImageOf(const Eye& eye, const Light& light, const ObjectSize& size, const std::vector<double>& object,
                     double surround, View view = View::kPatient) {
  Workspace workspace(*ActiveKernels());
  const Outcome<ImageFilter> filter = ImageFilter::Of(eye, light, size, workspace);
  EXPECT_TRUE(filter);
  return *filter->ImageOf(object.data(), surround, view, workspace);
}

// The share of a pixel's light that comes to a sample so many pixels away: the PSF over the pixel's area, by Simpson's
// rule on every pixel. Columns and rows up to `reach` pixels to each side.
std::vector<double> PixelSpread(const Eye& eye, const Light& light, double pixelArcmin, int reach, View view) {
  constexpr int kSteps = 32;  // of a pixel
  const int side = (2 * reach + 1) * kSteps + 1;
  Workspace workspace(*ActiveKernels());
  const RetinalGrid grid{0, 0, pixelArcmin / kSteps, side, side, view};
  const PointSpread psf = *PointSpreadOf(eye, light, grid, PsfUnit::kPerArcmin2, workspace);
  const auto weight = [](int i) { return i == 0 || i == kSteps ? 1.0 : i % 2 == 1 ? 4.0 : 2.0; };
  std::vector<double> spread;
  for (int r = 0; r < 2 * reach + 1; ++r) {
    for (int c = 0; c < 2 * reach + 1; ++c) {
      double sum = 0.0;
      for (int i = 0; i <= kSteps; ++i) {
        for (int j = 0; j <= kSteps; ++j) {
          const auto at = static_cast<std::size_t>((r * kSteps + i) * side + c * kSteps + j);
          sum += weight(i) * weight(j) * psf.samples[at];
        }
      }
      spread.push_back(sum * std::pow(pixelArcmin / kSteps / 3, 2));
    }
  }
  return spread;
}

void ExpectTheConvolution(const Eye& eye, const Light& light, const ObjectSize& size, const std::vector<double>& object,
                          double surround, View view) {
  const RetinalImage image = ImageOf(eye, light, size, object, surround, view);
  const int reach = std::max(size.columns, size.rows) + size.margin - 1, side = 2 * reach + 1;
  const std::vector<double> spread = PixelSpread(eye, light, size.pixelArcmin, reach, View::kPatient);
  ASSERT_EQ(image.columns, size.columns + 2 * size.margin);
  ASSERT_EQ(image.rows, size.rows + 2 * size.margin);
  double worst = 0.0;
  for (int r = 0; r < image.rows; ++r) {
    for (int c = 0; c < image.columns; ++c) {
      double sum = surround;
      for (int i = 0; i < size.rows; ++i) {
        for (int j = 0; j < size.columns; ++j) {
          const int down = r - size.margin - i + reach, right = c - size.margin - j + reach;
          sum += (object[static_cast<std::size_t>(i * size.columns + j)] - surround) *
                 spread[static_cast<std::size_t>(down * side + right)];
        }
      }
      const int row = view == View::kPatient ? r : image.rows - 1 - r;
      const double actual = image.luminance[static_cast<std::size_t>(row * image.columns + c)];
      worst = std::max(worst, std::fabs(actual - sum));
    }
  }
  EXPECT_LE(worst, kBound);
  testing::Test::RecordProperty("error", std::to_string(worst));
}

void ExpectTheConvolution(const Eye& eye, const Light& light, const ObjectSize& size, View view = View::kPatient) {
  // From -0.31 to 0.69.
  ExpectTheConvolution(eye, light, size, reference::Noise(size.columns * size.rows, 3), 0.19, view);
}

// Pixels of 1/5 to 6 wavelength / diameter.
TEST(RetinalImage, IsTheConvolutionOfThePixelsAreas) {
  for (const double pixel : {0.08, 0.4, 1.3, 2.5}) {
    SCOPED_TRACE(pixel);
    ExpectTheConvolution(kAsymmetricEye, Monochromatic(560), {9, 6, pixel, 2});
  }
}

TEST(RetinalImage, IsTheConvolutionInLightOfThreeColours) {
  ExpectTheConvolution(kAsymmetricEye, {{480, 0.3}, {560, 1.0}, {640, 0.4}}, {7, 9, 0.6, 3});
}

TEST(RetinalImage, IsTheConvolutionWithStilesCrawfordAndAnEllipse) {
  Eye eye = kAsymmetricEye;
  eye.stilesCrawford = {0.05, 0.4, -0.3};
  eye.outline = {0.9, 0.7, 0.6, 0.05, 0.03};
  ExpectTheConvolution(eye, Monochromatic(560), {8, 8, 0.7, 1});
}

// The object that sends the most light to its next period.
TEST(RetinalImage, OfAWhiteFieldIsNotLitFromTheNextPeriod) {
  for (const double pixel : {0.3, 1.5}) {
    SCOPED_TRACE(pixel);
    const ObjectSize size{18, 13, pixel, 4};
    ExpectTheConvolution(kAsymmetricEye, Monochromatic(560), size, std::vector<double>(18 * 13, 1.0), 0.0,
                         View::kPatient);
  }
}

TEST(RetinalImage, OfTheRetinaIsUpsideDown) {
  ExpectTheConvolution(kAsymmetricEye, Monochromatic(560), {6, 9, 0.5, 2}, View::kRetina);
}

// ---- What needs no reference

TEST(RetinalImage, KeepsAllLight) {
  const ObjectSize size{23, 31, 0.4, 5};
  const std::vector<double> object = reference::Noise(23 * 31, 4);
  const RetinalImage image = ImageOf(kAsymmetricEye, {{450, 0.2}, {560, 1.0}, {650, 0.5}}, size, object, 0.25);
  const double before = std::accumulate(object.begin(), object.end(), 0.0) - 0.25 * 23 * 31;
  const double after = std::accumulate(image.luminance.begin(), image.luminance.end(), 0.0) - 0.25 * 33 * 41;
  EXPECT_NEAR(after + image.outside, before, 1e-12 * 23 * 31);
  EXPECT_GT(std::fabs(image.outside), 1e-6);
}

// What the margin of one pixel does not show: all light of the object, less that of the convolution in it.
TEST(RetinalImage, SumsTheLightOutside) {
  const ObjectSize size{7, 5, 0.6, 1};
  const std::vector<double> object = reference::Noise(35, 9);
  const RetinalImage image = ImageOf(kAsymmetricEye, Monochromatic(560), size, object, 0.0);
  constexpr int kReach = 8;
  const std::vector<double> spread = PixelSpread(kAsymmetricEye, Monochromatic(560), 0.6, kReach, View::kPatient);
  double outside = 0.0;
  for (int i = 0; i < 35; ++i) {
    double inside = 0.0;
    for (int r = -1; r < 6; ++r) {
      for (int c = -1; c < 8; ++c) {
        inside += spread[static_cast<std::size_t>((r - i / 7 + kReach) * (2 * kReach + 1) + c - i % 7 + kReach)];
      }
    }
    outside += object[static_cast<std::size_t>(i)] * (1 - inside);
  }
  EXPECT_NEAR(image.outside, outside, 63 * kBound);
  EXPECT_GT(std::fabs(outside), 1.0);
}

// Objects that are as wide as a real one, whose light reaches the next periods: against a lattice with room for all.
TEST(RetinalImage, OfAWideFieldIsThatOfALatticeWithMoreRoom) {
  for (const double pixel : {0.2, 0.35, 0.7}) {
    SCOPED_TRACE(pixel);
    constexpr int kSide = 128, kMargin = 200;
    const std::vector<double> white(kSide * kSide, 1.0);
    const RetinalImage image = ImageOf(kAsymmetricEye, Monochromatic(560), {kSide, kSide, pixel, 0}, white, 0.0);
    const RetinalImage wide = ImageOf(kAsymmetricEye, Monochromatic(560), {kSide, kSide, pixel, kMargin}, white, 0.0);
    double worst = 0.0;
    for (int r = 0; r < kSide; ++r) {
      for (int c = 0; c < kSide; ++c) {
        const auto i = static_cast<std::size_t>(r * kSide + c);
        const auto j = static_cast<std::size_t>((r + kMargin) * wide.columns + c + kMargin);
        worst = std::max(worst, std::fabs(image.luminance[i] - wide.luminance[j]));
      }
    }
    EXPECT_LE(worst, 7e-5);
    testing::Test::RecordProperty("difference" + std::to_string(pixel), std::to_string(worst));
  }
}

TEST(RetinalImage, OfAPlainFieldIsPlain) {
  const ObjectSize size{12, 7, 0.8, 3};
  const RetinalImage image = ImageOf(kAsymmetricEye, Monochromatic(600), size, std::vector<double>(84, 0.37), 0.37);
  for (const double sample : image.luminance) EXPECT_NEAR(sample, 0.37, 1e-15);
}

// The contrast in the middle of a long grating is the MTF, except for the light that its ends lack.
TEST(RetinalImage, OfAGratingHasTheContrastOfTheMtf) {
  constexpr int kSide = 192, kPeriod = 16;
  const double pixel = 0.5;  // 7.5 cycles a degree
  std::vector<double> object;
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) object.push_back(0.5 + 0.5 * std::cos(2 * std::numbers::pi * c / kPeriod));
  }
  const Eye eye = EyeOf({0, 0, 0, 0.05, 0.12, 0.1}, 3.0);
  const RetinalImage image = ImageOf(eye, Monochromatic(550), {kSide, kSide, pixel, 0}, object, 0.5);
  double cosine = 0.0, sine = 0.0;
  for (int c = 64; c < 128; ++c) {
    const double sample = image.luminance[static_cast<std::size_t>(kSide / 2 * kSide + c)];
    cosine += sample * std::cos(2 * std::numbers::pi * c / kPeriod) / 32;
    sine += sample * std::sin(2 * std::numbers::pi * c / kPeriod) / 32;
  }
  const OtfOverlap otf(PupilInLight(eye, 550), ActiveChords());
  const double unit = 0.55 / 3.0 * 10.8 / std::numbers::pi;  // arcmin
  const double angle = std::numbers::pi / kPeriod;
  EXPECT_NEAR(std::hypot(cosine, sine) / 0.5, std::abs(otf.At(unit / (kPeriod * pixel), 0)) * std::sin(angle) / angle,
              2e-3);
}

TEST(RetinalImage, OfAPrismIsMovedAsThePersonSeesIt) {
  const double arcminPerUm = 10.8 / std::numbers::pi * 2 / 3.0;
  const Eye eye = EyeOf({0, 3 / arcminPerUm, 5 / arcminPerUm});  // 5' to the left, 3' up
  std::vector<double> object(21 * 21);
  object[10 * 21 + 10] = 1.0;
  const RetinalImage image = ImageOf(eye, Monochromatic(550), {21, 21, 1.0, 0}, object, 0.0);
  const auto brightest = std::max_element(image.luminance.begin(), image.luminance.end()) - image.luminance.begin();
  EXPECT_EQ(brightest, 7 * 21 + 5);
}

TEST(RetinalImage, IsLinear) {
  Workspace workspace(*ActiveKernels());
  const ObjectSize size{16, 16, 0.5, 0};
  const ImageFilter filter = *ImageFilter::Of(kAsymmetricEye, Monochromatic(560), size, workspace);
  const std::vector<double> first = reference::Noise(256, 5), second = reference::Noise(256, 6);
  std::vector<double> sum;
  for (std::size_t i = 0; i < 256; ++i) sum.push_back(first[i] + 2 * second[i]);
  const RetinalImage a = *filter.ImageOf(first.data(), 0.1, View::kPatient, workspace);
  const RetinalImage b = *filter.ImageOf(second.data(), 0.2, View::kPatient, workspace);
  const RetinalImage both = *filter.ImageOf(sum.data(), 0.5, View::kPatient, workspace);
  for (std::size_t i = 0; i < 256; ++i) EXPECT_NEAR(both.luminance[i], a.luminance[i] + 2 * b.luminance[i], 1e-14);
}

// ---- What is refused

TEST(RetinalImage, RefusesWhatHasNoImage) {
  Workspace workspace(*ActiveKernels());
  const auto problemOf = [&](const Eye& eye, const ObjectSize& size) {
    const Outcome<ImageFilter> filter = ImageFilter::Of(eye, Monochromatic(560), size, workspace);
    EXPECT_FALSE(filter);
    return filter.refusal().problem;
  };
  const Eye& eye = kAsymmetricEye;
  EXPECT_EQ(problemOf(eye, {0, 5, 0.5, 0}), Problem::kObjectSize);
  EXPECT_EQ(problemOf(eye, {5, 4097, 0.5, 0}), Problem::kObjectSize);
  EXPECT_EQ(problemOf(eye, {5, 5, 0.0, 0}), Problem::kPixelSize);
  EXPECT_EQ(problemOf(eye, {5, 5, std::numeric_limits<double>::quiet_NaN(), 0}), Problem::kPixelSize);
  EXPECT_EQ(problemOf(eye, {5, 5, 0.5, -1}), Problem::kMargin);
  EXPECT_EQ(problemOf(eye, {5, 5, 0.5, 2046}), Problem::kMargin);
  EXPECT_EQ(problemOf(eye, {4096, 4096, 20, 0}), Problem::kFieldTooLarge);
  EXPECT_EQ(problemOf(EyeOf({}, 13.0), {5, 5, 0.5, 0}), Problem::kPupilDiameter);
  EXPECT_EQ(problemOf(EyeOf({0, 0, 0, 0, 60.0}), {5, 5, 0.5, 0}), Problem::kTooSteep);

  const ImageFilter filter = *ImageFilter::Of(eye, Monochromatic(560), {2, 2, 0.5, 0}, workspace);
  const std::vector<double> dark(4), bad = {0, 0, std::numeric_limits<double>::infinity(), 0};
  EXPECT_EQ(filter.ImageOf(bad.data(), 0.0, View::kPatient, workspace).refusal().problem, Problem::kLuminance);
  EXPECT_EQ(filter.ImageOf(bad.data(), 0.0, View::kPatient, workspace).refusal().index, 2);
  EXPECT_EQ(filter.ImageOf(dark.data(), std::nan(""), View::kPatient, workspace).refusal().index, -1);
}

// Luminances whose sums exceed the range of doubles would have images without numbers.
TEST(RetinalImage, OfTheLargestLuminancesIsFiniteAndLargerOnesAreRefused) {
  Workspace workspace(*ActiveKernels());
  const ImageFilter filter = *ImageFilter::Of(kAsymmetricEye, Monochromatic(560), {2, 2, 0.5, 0}, workspace);
  for (const double large : {2e100, 1.5e308}) {
    const std::vector<double> object = {0.0, -large, large, large};
    const Outcome<RetinalImage> image = filter.ImageOf(object.data(), 0.0, View::kPatient, workspace);
    ASSERT_FALSE(image);
    EXPECT_EQ(image.refusal().problem, Problem::kLuminance);
    EXPECT_EQ(image.refusal().value, -large);
    EXPECT_EQ(image.refusal().high, kLargestLuminance);
    EXPECT_EQ(image.refusal().index, 1);
  }
  const std::vector<double> object(4, kLargestLuminance);
  const Outcome<RetinalImage> image = filter.ImageOf(object.data(), -kLargestLuminance, View::kPatient, workspace);
  ASSERT_TRUE(image);
  for (const double luminance : image->luminance) EXPECT_LE(std::fabs(luminance), 2 * kLargestLuminance);
  EXPECT_FALSE(filter.ImageOf(object.data(), 2e100, View::kPatient, workspace));
}

}  // namespace
}  // namespace orvanel::physical
