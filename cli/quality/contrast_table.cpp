// Checks the table as the metrics do, and says which row is wrong.
#include "cli/quality/contrast_table.h"

#include <utility>
#include <vector>

#include "base/number_text.h"
#include "files/input_file.h"
#include "files/tables/number_pairs.h"

namespace orvanel::cli {

ContrastSensitivity ReadContrastSensitivity(const std::string& file) {
  const std::vector<NumberPair> rows = ReadNumberPairs(
      file, {"a contrast sensitivity", "a frequency in cycles/degree and the contrast sensitivity there", 10000});
  const std::string name = InputName(file);
  std::vector<ContrastSensitivity::Point> points;
  for (const NumberPair& row : rows) points.push_back({row.numbers[0], row.numbers[1]});
  int wrong = 0;
  auto sensitivity = ContrastSensitivity::Of(points, wrong);
  if (sensitivity) return *std::move(sensitivity);
  const auto i = static_cast<std::size_t>(wrong);
  if (i >= rows.size()) throw Error(name + ": has a single frequency; write at least two rows");
  const auto [frequency, value] = points[i];
  if (i > 0 && frequency <= points[i - 1].frequency) {
    throw ErrorAt(name, rows[i].places[0],
                  "the frequency " + ShortestText(frequency) + " is not above that of the row before, " +
                      ShortestText(points[i - 1].frequency) + "; sort the rows by frequency");
  }
  if (frequency < 0.0 || frequency > ContrastSensitivity::kHighestFrequency) {
    throw ErrorAt(name, rows[i].places[0],
                  "the frequency " + ShortestText(frequency) + " is outside of 0 to " +
                      ShortestText(ContrastSensitivity::kHighestFrequency) + " cycles/degree");
  }
  throw ErrorAt(name, rows[i].places[1],
                "the contrast sensitivity " + ShortestText(value) + " is outside of 0 to " +
                    ShortestText(ContrastSensitivity::kLargestSensitivity));
}

}  // namespace orvanel::cli
