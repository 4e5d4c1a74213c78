// Tests the conversion of coefficients against polynomials evaluated from their definition.
#include "eye/conventions/convention.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "eye/conventions/errors.h"
#include "tests/eye/zernike_truth.h"

namespace orvanel::eye {
namespace {

// Every unit, normalisation and direction.
std::vector<Convention> AllConventions() {
  std::vector<Convention> all;
  for (const Unit unit : {Unit::kMillimetres, Unit::kMicrometres, Unit::kNanometres, Unit::kWaves}) {
    for (const Normalisation normalisation : {Normalisation::kOrthonormal, Normalisation::kNone}) {
      for (const YAxis yAxis : {YAxis::kUp, YAxis::kDown}) {
        for (const double wavelength : {555.5, 787.3}) {
          Convention convention{unit, Nanometres(), normalisation, IndexScheme::kNamed, yAxis};
          if (unit == Unit::kWaves) convention.wavelength = Nanometres(wavelength);
          all.push_back(convention);
        }
      }
    }
  }
  return all;
}

// Metres of orthonormal polynomials, y upwards.
long double Truth(const Convention& convention, std::size_t j, double c) {
  const ZernikeTerm term = Term(j);
  long double value = c;
  if (convention.normalisation == Normalisation::kNone) value /= Norm(term.n, term.m);
  if (convention.yAxis == YAxis::kDown && term.m < 0) value = -value;
  switch (convention.unit) {
    case Unit::kMillimetres:
      return value * 1e-3L;
    case Unit::kMicrometres:
      return value * 1e-6L;
    case Unit::kNanometres:
      return value * 1e-9L;
    case Unit::kWaves:
      break;
  }
  return value * convention.wavelength.value() * 1e-9L;
}

Coefficients ManyDigits() {
  Coefficients coefficients(kMaxTerms);
  for (std::size_t j = 0; j < coefficients.size(); ++j) {
    coefficients[j] = std::sin(1.7 * static_cast<double>(j) + 0.3) / (1.0 + 0.1 * static_cast<double>(j));
  }
  return coefficients;
}

TEST(Convention, AnyToAnyKeepsTheWavefront) {
  constexpr long double kRelative = 1e-15L;
  const Coefficients given = ManyDigits();
  for (const Convention& from : AllConventions()) {
    for (const Convention& to : AllConventions()) {
      const Coefficients converted = Converted(given, from, to);
      const Coefficients back = Converted(converted, to, from);
      for (std::size_t j = 0; j < given.size(); ++j) {
        const long double truth = Truth(from, j, given[j]);
        EXPECT_LE(std::fabs(Truth(to, j, converted[j]) - truth), kRelative * std::fabs(truth))
            << Text(from) << " to " << Text(to) << ", " << Symbol(Term(j));
        EXPECT_LE(std::fabs(back[j] - given[j]), 1e-15 * std::fabs(given[j])) << Text(from) << " and back, " << j;
      }
    }
  }
}

TEST(Convention, ToItselfChangesNoBit) {
  for (const Convention& convention : AllConventions()) {
    EXPECT_EQ(Converted(ManyDigits(), convention, convention), ManyDigits()) << Text(convention);
  }
}

TEST(Convention, ZeroKeepsItsSign) {
  for (const double c : Converted({0, 0, 0, 0}, kOsaConvention, kLibraryConvention)) EXPECT_FALSE(std::signbit(c));
  for (const double c : Mirrored({0, 0, 0, 0})) EXPECT_FALSE(std::signbit(c));
}

TEST(Convention, ListsOfEveryOrderGoThereAndBack) {
  for (const IndexScheme scheme : {IndexScheme::kOsa, IndexScheme::kNoll, IndexScheme::kFringe}) {
    std::vector<double> list;
    for (int i = 0; i < 37; ++i) list.push_back(0.25 + i);
    EXPECT_EQ(ToList(scheme, FromList(scheme, list)), list) << Word(scheme);
  }
}

TEST(Convention, ListsPutEachNumberAtItsTerm) {
  const std::vector<double> list = {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0};
  EXPECT_EQ(FromList(IndexScheme::kOsa, list).at(OsaIndex({3, 1})), 0.9);
  EXPECT_EQ(FromList(IndexScheme::kNoll, list).at(OsaIndex({3, 1})), 0.8);
  EXPECT_EQ(FromList(IndexScheme::kFringe, list).at(OsaIndex({3, 1})), 0.7);
  EXPECT_EQ(FromList(IndexScheme::kFringe, list).at(OsaIndex({4, 0})), 0.9);
}

TEST(Convention, AListLongerThanItsOrderIsRefused) {
  EXPECT_NO_THROW(FromList(IndexScheme::kFringe, std::vector<double>(37)));
  EXPECT_THROW(FromList(IndexScheme::kFringe, std::vector<double>(38)), ListTooLong);
  EXPECT_NO_THROW(FromList(IndexScheme::kOsa, std::vector<double>(kMaxTerms)));
  EXPECT_THROW(FromList(IndexScheme::kOsa, std::vector<double>(kMaxTerms + 1)), ListTooLong);
  EXPECT_THROW(FromList(IndexScheme::kNoll, std::vector<double>(kMaxTerms + 1)), ListTooLong);
}

TEST(Convention, FringeRefusesTheSixfoldTermsUnlessTheyAreZero) {
  Coefficients coefficients(28);
  coefficients[4] = 0.4;
  EXPECT_EQ(ToList(IndexScheme::kFringe, coefficients), (std::vector<double>{0, 0, 0, 0.4}));
  coefficients[OsaIndex({6, -6})] = -1e-300;
  try {
    ToList(IndexScheme::kFringe, coefficients);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(std::string(error.what()),
              "the term Z(6,-6), oblique hexafoil, is -1e-300 and has no number in the index scheme fringe; convert "
              "to another, such as named");
  }
}

TEST(Convention, AMirrorExchangesLeftAndRight) {
  const Coefficients given = ManyDigits(), mirrored = Mirrored(given);
  for (std::size_t j = 0; j < given.size(); ++j) {
    const auto [n, m] = Term(j);
    constexpr long double kX = 0.3L, kY = 0.55L;
    const auto right = static_cast<double>(given[j] * OsaPolynomial(n, m, kX, kY));
    const auto left = static_cast<double>(mirrored[j] * OsaPolynomial(n, m, -kX, kY));
    EXPECT_NEAR(left, right, 1e-12) << Symbol({n, m});  // values below 10, of sums below 1e5 in long double
  }
  EXPECT_EQ(Mirrored(mirrored), given);
}

TEST(Convention, WordsAreReadAsTheyAreWritten) {
  EXPECT_EQ(WordsOf<Unit>(), "mm, um, nm, waves");
  EXPECT_EQ(WordsOf<Normalisation>(), "orthonormal, none");
  EXPECT_EQ(WordsOf<IndexScheme>(), "osa, noll, fringe, named");
  EXPECT_EQ(WordsOf<YAxis>(), "up, down");
  EXPECT_EQ(WordsOf<Side>(), "OD, OS, unknown");
  EXPECT_EQ(ValueOf<Unit>("nm"), Unit::kNanometres);
  EXPECT_EQ(ValueOf<Unit>("pm"), std::nullopt);
  EXPECT_EQ(ConventionNamed("library"), kLibraryConvention);
  EXPECT_EQ(ConventionNamed("noll"), std::nullopt);
  EXPECT_EQ(Text(kLibraryConvention), "mm, not normalised, index scheme osa, y down");
}

TEST(Convention, WordsAreReadAsOthersWriteThemToo) {
  for (const char* word : {"UM", " um ", "\xC2\xB5m", "\xCE\xBCm", "micron", "Microns", "micrometers"}) {
    EXPECT_EQ(ValueOf<Unit>(word), Unit::kMicrometres) << word;
  }
  EXPECT_EQ(ValueOf<Unit>("Millimetres"), Unit::kMillimetres);
  EXPECT_EQ(ValueOf<Unit>("nanometers"), Unit::kNanometres);
  EXPECT_EQ(ValueOf<Unit>("Wave"), Unit::kWaves);
  EXPECT_EQ(ValueOf<Unit>("m"), std::nullopt);
  for (const char* word : {"od", "R", "right", "Right", "RE"}) EXPECT_EQ(ValueOf<Side>(word), Side::kOd) << word;
  for (const char* word : {"os", "L", "left", "LE\t"}) EXPECT_EQ(ValueOf<Side>(word), Side::kOs) << word;
  EXPECT_EQ(ValueOf<Side>("O"), std::nullopt);
  EXPECT_EQ(ValueOf<IndexScheme>("OSA"), IndexScheme::kOsa);
  EXPECT_EQ(ValueOf<IndexScheme>("ANSI"), IndexScheme::kOsa);
  EXPECT_EQ(ValueOf<IndexScheme>("Noll"), IndexScheme::kNoll);
  EXPECT_EQ(ValueOf<Normalisation>("Orthonormal"), Normalisation::kOrthonormal);
  EXPECT_EQ(ValueOf<YAxis>("UP"), YAxis::kUp);
  EXPECT_EQ(ConventionNamed("OSA"), kOsaConvention);
}

}  // namespace
}  // namespace orvanel::eye
