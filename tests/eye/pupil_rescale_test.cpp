// Tests rescaled pupils against the polynomials in long double.
#include "eye/pupil_rescale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "tests/eye/zernike_truth.h"

namespace orvanel::eye {
namespace {

Coefficients Lopsided(std::size_t count) {
  Coefficients coefficients(count);
  for (std::size_t j = 0; j < count; ++j) {
    coefficients[j] = std::cos(2.3 * static_cast<double>(j)) / (1.0 + 0.2 * static_cast<double>(j));
  }
  return coefficients;
}

long double Wavefront(const Coefficients& coefficients, long double x, long double y) {
  long double sum = 0.0L;
  for (std::size_t j = 0; j < coefficients.size(); ++j) {
    sum += coefficients[j] * OsaPolynomial(Term(j).n, Term(j).m, x, y);
  }
  return sum;
}

TEST(PupilRescale, TheSmallerPupilHasTheSameWavefront) {
  constexpr double kIdentity = 1e-12;  // of coefficients below 1
  for (const std::size_t count : {std::size_t{28}, OsaIndex({10, 10}) + 1, OsaIndex({12, 12}) + 1, kMaxTerms}) {
    const Coefficients coefficients = Lopsided(count);
    for (const double ratio : {0.07, 1.0 / 3.0, 0.5, 0.83, 0.999}) {
      const Coefficients rescaled = Rescaled(coefficients, ratio);
      for (const auto& [x, y] :
           {std::pair{0.0L, 0.0L}, {0.31L, -0.42L}, {-0.6L, 0.79L}, {0.0L, 1.0L}, {-0.2L, -0.1L}}) {
        EXPECT_NEAR(static_cast<double>(Wavefront(rescaled, x, y)),
                    static_cast<double>(Wavefront(coefficients, ratio * x, ratio * y)), kIdentity)
            << count << " terms, ratio " << ratio;
      }
    }
  }
}

TEST(PupilRescale, ALargerPupilContinuesThePolynomials) {
  const Coefficients coefficients = Lopsided(28), rescaled = Rescaled(coefficients, 1.5);
  const auto truth = static_cast<double>(Wavefront(coefficients, 1.5L * 0.3L, 1.5L * 0.8L));
  EXPECT_NEAR(static_cast<double>(Wavefront(rescaled, 0.3L, 0.8L)), truth, 1e-13 * 1e3);  // sums up to a thousand
}

TEST(PupilRescale, AgreesWithProjection) {
  constexpr double kRatio = 0.62, kIdentity = 1e-14;
  const Coefficients coefficients = Lopsided(28), rescaled = Rescaled(coefficients, kRatio);
  for (std::size_t j = 0; j < rescaled.size(); ++j) {
    const int n = Term(j).n, m = Term(j).m;
    // Terms of other frequencies integrate to nothing over the angle.
    const long double projected = Integral([&](long double rho) {
      long double wave = 0.0L;
      for (std::size_t k = 0; k < coefficients.size(); ++k) {
        if (Term(k).m == m) wave += coefficients[k] * Norm(Term(k).n, m) * Radial(Term(k).n, m, kRatio * rho);
      }
      return wave * Norm(n, m) * Radial(n, m, rho) * rho;
    });
    // Over the unit disc the mean is 2 rho d rho, and that of a squared cosine over the angle a half.
    EXPECT_NEAR(rescaled[j], static_cast<double>(projected * (m == 0 ? 2.0L : 1.0L)), kIdentity) << Symbol({n, m});
  }
}

TEST(PupilRescale, TheSamePupilChangesNoBit) { EXPECT_EQ(Rescaled(Lopsided(91), 1.0), Lopsided(91)); }

TEST(PupilRescale, TwiceIsOnceByTheProduct) {
  const Coefficients twice = Rescaled(Rescaled(Lopsided(45), 0.8), 0.5), once = Rescaled(Lopsided(45), 0.4);
  for (std::size_t j = 0; j < once.size(); ++j) EXPECT_NEAR(twice[j], once[j], 1e-14) << j;
}

// By hand: over half the pupil, spherical aberration c (6 r^4 - 6 r^2 + 1) sqrt(5) becomes
// c (6/16 r^4 - 6/4 r^2 + 1) sqrt(5) = c sqrt(5) ((1/16)(6 r^4 - 6 r^2 + 1) - (9/16)(2 r^2 - 1) + 3/8).
TEST(PupilRescale, SphericalAberrationLeavesDefocusBehind) {
  Coefficients coefficients(13);
  coefficients[12] = 0.7;
  const Coefficients rescaled = Rescaled(coefficients, 0.5);
  EXPECT_NEAR(rescaled[12], 0.7 / 16.0, 1e-16);
  EXPECT_NEAR(rescaled[4], -0.7 * 9.0 / 16.0 * std::sqrt(5.0 / 3.0), 1e-15);
  EXPECT_NEAR(rescaled[0], 0.7 * 3.0 / 8.0 * std::sqrt(5.0), 1e-15);
}

}  // namespace
}  // namespace orvanel::eye
