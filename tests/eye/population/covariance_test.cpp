// Tests that the product of the factors is the matrix, and that matrices that are not covariances are refused.
#include "eye/population/covariance.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/error.h"
#include "eye/population/random.h"

namespace orvanel::eye {
namespace {

// The covariance of what Correlate makes: the products of its columns.
std::vector<double> Product(const CovarianceFactors& factors) {
  const std::size_t n = factors.size();
  std::vector<double> product(n * n);
  for (std::size_t k = 0; k < factors.rank(); ++k) {
    std::vector<double> unit(factors.rank());
    unit[k] = 1.0;
    const std::vector<double> column = factors.Correlate(unit);
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) product[i * n + j] += column[i] * column[j];
    }
  }
  return product;
}

std::string Refusal(const std::vector<double>& matrix, const std::vector<std::string>& names) {
  try {
    const CovarianceFactors factors(matrix, names);
  } catch (const Error& error) {
    return error.what();
  }
  return "accepted";
}

void ExpectProduct(const std::vector<double>& matrix, const std::vector<std::string>& names, std::size_t rank) {
  const CovarianceFactors factors(matrix, names);
  EXPECT_EQ(factors.rank(), rank);
  const std::vector<double> product = Product(factors);
  const std::size_t n = names.size();
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      const double scale = std::sqrt(matrix[i * n + i] * matrix[j * n + j]);
      // A few roundings of numbers of the size of the two standard deviations.
      EXPECT_NEAR(product[i * n + j], matrix[i * n + j], 1e-14 * scale) << i << ' ' << j;
    }
  }
}

TEST(Covariance, FactorsMultiplyToTheMatrix) {
  ExpectProduct({4.0, 1.2, -0.02, 1.2, 9.0, 0.05, -0.02, 0.05, 0.0025}, {"a", "b", "c"}, 3);
}

TEST(Covariance, AMatrixWithoutFullRankHasFactorsToo) {
  // c = 2 a - b.
  const double aa = 2.0, ab = 0.3, bb = 1.5, ac = 2 * aa - ab, bc = 2 * ab - bb, cc = 4 * aa - 4 * ab + bb;
  ExpectProduct({aa, ab, ac, ab, bb, bc, ac, bc, cc}, {"a", "b", "c"}, 2);
}

// The 66 terms up to radial order 10, with variances that fall by a factor of 1e8.
TEST(Covariance, SixtySixTermsOfFullRankAndOfLess) {
  constexpr std::size_t kTerms = 66;
  for (const std::size_t rank : {kTerms, std::size_t{20}}) {
    std::vector<double> matrix(kTerms * kTerms);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < kTerms; ++i) {
      names.push_back("Z" + std::to_string(i));
      for (std::size_t j = 0; j < kTerms; ++j) {
        for (std::size_t k = 0; k < rank; ++k) {
          const auto factor = [k](std::size_t row) {
            return NormalNumber(1, row, static_cast<std::uint32_t>(k)) *
                   std::pow(10.0, -4.0 * static_cast<double>(row) / static_cast<double>(kTerms));
          };
          matrix[i * kTerms + j] += factor(i) * factor(j);
        }
      }
    }
    ExpectProduct(matrix, names, rank);
  }
}

TEST(Covariance, ATermWithoutVarianceStaysWhereItIs) {
  ExpectProduct({0.0, 0.0, 0.0, 0.0, 2.0, 0.5, 0.0, 0.5, 1.0}, {"a", "b", "c"}, 2);
  ExpectProduct({0.0, 0.0, 0.0, 0.0}, {"a", "b"}, 0);
}

TEST(Covariance, OneThatIsNotSymmetricIsRefused) {
  EXPECT_EQ(Refusal({1.0, 0.5, 0.25, 1.0}, {"Z3", "Z4"}),
            "is not symmetric: 0.5 in row Z3, column Z4, but 0.25 in row Z4, column Z3");
  EXPECT_EQ(Refusal({1.0, 0.5, 0.5 + 1e-10, 1.0}, {"Z3", "Z4"}), "accepted");
}

TEST(Covariance, EachPairIsComparedInBothDirections) {
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      if (i == j) continue;
      std::vector<double> matrix = {1.0, 0.5, 0.25, 0.5, 1.0, 0.125, 0.25, 0.125, 1.0};
      matrix[3 * i + j] += 0.0625;
      EXPECT_EQ(Refusal(matrix, {"a", "b", "c"}).find("is not symmetric: "), 0U) << i << ' ' << j;
    }
  }
}

TEST(Covariance, BothTrianglesCountWhereTheirLastDigitsDiffer) {
  constexpr double kDifference = 1e-10;  // below the tolerance, and far above the roundings
  const CovarianceFactors factors({4.0, 1.0 + kDifference, 1.0, 9.0}, {"a", "b"});
  const double mean = 1.0 + kDifference / 2.0;
  EXPECT_NEAR(Product(factors)[1], mean, 1e-14 * 6.0);
  EXPECT_NEAR(Product(factors)[2], mean, 1e-14 * 6.0);
}

TEST(Covariance, OneWithANegativeVarianceIsRefused) {
  EXPECT_EQ(Refusal({1.0, 0.0, 0.0, -0.5}, {"Z3", "Z4"}), "is not a covariance: the variance of Z4 is -0.5, below 0");
  EXPECT_NE(Refusal({1.0, 1.5, 1.5, 1.0}, {"Z3", "Z4"}).find("not positive semi-definite"), std::string::npos);
  // Each pair may be, the three together may not.
  EXPECT_NE(Refusal({1, 0.9, 0.9, 0.9, 1, -0.9, 0.9, -0.9, 1}, {"a", "b", "c"}).find("not positive semi-definite"),
            std::string::npos);
  EXPECT_NE(Refusal({0.0, 0.1, 0.1, 1.0}, {"a", "b"}), "accepted");
}

TEST(Covariance, ASmallTermCountsAsMuchAsALargeOne) {
  EXPECT_NE(Refusal({1.0, 1.5e-8, 1.5e-8, 1e-16}, {"a", "b"}), "accepted");
  ExpectProduct({1.0, 0.5e-8, 0.5e-8, 1e-16}, {"a", "b"}, 2);
}

TEST(Covariance, WhatIsDrawnHasTheCovariance) {
  const std::vector<double> matrix = {4.0, 1.2, -0.02, 1.2, 9.0, 0.05, -0.02, 0.05, 0.0025};
  const CovarianceFactors factors(matrix, {"a", "b", "c"});
  constexpr int kCount = 100000;
  std::vector<double> sums(9);
  for (std::uint64_t i = 0; i < kCount; ++i) {
    const std::vector<double> x =
        factors.Correlate({NormalNumber(5, i, 0), NormalNumber(5, i, 1), NormalNumber(5, i, 2)});
    for (std::size_t k = 0; k < 9; ++k) sums[k] += x[k / 3] * x[k % 3] / kCount;
  }
  for (std::size_t k = 0; k < 9; ++k) {
    const double variances = matrix[4 * (k / 3)] * matrix[4 * (k % 3)];
    // The variance of a product of two normal numbers is s1 s2 + c^2: five standard deviations of the mean.
    EXPECT_NEAR(sums[k], matrix[k], 5.0 * std::sqrt((variances + matrix[k] * matrix[k]) / kCount)) << k;
  }
}

}  // namespace
}  // namespace orvanel::eye
