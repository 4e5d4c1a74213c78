// Tests root mean squares against values computed by hand.
#include "eye/rms.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/eye/zernike_truth.h"

namespace orvanel::eye {
namespace {

TEST(Rms, IsTheRootOfTheSquaresOfItsOrders) {
  Coefficients coefficients(15);
  coefficients[0] = 100.0;
  coefficients[1] = 7.0;
  coefficients[3] = 3.0;
  coefficients[4] = -4.0;
  coefficients[8] = 12.0;
  coefficients[14] = -84.0;
  EXPECT_EQ(Rms(coefficients, 1, 1), Micrometres(7.0));
  EXPECT_EQ(Rms(coefficients, 2, 2), Micrometres(5.0));
  EXPECT_EQ(Rms(coefficients, 2, 3), Micrometres(13.0));
  EXPECT_EQ(Rms(coefficients, kLowestOrderThatBlurs), Micrometres(85.0));
  EXPECT_EQ(Rms(coefficients, 5), Micrometres(0.0));
}

// The mean over the disc of W^2: over the angle by 48 equal steps, which are exact for frequencies up to 20, and over
// the radius by a rule that is exact for its degree of 21.
long double MeanSquare(const Coefficients& osa) {
  return Integral([&osa](long double rho) {
    constexpr int kAngles = 48;
    long double squares = 0.0L;
    for (int a = 0; a < kAngles; ++a) {
      const long double theta = 2.0L * std::numbers::pi_v<long double> * (a + 0.3L) / kAngles;
      long double wave = 0.0L;
      for (std::size_t j = 0; j < osa.size(); ++j) {
        wave += osa[j] * OsaPolynomial(Term(j).n, Term(j).m, rho * std::cos(theta), rho * std::sin(theta));
      }
      squares += wave * wave / kAngles;
    }
    return squares * 2.0L * rho;
  });
}

TEST(Rms, IsThatOfTheWavefrontUpToOrderTen) {
  Coefficients coefficients(OsaIndex({10, 10}) + 1);
  for (std::size_t j = 3; j < coefficients.size(); ++j) coefficients[j] = std::cos(2.3 * static_cast<double>(j));
  EXPECT_NEAR(Rms(coefficients, kLowestOrderThatBlurs).value(),
              static_cast<double>(std::sqrt(MeanSquare(coefficients))), 1e-13);
}

}  // namespace
}  // namespace orvanel::eye
