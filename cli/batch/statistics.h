// Computes statistics of a table of results.
#ifndef ORVANEL_CLI_BATCH_STATISTICS_H
#define ORVANEL_CLI_BATCH_STATISTICS_H

#include <string>
#include <vector>

#include "base/layers.h"

namespace orvanel::cli {

struct Statistics {
  std::size_t count = 0;
  double mean = 0.0, deviation = 0.0;  // the sample standard deviation, with count - 1
  std::vector<double> percentiles;     // at kPercentiles, by linear interpolation between the sorted values
};

constexpr double kPercentiles[] = {0, 5, 25, 50, 75, 95, 100};

// Sorts the values.
Statistics StatisticsOf(std::vector<double>& values);

// A text with one line for each column of numbers, over the rows without error that have a value. Columns of axes,
// which have no mean, are left out. The memory is bounded: if the columns are many and long, the file is read several
// times.
//   results  the file
//   columns  the columns of numbers
std::string StatisticsText(const std::string& results, const std::vector<std::string>& columns);

// The number of rows without error whose undersampled fraction is above the limit.
std::size_t CountUndersampled(const std::string& results, double limit);

// The number of rows whose column of notes is not empty.
std::size_t CountNoted(const std::string& results);

// The sentence of a report about so many rows.
std::string UndersampledText(std::size_t count, double limit);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_STATISTICS_H
