// Tests that each result has the bits of the engine, with any other needs.
#include "models/adapters/classic_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "eye/rms.h"
#include "models/errors.h"
#include "orvanel/sampling.h"
#include "targets/sector_star.h"
#include "tests/eye/eyes.h"

namespace orvanel::models {
namespace {

constexpr Needs kEverything = {
    Need::kUndersampled, Need::kWavefront, Need::kWavefrontRange, Need::kStrehl,      Need::kStrehlPeak,
    Need::kPsf,          Need::kMtf,       Need::kSections,       Need::kLineSpreads, Need::kImages};

Results ResultsOf(Needs needs) {
  Results results;
  ClassicModel().Compute(AsymmetricEye(), needs, results);
  return results;
}

bool SamePlanes(const Plane& a, const Plane& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); });
}

TEST(ClassicModel, AResultDoesNotDependOnWhatElseIsNeeded) {
  const Results all = ResultsOf(kEverything);
  EXPECT_EQ(ResultsOf({Need::kUndersampled}).undersampled, all.undersampled);
  EXPECT_TRUE(SamePlanes(ResultsOf({Need::kWavefront}).wavefront.map, all.wavefront.map));
  EXPECT_EQ(ResultsOf({Need::kWavefrontRange}).wavefront.rms, all.wavefront.rms);
  EXPECT_EQ(ResultsOf({Need::kWavefrontRange}).wavefront.peakToValley, all.wavefront.peakToValley);
  EXPECT_EQ(ResultsOf({Need::kWavefrontRange}).wavefront.steepestStep, all.wavefront.steepestStep);
  EXPECT_EQ(ResultsOf({Need::kStrehl}).strehl, all.strehl);
  EXPECT_EQ(ResultsOf({Need::kStrehl, Need::kPsf}).strehl, all.strehl);
  EXPECT_EQ(ResultsOf({Need::kStrehlPeak}).strehlPeak, all.strehlPeak);
  EXPECT_EQ(ResultsOf({Need::kPsf}).psf, all.psf);
  EXPECT_EQ(ResultsOf({Need::kMtf}).mtf, all.mtf);
  EXPECT_EQ(ResultsOf({Need::kSections}).rowSection, all.rowSection);
  EXPECT_EQ(ResultsOf({Need::kSections}).columnSection, all.columnSection);
  EXPECT_EQ(ResultsOf({Need::kSections}).diffractionLimit, all.diffractionLimit);
  EXPECT_EQ(ResultsOf({Need::kLineSpreads}).lineSpreads.horizontal, all.lineSpreads.horizontal);
  EXPECT_EQ(ResultsOf({Need::kLineSpreads}).lineSpreads.vertical, all.lineSpreads.vertical);
}

TEST(ClassicModel, WhatIsNotNeededIsLeftAlone) {
  const Results none = ResultsOf({});
  EXPECT_EQ(none.pupil, AsymmetricEye().pupil);
  EXPECT_EQ(none.scales.library.pitch, ScalesOf(none.pupil).library.pitch);
  for (const Need need : {Need::kUndersampled, Need::kWavefrontRange, Need::kStrehl, Need::kImages}) {
    const Results results = ResultsOf({need});
    EXPECT_TRUE(results.psf.empty() && results.mtf.empty() && results.wavefront.map.empty());
  }
  const Results sections = ResultsOf({Need::kSections});
  EXPECT_TRUE(sections.psf.empty() && sections.mtf.empty());
  EXPECT_EQ(sections.strehl, 0.0);
  EXPECT_EQ(ResultsOf({Need::kMtf}).rowSection, Curve{});
}

TEST(ClassicModel, RmsIsThatOfTheCoefficients) {
  EXPECT_EQ(ResultsOf({Need::kWavefrontRange}).wavefront.rms, Rms(AsymmetricEye().coefficients.osa(), 2));
}

TEST(ClassicModel, ImagesDoNotDependOnWhatElseIsNeeded) {
  const Plane star = SectorStar();
  ClassicModel first, second;
  Results results;
  first.Compute(AsymmetricEye(), {Need::kImages}, results);
  second.Compute(AsymmetricEye(), kEverything, results);
  Plane a, b;
  for (const ImageKind kind : {ImageKind::kStretched, ImageKind::kTotalLight, ImageKind::kLinear}) {
    first.ImageOf(star, kind, a);
    second.ImageOf(star, kind, b);
    EXPECT_EQ(a, b);
  }
}

TEST(ClassicModel, APrecomputedObjectHasTheImagesOfItsPlane) {
  const Plane star = SectorStar(), grey(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.5);
  ClassicModel model;
  Results results;
  model.Compute(AsymmetricEye(), {Need::kImages}, results);
  const PrecomputedObject first = model.Precompute(grey), second = model.Precompute(star);
  Plane image, expected;
  for (const ImageKind kind : {ImageKind::kStretched, ImageKind::kTotalLight}) {
    model.ImageOf(second, kind, image);
    model.ImageOf(star, kind, expected);
    EXPECT_EQ(image, expected);
  }
  model.ImageOf(first, ImageKind::kTotalLight, image);
  model.ImageOf(grey, ImageKind::kTotalLight, expected);
  EXPECT_EQ(image, expected);
}

TEST(ClassicModel, RefusesAWavefrontThatMayBeAMetreHigh) {
  Eye eye = PerfectEye(Millimetres(4.5));
  eye.coefficients = {kLibraryConvention, {0, 0, 0, 0, 600.0, -500.0}};
  Results results;
  try {
    ClassicModel().Compute(eye, {Need::kStrehl}, results);
    FAIL();
  } catch (const WavefrontTooHigh& error) {
    EXPECT_DOUBLE_EQ(error.bound.value(), 1100.0);
  }
  EXPECT_NO_THROW(ClassicModel().Compute(eye, {}, results));
}

}  // namespace
}  // namespace orvanel::models
