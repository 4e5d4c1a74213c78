// Defines the errors of metrics. Their fields have the subject, so that a host can word its own messages.
#ifndef ORVANEL_METRICS_ERRORS_H
#define ORVANEL_METRICS_ERRORS_H

#include <string>
#include <string_view>
#include <utility>

#include "base/error.h"
#include "base/layers.h"
#include "base/number_text.h"

namespace orvanel::metrics {

// No metric has this name.
class UnknownMetric : public Error {
 public:
  //   knownNames  separated by commas
  //   nearNames   those that a slip of the keyboard may have meant, likewise; may be empty
  UnknownMetric(std::string_view wantedName, const std::string& knownNames, const std::string& nearNames = "")
      : Error(Quoted(wantedName) + " is not a metric; " +
              (nearNames.empty() ? "" : "names like it are " + nearNames + "; ") + "use one of " + knownNames),
        wanted(wantedName),
        known(knownNames),
        near(nearNames) {}

  std::string wanted, known, near;
};

// A metric of image quality is requested of the classic model.
class MetricOfPhysicalModel : public ErrorWithFix {
 public:
  explicit MetricOfPhysicalModel(std::string_view wantedName)
      : ErrorWithFix("the classic model has no metric " + Quoted(wantedName) + "; ", "choose the physical model"),
        wanted(wantedName) {}

  std::string wanted;
};

// No metric has a column of this name.
class UnknownColumn : public Error {
 public:
  explicit UnknownColumn(std::string_view wantedColumn)
      : Error(Quoted(wantedColumn) + " is not a column of a metric"), wanted(wantedColumn) {}

  std::string wanted;
};

// The value of a column is not finite, because the eye is too far from a real one.
class ValueNotFinite : public Error {
 public:
  explicit ValueNotFinite(std::string theColumn)
      : Error("cannot be computed, since it is too far from a real eye; check the units of pupil and coefficients"),
        column(std::move(theColumn)) {}

  std::string column;
};

// The standard deviation of the Gaussian of the metric NS is out of range.
class GaussianSdOutOfRange : public Error {
 public:
  GaussianSdOutOfRange(double theSd, double theLowest, double theHighest)
      : Error("the standard deviation of " + ShortestText(theSd) + " arc minutes of the metric NS is outside of " +
              ShortestText(theLowest) + " to " + ShortestText(theHighest)),
        sd(theSd),
        lowest(theLowest),
        highest(theHighest) {}

  double sd, lowest, highest;  // arc minutes
};

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_ERRORS_H
