// Conversion of coefficients, against polynomials evaluated here from their definition.
#include "cli/convention.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "orvanel/optics_engine.h"

namespace orvanel::cli {
namespace {

long double Factorial(int n) { return n < 2 ? 1.0L : n * Factorial(n - 1); }

// R(n, |m|) at rho from its definition.
long double Radial(int n, int m, long double rho) {
  m = std::abs(m);
  long double sum = 0.0L;
  for (int s = 0; s <= (n - m) / 2; ++s) {
    sum += (s % 2 ? -1.0L : 1.0L) * Factorial(n - s) /
           (Factorial(s) * Factorial((n + m) / 2 - s) * Factorial((n - m) / 2 - s)) * std::pow(rho, n - 2 * s);
  }
  return sum;
}

// The orthonormal polynomial of OSA/ANSI Z80.28 at (x, y), y upwards.
long double OsaPolynomial(int n, int m, long double x, long double y) {
  const long double rho = std::hypot(x, y), theta = std::atan2(y, x);
  const long double norm = std::sqrt((m == 0 ? 1.0L : 2.0L) * (n + 1));
  return norm * Radial(n, m, rho) * (m < 0 ? std::sin(-m * theta) : std::cos(m * theta));
}

std::vector<double> Single(std::size_t j, double value) {
  std::vector<double> coefficients(j + 1, 0.0);
  coefficients[j] = value;
  return coefficients;
}

TEST(Convention, TermsAreNumberedByOrderAndThenByFrequency) {
  std::size_t j = 0;
  for (int n = 0; n <= 6; ++n) {
    for (int m = -n; m <= n; m += 2, ++j) {
      EXPECT_EQ(Term(j).n, n) << j;
      EXPECT_EQ(Term(j).m, m) << j;
    }
  }
  EXPECT_EQ(j, static_cast<std::size_t>(ORVANEL_COEFFICIENTS));
}

TEST(Convention, OsaTermsKeepTheirShapeHeightAndOrientation) {
  // At a height of 0.37 um the library's polynomials, of at most 4 operations for each of up to 9 summands below 60,
  // and the conversion's three roundings stay well within this, in mm.
  constexpr double kWavefrontError = 0.37e-3 * 1e-13;
  constexpr int kRow = 104, kColumn = 161;  // up and to the right of the centre
  const long double x = (kColumn - 128) / 64.0L, y = (128 - kRow) / 64.0L;
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  for (std::size_t j = 3; j < ORVANEL_COEFFICIENTS; ++j) {
    const LibraryCoefficients library = ToLibrary(Convention::kOsa, Single(j, 0.37));
    double bare[ORVANEL_COEFFICIENTS];
    for (std::size_t k = 0; k < library.size(); ++k) bare[k] = library[k].value();
    engine.synthesizeWavefront(bare, 6.0, 1, 1, 1);
    const long double truth = 0.37e-3L * OsaPolynomial(Term(j).n, Term(j).m, x, y);
    EXPECT_NEAR(engine.wavefrontPlane(kRow, kColumn), static_cast<double>(truth), kWavefrontError) << "term " << j;
  }
}

TEST(Convention, OsaDefocusIsTimesRootThreeAndAThousandth) {
  const LibraryCoefficients library = ToLibrary(Convention::kOsa, Single(4, 0.37));
  EXPECT_DOUBLE_EQ(library[4].value(), 0.37e-3 * std::sqrt(3.0));
}

TEST(Convention, OsaVerticalComaChangesItsSign) {
  const LibraryCoefficients library = ToLibrary(Convention::kOsa, Single(7, 0.37));
  EXPECT_DOUBLE_EQ(library[7].value(), -0.37e-3 * std::sqrt(8.0));
}

TEST(Convention, OsaHorizontalComaKeepsItsSign) {
  const LibraryCoefficients library = ToLibrary(Convention::kOsa, Single(8, -0.37));
  EXPECT_DOUBLE_EQ(library[8].value(), -0.37e-3 * std::sqrt(8.0));
}

TEST(Convention, LibraryCoefficientsStayAsTheyAreAndTheRestIsZero) {
  const LibraryCoefficients library = ToLibrary(Convention::kLibrary, {0.1, -0.2, 0.3, -4e-4});
  EXPECT_EQ(library[0], Millimetres(0.1));
  EXPECT_EQ(library[1], Millimetres(-0.2));
  EXPECT_EQ(library[2], Millimetres(0.3));
  EXPECT_EQ(library[3], Millimetres(-4e-4));
  for (std::size_t j = 4; j < library.size(); ++j) EXPECT_EQ(library[j], Millimetres(0.0));
}

}  // namespace
}  // namespace orvanel::cli
