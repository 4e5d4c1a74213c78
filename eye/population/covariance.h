// Factorises a covariance matrix, and correlates independent random numbers by its factors.
#ifndef ORVANEL_EYE_POPULATION_COVARIANCE_H
#define ORVANEL_EYE_POPULATION_COVARIANCE_H

#include <cstddef>
#include <string>
#include <vector>

#include "base/layers.h"

namespace orvanel::eye {

// The tolerance of a correlation. Tables with ten digits are more precise.
constexpr double kCovarianceTolerance = 1e-9;

// Factorises as P^T L D L^T P with pivots, so that a matrix without full rank also has factors. The order of operations
// is fixed, so that the factors have the same bits on every machine.
// Source: Higham (2002), Accuracy and stability of numerical algorithms, 10.3.
class CovarianceFactors {
 public:
  // Throws NotSymmetric if elements (i, j) and (j, i) differ, NegativeVariance, and NotPositiveSemidefinite if a linear
  // combination of the variables has a negative variance. As correlations, (i, j) and (j, i) may differ by
  // kCovarianceTolerance. The remainder after the last pivot may be `size` times as large.
  //   matrix  size x size, row by row
  //   names   of the variables, for messages
  CovarianceFactors(std::vector<double> matrix, const std::vector<std::string>& names);

  // Converts independent standard normal numbers, as many as the rank, to numbers with this covariance.
  std::vector<double> Correlate(const std::vector<double>& independent) const;

  std::size_t size() const { return size_; }
  std::size_t rank() const { return rank_; }

 private:
  // The standard deviation of each variable.
  void TakeDeviations(const std::vector<std::string>& names);
  // Divides by the deviations, so that small terms count as much as large ones.
  void ToCorrelations(const std::vector<std::string>& names);
  // Up to the rank.
  void Factorise();
  // Behind the last pivot.
  void RequireNothingLeft(const std::vector<std::string>& names) const;
  double Tolerance() const { return kCovarianceTolerance * static_cast<double>(size_); }

  double& at(std::size_t row, std::size_t column) { return factor_[row * size_ + column]; }
  double at(std::size_t row, std::size_t column) const { return factor_[row * size_ + column]; }

  std::size_t size_, rank_ = 0;
  std::vector<std::size_t> order_;  // order_[i] is the variable that was i-th to be a pivot
  std::vector<double> factor_;      // of the correlation: below the diagonal L, on it D, in that order
  std::vector<double> deviation_;   // of each variable
};

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_POPULATION_COVARIANCE_H
