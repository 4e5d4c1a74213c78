// Defines the errors of covariance matrices. Their fields describe the problem, so that a host can word its own
// messages. The sentences begin with the verb: the host names the matrix.
#ifndef ORVANEL_EYE_POPULATION_ERRORS_H
#define ORVANEL_EYE_POPULATION_ERRORS_H

#include <string>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::eye {

// A variance is below 0.
class NegativeVariance : public Error {
 public:
  NegativeVariance(const std::string& theVariable, double theVariance);

  std::string variable;
  double variance;
};

// The elements above and below the diagonal differ.
class NotSymmetric : public Error {
 public:
  //   isConstant  one of the variables has the variance 0
  NotSymmetric(const std::string& rowAbove, const std::string& columnAbove, double valueAbove, double valueBelow,
               bool isConstant);

  std::string row, column;  // of the element above the diagonal
  double above, below;
  bool hasNoVariance;
};

enum class CovarianceProblem {
  kCorrelatedConstant,  // a variable without variance is correlated
  kShareLeft,           // after the factorisation, a share of a variance remains instead of 0
};

// The matrix is not positive semi-definite.
class NotPositiveSemidefinite : public Error {
 public:
  //   shareLeft  of kShareLeft
  NotPositiveSemidefinite(CovarianceProblem theProblem, const std::string& theVariable, double shareLeft = 0.0);

  CovarianceProblem problem;
  std::string variable;
  double share;
};

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_POPULATION_ERRORS_H
