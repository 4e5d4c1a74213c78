// Collects the values of columns of one eye, and why some of them are missing or not to be trusted.
#ifndef ORVANEL_EVALUATION_COLUMNS_COLUMN_VALUES_H
#define ORVANEL_EVALUATION_COLUMNS_COLUMN_VALUES_H

#include <string>
#include <utility>
#include <vector>

#include "base/layers.h"

namespace orvanel::evaluation {

class ColumnValues {
 public:
  // A value that is not finite is missing. The sign of 0 is removed.
  void Add(double value);

  // Notes a reason for a subject, such as a metric.
  void Note(const std::string& subject, const std::string& reason);

  const std::vector<double>& values() const { return values_; }

  // Each reason once, with its subjects: "VSX, SRX: reason; D50: other reason". Empty if there is none.
  std::string Notes() const;

 private:
  std::vector<double> values_;
  std::vector<std::pair<std::string, std::string>> notes_;  // subjects and reason
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_COLUMNS_COLUMN_VALUES_H
