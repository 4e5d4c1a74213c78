// Root mean squares by hand.
#include "eye/rms.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace orvanel::eye
