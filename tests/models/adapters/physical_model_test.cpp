// Tests the results of the physical model: closed forms of an eye without aberration, linear images, and refusals.
#include "models/adapters/physical_model.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <numeric>

#include "models/adapters/physical_refusal.h"

namespace orvanel::models {
namespace {

constexpr Needs kAll = {Need::kWavefront, Need::kWavefrontRange, Need::kStrehl,      Need::kStrehlPeak, Need::kPsf,
                        Need::kMtf,       Need::kSections,       Need::kLineSpreads, Need::kImages};

Eye EyeOf(double pupilMm, std::vector<double> osa) {
  Eye eye;
  eye.pupil = Millimetres(pupilMm);
  eye.coefficients.Replace(std::move(osa));
  return eye;
}

PhysicalSettings Settings() {
  PhysicalSettings settings;
  settings.light = {{550.0, 1.0}};
  settings.mtfAt = {CyclesPerDegree(30.0)};
  return settings;
}

Results ResultsOf(const Eye& eye, const PhysicalSettings& settings = Settings(), Needs needs = kAll) {
  Results results;
  PhysicalModel(settings).Compute(eye, needs, results);
  return results;
}

// Of a round pupil without aberration; x is the frequency over the cut-off.
double DiffractionMtf(double x) {
  return x < 1.0 ? 2.0 / std::numbers::pi * (std::acos(x) - x * std::sqrt(1.0 - x * x)) : 0.0;
}

TEST(PhysicalModel, APerfectEyeHasTheClosedForms) {
  const Results r = ResultsOf(EyeOf(4.0, {0.0}));
  const double cutOff = 4.0 / 550e-6 * std::numbers::pi / 180.0;  // cycles/degree
  EXPECT_EQ(r.model, ModelKind::kPhysical);
  EXPECT_NEAR(r.physical->cutOff.value(), cutOff, 1e-9);
  EXPECT_NEAR(r.strehl, 1.0, 1e-9);
  EXPECT_NEAR(r.strehlPeak, 1.0, 1e-9);
  EXPECT_NEAR(r.physical->mtfAt.at(0).horizontal, DiffractionMtf(30.0 / cutOff), 1e-6);
  EXPECT_NEAR(r.physical->mtfAt[0].vertical, DiffractionMtf(30.0 / cutOff), 1e-6);
  EXPECT_NEAR(r.physical->mtfAt[0].mean, DiffractionMtf(30.0 / cutOff), 1e-5);
  for (std::size_t i = 0; i < r.rowSection.size(); ++i) {
    const double x = static_cast<double>(i) * r.sectionStep.value() / cutOff;
    ASSERT_NEAR(r.rowSection[i], DiffractionMtf(x), 1e-6) << i;
    ASSERT_NEAR(r.columnSection[i], DiffractionMtf(x), 1e-6) << i;
    ASSERT_NEAR(r.physical->mean[i], DiffractionMtf(x), 3e-4) << i;
    ASSERT_NEAR(r.diffractionLimit[i], DiffractionMtf(x), 3e-4) << i;
  }
  // The plane: sample (128, 128 + k) is the frequency k times the step.
  for (const int k : {0, 1, 17, 90, 119, 121}) {
    const double x = k * r.frequencyAxis.step.value() / cutOff;
    EXPECT_NEAR(r.mtf.At(128, 128 + k), DiffractionMtf(x), 1e-4) << k;
    EXPECT_NEAR(r.mtf.At(128 - k, 128), DiffractionMtf(x), 1e-4) << k;
  }
}

TEST(PhysicalModel, PsfIsAiryAtThePlacesOfItsAxis) {
  const Results r = ResultsOf(EyeOf(4.0, {0.0}));
  ASSERT_EQ(r.psf.columns(), 256);
  EXPECT_NEAR(r.retinaAxis.step.value(), 20.0 / 256.0, 1e-15);
  for (const int column : {100, 127, 128, 140}) {
    const double x = (column - r.retinaAxis.centre) * r.retinaAxis.step.value();
    const double y = (128 - r.retinaAxis.centre) * r.retinaAxis.step.value();
    const double radians = std::hypot(x, y) / 60.0 * std::numbers::pi / 180.0;
    const double v = std::numbers::pi * 4.0 / 550e-6 * radians;
    const double airy = 2.0 * std::cyl_bessel_j(1.0, v) / v;
    EXPECT_NEAR(r.psf.At(128, column), airy * airy, 1e-9) << column;
  }
}

// One um of Z(1, 1) over 6 mm moves the PSF 2.2918' to the left, in both views.
TEST(PhysicalModel, TheViewOfThePsfIsThatOfTheSettings) {
  const Eye eye = EyeOf(6.0, {0.0, 1.0, 0.5});
  const double shift = 2.0 / 3000.0 * 180.0 / std::numbers::pi * 60.0;  // of 1 um
  for (const physical::View view : {physical::View::kPatient, physical::View::kRetina}) {
    PhysicalSettings settings = Settings();
    settings.view = view;
    const Results r = ResultsOf(eye, settings, {Need::kStrehl});
    EXPECT_EQ(r.physical->view, view == physical::View::kPatient ? View::kPatient : View::kRetina);
    EXPECT_NEAR(r.physical->strehl.peakX, -0.5 * shift, 1e-6);
    EXPECT_NEAR(r.physical->strehl.peakY, view == physical::View::kPatient ? shift : -shift, 1e-6);
  }
}

// Piston and tilt are left out.
TEST(PhysicalModel, TheMapIsTheWavefrontOverThePupil) {
  const Results r = ResultsOf(EyeOf(6.0, {0.0, 0.0, 0.3, 0.0, 0.2}));
  EXPECT_TRUE(std::isnan(r.wavefront.map.At(0, 128)));
  const int column = 200, row = 90;
  const double x = (column - r.pupilAxis.centre) * r.pupilAxis.step.value() / 3.0;
  const double y = (r.pupilAxis.centre - row) * r.pupilAxis.step.value() / 3.0;
  const double expected = 0.2 * std::sqrt(3.0) * (2.0 * (x * x + y * y) - 1.0);
  EXPECT_NEAR(r.wavefront.map.At(row, column), expected * 1e-3, 1e-12);
  EXPECT_NEAR(r.wavefront.rms.value(), 0.2, 1e-15);
}

TEST(PhysicalModel, SaysWhetherTheReferenceWavelengthIsAssumed) {
  Eye eye = EyeOf(6.0, {0.0});
  EXPECT_TRUE(ResultsOf(eye, Settings(), {}).physical->referenceAssumed);
  EXPECT_EQ(ResultsOf(eye, Settings(), {}).physical->reference, Nanometres(550.0));
  eye.referenceWavelength = Nanometres(850.0);
  EXPECT_FALSE(ResultsOf(eye, Settings(), {}).physical->referenceAssumed);
  EXPECT_EQ(ResultsOf(eye, Settings(), {}).physical->reference, Nanometres(850.0));
}

TEST(PhysicalModel, WhiteLightNeedsTheReferenceWavelength) {
  PhysicalSettings settings = Settings();
  settings.light = physical::WhiteLight();
  Eye eye = EyeOf(3.0, {0.0});
  try {
    ResultsOf(eye, settings, {Need::kStrehl});
    FAIL();
  } catch (const PhysicalRefusal& error) {
    EXPECT_EQ(error.refusal.problem, physical::Problem::kNoReferenceWavelength);
  }
  eye.referenceWavelength = Nanometres(555.0);
  EXPECT_LT(ResultsOf(eye, settings, {Need::kStrehl}).strehl, 1.0);
}

TEST(PhysicalModel, ARingHasExactlyTheAcuityAskedFor) {
  PhysicalModel model(Settings());
  Results results;
  model.Compute(EyeOf(3.0, {0.0}), {Need::kImages}, results);
  const Ring ring = model.SeeRing({0.5, Gap::kRight});
  EXPECT_EQ(ring.effectiveAcuity, 0.5);
  EXPECT_NEAR(ring.diameter * ring.pixel.value(), 10.0, 1e-12);  // arc minutes
  // The row through the middle: dark on the left, open on the right.
  int dark = 0;
  for (int column = 0; column < ring.original.columns(); ++column) dark += ring.original.At(128, column) < 0.5 ? 1 : 0;
  EXPECT_EQ(dark, 16);  // one stroke, a fifth of the diameter
}

// -6 D: the lattice of the averaged MTF would be too large. A ring far smaller than its blur disc, 124' wide, is nearly
// white.
TEST(PhysicalModel, ShowsAnEyeOfHighMyopia) {
  PhysicalModel model(Settings());
  Results results;
  model.Compute(EyeOf(6.0, {0.0, 0.0, 0.0, 0.0, 7.79}), {Need::kStrehl, Need::kSections, Need::kImages}, results);
  EXPECT_TRUE(results.physical->mean.empty());
  EXPECT_FALSE(results.rowSection.empty());
  const Ring ring = model.SeeRing({2.5, Gap::kRight});
  EXPECT_NEAR(ring.diameter * ring.pixel.value(), 2.0, 1e-12);
  for (const double luminance : ring.seen) EXPECT_NEAR(luminance, 1.0, 1e-3);
}

// Images are linear in light: the image of a mixture is the mixture of the images.
TEST(PhysicalModel, ImagesAreLinear) {
  PhysicalModel model(Settings());
  Results results;
  model.Compute(EyeOf(5.0, {0.0, 0.0, 0.0, 0.1, 0.2, -0.1, 0.05, 0.1}), {Need::kImages}, results);
  const Ring up = model.SeeRing({1.0, Gap::kUp}), left = model.SeeRing({1.0, Gap::kLeft});
  ObjectPicture object;
  Plane mixture = up.original;
  for (std::size_t i = 0; i < mixture.size(); ++i) mixture[i] = 0.25 * up.original[i] + 0.75 * left.original[i];
  Plane image, a, b;
  model.ImageOf(mixture, ImageKind::kLinear, image);
  model.ImageOf(up.original, ImageKind::kTotalLight, a);
  model.ImageOf(left.original, ImageKind::kLinear, b);
  for (std::size_t i = 0; i < image.size(); ++i) ASSERT_NEAR(image[i], 0.25 * a[i] + 0.75 * b[i], 1e-13) << i;
}

TEST(PhysicalModel, AnEvenPictureStaysAsItIs) {
  PhysicalModel model(Settings());
  Results results;
  model.Compute(EyeOf(5.0, {0.0, 0.0, 0.0, 0.1, 0.2, -0.1, 0.05, 0.1}), {Need::kImages}, results);
  ObjectPicture object;
  object.channels = {Plane(256, 256, 0.3)};
  const RetinalPicture picture = model.RetinalPictureOf(object);
  for (const double v : picture.seen.at(0)) ASSERT_NEAR(v, 0.3, 1e-12);
  EXPECT_NEAR(picture.pixel.value(), 60.0 / 256.0, 1e-15);
}

}  // namespace
}  // namespace orvanel::models
