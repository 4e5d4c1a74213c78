// Tests the conversion on reading against polynomials evaluated from their definition, and when stated numbers become
// invalid.
#include "eye/eye_coefficients.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "base/error.h"
#include "orvanel/optics_engine.h"
#include "tests/eye/zernike_truth.h"

namespace orvanel::eye {
namespace {

std::vector<double> Single(std::size_t j, double value) {
  std::vector<double> coefficients(j + 1, 0.0);
  coefficients[j] = value;
  return coefficients;
}

TEST(EyeCoefficients, OsaTermsKeepTheirShapeHeightAndOrientation) {
  // At a height of 0.37 um the library's polynomials, of at most 4 operations for each of up to 9 summands below 60,
  // and the conversion's three roundings stay well within this, in mm.
  constexpr double kWavefrontError = 0.37e-3 * 1e-13;
  constexpr int kRow = 104, kColumn = 161;  // up and to the right of the centre
  const long double x = (kColumn - 128) / 64.0L, y = (128 - kRow) / 64.0L;
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  for (std::size_t j = 3; j < ORVANEL_COEFFICIENTS; ++j) {
    const LibraryCoefficients library = ToLibrary({kOsaConvention, Single(j, 0.37)});
    double bare[ORVANEL_COEFFICIENTS];
    for (std::size_t k = 0; k < library.size(); ++k) bare[k] = library[k].value();
    engine.synthesizeWavefront(bare, 6.0, 1, 1, 1);
    const long double truth = 0.37e-3L * OsaPolynomial(Term(j).n, Term(j).m, x, y);
    EXPECT_NEAR(engine.wavefrontPlane(kRow, kColumn), static_cast<double>(truth), kWavefrontError) << "term " << j;
  }
}

TEST(EyeCoefficients, OsaDefocusIsTimesRootThreeAndAThousandth) {
  const LibraryCoefficients library = ToLibrary({kOsaConvention, Single(4, 0.37)});
  EXPECT_DOUBLE_EQ(library[4].value(), 0.37e-3 * std::sqrt(3.0));
}

TEST(EyeCoefficients, OsaVerticalComaChangesItsSign) {
  const LibraryCoefficients library = ToLibrary({kOsaConvention, Single(7, 0.37)});
  EXPECT_DOUBLE_EQ(library[7].value(), -0.37e-3 * std::sqrt(8.0));
}

TEST(EyeCoefficients, OsaHorizontalComaKeepsItsSign) {
  const LibraryCoefficients library = ToLibrary({kOsaConvention, Single(8, -0.37)});
  EXPECT_DOUBLE_EQ(library[8].value(), -0.37e-3 * std::sqrt(8.0));
}

TEST(EyeCoefficients, LibraryCoefficientsStayAsTheyAreAndTheRestIsZero) {
  const LibraryCoefficients library = ToLibrary({kLibraryConvention, {0.1, -0.2, 0.3, -4e-4}});
  EXPECT_EQ(library[0], Millimetres(0.1));
  EXPECT_EQ(library[1], Millimetres(-0.2));
  EXPECT_EQ(library[2], Millimetres(0.3));
  EXPECT_EQ(library[3], Millimetres(-4e-4));
  for (std::size_t j = 4; j < library.size(); ++j) EXPECT_EQ(library[j], Millimetres(0.0));
}

TEST(EyeCoefficients, TheLibraryRefusesOrdersAboveSixUnlessTheyAreZero) {
  Coefficients coefficients(45);
  EXPECT_NO_THROW(ToLibrary({kOsaConvention, coefficients}));
  coefficients[OsaIndex({8, 0})] = 0.01;
  try {
    ToLibrary({kOsaConvention, coefficients});
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(std::string(error.what()),
              "the term Z(8,0), tertiary spherical aberration, is 0.01 um, but the classic model accepts radial orders "
              "0 to 6; drop the orders above");
  }
}

// Thirds and sevenths, which no conversion there and back returns for all terms.
Coefficients LongNumbers() {
  Coefficients numbers;
  for (int j = 0; j < 28; ++j) numbers.push_back((j % 2 == 0 ? 1.0 : -1.0) / (3.0 + 7.0 * j));
  return numbers;
}

constexpr Convention kWaves{Unit::kWaves, Nanometres(543.21), Normalisation::kNone, IndexScheme::kFringe, YAxis::kDown};

TEST(EyeCoefficients, TheCanonicalNumbersAreThoseOfTheOsaConvention) {
  const EyeCoefficients osa(kOsaConvention, LongNumbers()), waves(kWaves, {0, 0, 0, 0.5, 0.25});
  EXPECT_EQ(osa.osa(), LongNumbers());
  EXPECT_DOUBLE_EQ(waves.osa()[3], -0.5 * 0.54321 / std::sqrt(6.0));
  EXPECT_DOUBLE_EQ(waves.osa()[4], 0.25 * 0.54321 / std::sqrt(3.0));
}

TEST(EyeCoefficients, StatedNumbersReturnToTheBit) {
  for (const Convention& convention : {kOsaConvention, kLibraryConvention, kWaves}) {
    const EyeCoefficients coefficients(convention, LongNumbers());
    EXPECT_EQ(coefficients.AsStated(), LongNumbers());
    EXPECT_EQ(coefficients.convention(), convention);
  }
  // Numbers that were converted there and back have other bits; otherwise the test could not fail.
  EXPECT_NE(Converted(EyeCoefficients(kWaves, LongNumbers()).osa(), kOsaConvention, kWaves), LongNumbers());
  EXPECT_NE(Converted(EyeCoefficients(kLibraryConvention, LongNumbers()).osa(), kOsaConvention, kLibraryConvention),
            LongNumbers());
}

TEST(EyeCoefficients, AnotherWavefrontMakesTheStatedNumbersInvalid) {
  EyeCoefficients coefficients(kWaves, LongNumbers());
  coefficients.Replace({0, 0, 0, 0, 0.5});
  EXPECT_EQ(coefficients.osa(), Coefficients({0, 0, 0, 0, 0.5}));
  EXPECT_EQ(coefficients.convention(), kWaves);
  EXPECT_EQ(coefficients.AsStated(), Converted({0, 0, 0, 0, 0.5}, kOsaConvention, kWaves));
  EXPECT_DOUBLE_EQ(ToLibrary(coefficients)[4].value(), 0.5e-3 * std::sqrt(3.0));
}

TEST(EyeCoefficients, AnotherConventionLeavesTheWavefrontAlone) {
  EyeCoefficients coefficients(kWaves, LongNumbers());
  const Coefficients osa = coefficients.osa();
  coefficients.Restate(kLibraryConvention);
  EXPECT_EQ(coefficients.osa(), osa);
  EXPECT_EQ(coefficients.convention(), kLibraryConvention);
  EXPECT_EQ(coefficients.AsStated(), Converted(LongNumbers(), kWaves, kLibraryConvention));
}

TEST(EyeCoefficients, StatedNumbersFollowAMirrorAndTheEndOfTheList) {
  EyeCoefficients coefficients(kLibraryConvention, LongNumbers());
  const Coefficients osa = Mirrored(coefficients.osa());
  coefficients.Mirror();
  EXPECT_EQ(coefficients.osa(), osa);
  EXPECT_EQ(coefficients.AsStated(), Mirrored(LongNumbers()));
  coefficients.DropFrom(6);
  coefficients.DropFrom(10);
  EXPECT_EQ(coefficients.osa(), Coefficients(osa.begin(), osa.begin() + 6));
  const Coefficients mirrored = Mirrored(LongNumbers());
  EXPECT_EQ(coefficients.AsStated(), Coefficients(mirrored.begin(), mirrored.begin() + 6));
}

}  // namespace
}  // namespace orvanel::eye
