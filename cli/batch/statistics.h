// Statistics of a table of results.
#ifndef ORVANEL_CLI_BATCH_STATISTICS_H
#define ORVANEL_CLI_BATCH_STATISTICS_H

#include <string>
#include <vector>

#include "base/layers.h"

namespace orvanel::cli {

struct Statistics {
  std::size_t count = 0;
  double mean = 0.0, deviation = 0.0;  // the latter of a sample, with count - 1
  std::vector<double> percentiles;     // at kPercentiles, in straight lines between the values in order
};

constexpr double kPercentiles[] = {0, 5, 25, 50, 75, 95, 100};

// The values are sorted on the way.
Statistics StatisticsOf(std::vector<double>& values);

// A line for each column of numbers, as text in columns: those of a table of results that rows without error have.
// Axes, which have no mean, are left out. Memory is bounded: where the columns are many and long, the file is read
// several times.
//   results  the file
//   columns  which of it
std::string StatisticsText(const std::string& results, const std::vector<std::string>& columns);

// The rows without error whose undersampled share is above the limit.
std::size_t CountUndersampled(const std::string& results, double limit);

// What a report says of so many rows.
std::string UndersampledText(std::size_t count, double limit);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_STATISTICS_H
