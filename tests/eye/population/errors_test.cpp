// Tests the fields and sentences of the errors of covariance matrices.
#include "eye/population/errors.h"

#include <gtest/gtest.h>

#include "eye/population/covariance.h"

namespace orvanel::eye {
namespace {

template <class E>
E ErrorOf(const std::vector<double>& matrix) {
  try {
    const CovarianceFactors factors(matrix, {"Z3", "Z4"});
  } catch (const E& error) {
    return error;
  }
  throw std::logic_error("accepted");
}

TEST(CovarianceErrors, HaveTheirNumbers) {
  const auto negative = ErrorOf<NegativeVariance>({1.0, 0.0, 0.0, -0.25});
  EXPECT_EQ(negative.variable, "Z4");
  EXPECT_EQ(negative.variance, -0.25);
  const auto asymmetric = ErrorOf<NotSymmetric>({1.0, 0.5, 0.25, 1.0});
  EXPECT_EQ(asymmetric.row, "Z3");
  EXPECT_EQ(asymmetric.column, "Z4");
  EXPECT_EQ(asymmetric.above, 0.5);
  EXPECT_EQ(asymmetric.below, 0.25);
  EXPECT_FALSE(asymmetric.hasNoVariance);
  EXPECT_TRUE(ErrorOf<NotSymmetric>({0.0, 0.5, 0.25, 1.0}).hasNoVariance);
  const auto constant = ErrorOf<NotPositiveSemidefinite>({1.0, 0.5, 0.5, 0.0});
  EXPECT_EQ(constant.problem, CovarianceProblem::kCorrelatedConstant);
  EXPECT_EQ(constant.variable, "Z4");
  // A correlation of 2 leaves 1 - 2^2 of the variance.
  const auto left = ErrorOf<NotPositiveSemidefinite>({1.0, 2.0, 2.0, 1.0});
  EXPECT_EQ(left.problem, CovarianceProblem::kShareLeft);
  EXPECT_EQ(left.variable, "Z4");
  EXPECT_EQ(left.share, -3.0);
}

TEST(CovarianceErrors, SayWhatIsWrongWithAMatrix) {
  EXPECT_STREQ(NegativeVariance("Z4", -0.25).what(), "is not a covariance: the variance of Z4 is -0.25, below 0");
  EXPECT_STREQ(NotSymmetric("Z3", "Z4", 0.5, 0.25, false).what(),
               "is not symmetric: 0.5 in row Z3, column Z4, but 0.25 in row Z4, column Z3");
  EXPECT_STREQ(NotPositiveSemidefinite(CovarianceProblem::kShareLeft, "Z4", -3.0).what(),
               "is not a covariance: it is not positive semi-definite, for a share of -3 of a variance remains instead "
               "of 0 at Z4; check its signs and digits");
}

}  // namespace
}  // namespace orvanel::eye
