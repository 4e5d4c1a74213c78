// Factorises by outer products, with the largest remaining variance as the pivot.
#include "eye/population/covariance.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "eye/population/errors.h"

namespace orvanel::eye {

CovarianceFactors::CovarianceFactors(std::vector<double> matrix, const std::vector<std::string>& names)
    : size_(names.size()), order_(size_), factor_(std::move(matrix)), deviation_(size_) {
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  TakeDeviations(names);
  ToCorrelations(names);
  Factorise();
  RequireNothingLeft(names);
}

void CovarianceFactors::TakeDeviations(const std::vector<std::string>& names) {
  for (std::size_t i = 0; i < size_; ++i) {
    if (at(i, i) < 0.0) throw NegativeVariance(names[i], at(i, i));
    deviation_[i] = std::sqrt(at(i, i));
  }
}

void CovarianceFactors::ToCorrelations(const std::vector<std::string>& names) {
  for (std::size_t i = 0; i < size_; ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const double scale = deviation_[i] * deviation_[j];
      double& below = at(i, j);
      double& above = at(j, i);
      if (!(std::abs(below - above) <= kCovarianceTolerance * scale)) {
        throw NotSymmetric(names[j], names[i], above, below, scale == 0.0);
      }
      if (scale == 0.0 && below != 0.0) {
        throw NotPositiveSemidefinite(CovarianceProblem::kCorrelatedConstant, names[i]);
      }
      below = above = scale == 0.0 ? 0.0 : (0.5 * below + 0.5 * above) / scale;
    }
    at(i, i) = deviation_[i] == 0.0 ? 0.0 : 1.0;
  }
}

void CovarianceFactors::Factorise() {
  for (std::size_t k = 0; k < size_; ++k) {
    std::size_t pivot = k;
    for (std::size_t i = k + 1; i < size_; ++i) {
      if (at(i, i) > at(pivot, pivot)) pivot = i;
    }
    if (!(at(pivot, pivot) > Tolerance())) break;
    if (pivot != k) {
      std::swap(order_[k], order_[pivot]);
      for (std::size_t j = 0; j < size_; ++j) std::swap(at(k, j), at(pivot, j));
      for (std::size_t i = 0; i < size_; ++i) std::swap(at(i, k), at(i, pivot));
    }
    for (std::size_t i = k + 1; i < size_; ++i) {
      const double share = at(i, k) / at(k, k);
      // Row k still holds the values of column k before the division.
      for (std::size_t j = k + 1; j <= i; ++j) at(i, j) = at(j, i) = at(i, j) - share * at(k, j);
      at(i, k) = share;
    }
    rank_ = k + 1;
  }
}

void CovarianceFactors::RequireNothingLeft(const std::vector<std::string>& names) const {
  for (std::size_t i = rank_; i < size_; ++i) {
    for (std::size_t j = rank_; j <= i; ++j) {
      if (std::abs(at(i, j)) <= Tolerance()) continue;
      throw NotPositiveSemidefinite(CovarianceProblem::kShareLeft, names[order_[i]], at(i, j));
    }
  }
}

std::vector<double> CovarianceFactors::Correlate(const std::vector<double>& independent) const {
  std::vector<double> scaled(rank_), result(size_);
  for (std::size_t k = 0; k < rank_; ++k) scaled[k] = std::sqrt(at(k, k)) * independent[k];
  for (std::size_t i = 0; i < size_; ++i) {
    double sum = i < rank_ ? scaled[i] : 0.0;
    for (std::size_t k = 0; k < std::min(i, rank_); ++k) sum += at(i, k) * scaled[k];
    result[order_[i]] = deviation_[order_[i]] * sum;
  }
  return result;
}

}  // namespace orvanel::eye
