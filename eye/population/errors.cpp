// Words the errors of covariance matrices.
#include "eye/population/errors.h"

#include "base/number_text.h"

namespace orvanel::eye {
namespace {

std::string TextOf(CovarianceProblem problem, double share) {
  if (problem == CovarianceProblem::kCorrelatedConstant) return "a variable without variance is correlated";
  return "a share of " + NumberText(share, 3) + " of a variance remains instead of 0";
}

}  // namespace

NegativeVariance::NegativeVariance(const std::string& theVariable, double theVariance)
    : Error("is not a covariance: the variance of " + theVariable + " is " + ShortestText(theVariance) + ", below 0"),
      variable(theVariable),
      variance(theVariance) {}

NotSymmetric::NotSymmetric(const std::string& rowAbove, const std::string& columnAbove, double valueAbove,
                           double valueBelow, bool isConstant)
    : Error("is not symmetric: " + ShortestText(valueAbove) + " in row " + rowAbove + ", column " + columnAbove +
            ", but " + ShortestText(valueBelow) + " in row " + columnAbove + ", column " + rowAbove +
            (isConstant ? ", where one of them has no variance" : "")),
      row(rowAbove),
      column(columnAbove),
      above(valueAbove),
      below(valueBelow),
      hasNoVariance(isConstant) {}

NotPositiveSemidefinite::NotPositiveSemidefinite(CovarianceProblem theProblem, const std::string& theVariable,
                                                 double shareLeft)
    : Error("is not a covariance: it is not positive semi-definite, for " + TextOf(theProblem, shareLeft) + " at " +
            theVariable + "; check its signs and digits"),
      problem(theProblem),
      variable(theVariable),
      share(shareLeft) {}

}  // namespace orvanel::eye
