// Tests that notes name the model, its light and what is assumed.
#include "evaluation/model_notes.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::evaluation {
namespace {

bool Has(const std::vector<std::string>& notes, const std::string& part) {
  return std::any_of(notes.begin(), notes.end(),
                     [&](const std::string& note) { return note.find(part) != std::string::npos; });
}

Results PhysicalOf(const Eye& eye, const PhysicalSettings& settings = {}) {
  return PhysicallySimulated(eye, {}, settings).results;
}

TEST(ModelNotes, NameTheModel) {
  EXPECT_TRUE(Has(ModelNotes(Simulated(AsymmetricEye(), {}).results), "Classic model"));
  EXPECT_TRUE(Has(ModelNotes(PhysicalOf(AsymmetricEye())), "Physical model"));
}

TEST(ModelNotes, SayWhetherTheReferenceWavelengthIsAssumed) {
  Eye eye = AsymmetricEye();
  EXPECT_TRUE(Has(ModelNotes(PhysicalOf(eye)), "does not state its reference wavelength"));
  eye.referenceWavelength = Nanometres(850.0);
  const std::vector<std::string> notes = ModelNotes(PhysicalOf(eye));
  EXPECT_FALSE(Has(notes, "does not state"));
  EXPECT_TRUE(Has(notes, "The coefficients hold at 850 nm."));
}

TEST(ModelNotes, CountTheWavelengthsOfASpectrum) {
  Results results;
  results.physical.emplace().light = physical::WhiteLight();
  EXPECT_EQ(LightText(results), "31 wavelengths from 400 to 700 nm");
  results.physical->light = {{555.0, 1.0}};
  EXPECT_EQ(LightText(results), "555 nm");
}

TEST(ModelNotes, NameTheViewAndTheStilesCrawfordEffect) {
  PhysicalSettings settings;
  EXPECT_TRUE(Has(ModelNotes(PhysicalOf(AsymmetricEye(), settings)), "images: patient"));
  EXPECT_FALSE(Has(ModelNotes(PhysicalOf(AsymmetricEye(), settings)), "Stiles-Crawford"));
  settings.view = physical::View::kRetina;
  settings.stilesCrawford = {0.05, 0.3, -0.1};
  const std::vector<std::string> notes = ModelNotes(PhysicalOf(AsymmetricEye(), settings));
  EXPECT_TRUE(Has(notes, "images: retina"));
  EXPECT_TRUE(Has(notes, "0.05 per mm^2, centred at x 0.3, y -0.1 mm"));
}

TEST(ModelNotes, StateNoErrorsAboveFiveWavesOfTheShortestLight) {
  Results results;
  results.physical.emplace().light = {{700.0, 1.0}, {400.0, 1.0}};
  results.wavefront.rms = Micrometres(1.999);
  EXPECT_FALSE(Has(ModelNotes(results), "these errors are not stated"));
  results.wavefront.rms = Micrometres(2.2);
  EXPECT_TRUE(Has(ModelNotes(results), "This eye has 5.5 waves RMS, so these errors are not stated for it."));
}

}  // namespace
}  // namespace orvanel::evaluation
