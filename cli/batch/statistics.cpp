// Reads columns from the file, so that resumed and merged runs have the statistics of an uninterrupted one.
#include "cli/batch/statistics.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <string_view>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/batch/run.h"
#include "files/input_file.h"
#include "files/tables/csv.h"
#include "metrics/metrics.h"

namespace orvanel::cli {
namespace {

constexpr std::size_t kMaxBytes = 100U << 20U;  // of numbers in memory at a time

bool IsAxis(const std::string& column) { return column.find("_axis_deg") != std::string::npos; }

std::string Cell(const std::string& text) {
  constexpr std::size_t kWidth = 11;
  return std::string(text.size() < kWidth ? kWidth - text.size() : 1, ' ') + text;
}

std::size_t CountRows(const std::string& results) {
  InputFile stream(results);
  CsvReader reader(stream, results);
  Record row;
  std::size_t rows = 0;
  while (reader.Next(row)) ++rows;
  return rows;
}

// The values of several columns in rows without error. The error is the last field.
std::vector<std::vector<double>> ReadColumns(const std::string& results, std::span<const std::string> columns,
                                             std::size_t rows) {
  InputFile stream(results);
  CsvReader reader(stream, results);
  Record row;
  if (!reader.Next(row)) throw Error(results + ": is empty");
  std::vector<std::size_t> fields;
  for (const std::string& column : columns) {
    std::size_t field = 0;
    while (field < row.size() && row[field] != column) ++field;
    if (field == row.size()) throw Error(results + ": has no column " + column);
    fields.push_back(field);
  }
  std::vector<std::vector<double>> values(columns.size());
  for (auto& its : values) its.reserve(rows);
  while (reader.Next(row)) {
    if (!row[row.size() - 1].empty()) continue;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (!row[fields[i]].empty()) values[i].push_back(ParseNumber(row[fields[i]]));
    }
  }
  return values;
}

// The number of rows without error whose field of this column is counted; 0 if there is no such column.
std::size_t CountFields(const std::string& results, const std::string& column,
                        const std::function<bool(std::string_view field)>& counts) {
  InputFile stream(results);
  CsvReader reader(stream, results);
  Record row;
  if (!reader.Next(row)) return 0;
  std::size_t field = 0;
  while (field < row.size() && row[field] != column) ++field;
  if (field == row.size()) return 0;
  std::size_t count = 0;
  while (reader.Next(row)) {
    if (row[row.size() - 1].empty() && counts(row[field])) ++count;
  }
  return count;
}

}  // namespace

std::size_t CountUndersampled(const std::string& results, double limit) {
  return CountFields(results, kUndersampledColumn,
                     [limit](std::string_view field) { return !field.empty() && ParseNumber(field) > limit; });
}

std::size_t CountNoted(const std::string& results) {
  return CountFields(results, kNoteColumn, [](std::string_view field) { return !field.empty(); });
}

std::string UndersampledText(std::size_t count, double limit) {
  return std::to_string(count) + (count == 1 ? " row" : " rows") + ", in more than " + NumberText(100.0 * limit, 2) +
         " % of the pupil: there Strehl ratio, MTF and planes are not the eye's; see the column 'undersampled'";
}

Statistics StatisticsOf(std::vector<double>& values) {
  Statistics statistics;
  statistics.count = values.size();
  const auto count = static_cast<double>(values.size());
  if (values.empty()) return statistics;
  // Relative to the first value, so that equal values have a deviation of 0.
  double sum = 0.0, squares = 0.0;
  for (const double value : values) sum += value - values[0];
  statistics.mean = values[0] + sum / count;
  for (const double value : values) squares += (value - statistics.mean) * (value - statistics.mean);
  statistics.deviation = values.size() > 1 ? std::sqrt(squares / (count - 1.0)) : 0.0;
  std::sort(values.begin(), values.end());
  for (const double percentile : kPercentiles) {
    const double position = percentile / 100.0 * (count - 1.0);
    const auto below = static_cast<std::size_t>(position);
    const double share = position - static_cast<double>(below);
    const double above = values[std::min(below + 1, values.size() - 1)];
    statistics.percentiles.push_back(values[below] + share * (above - values[below]));
  }
  return statistics;
}

std::string StatisticsText(const std::string& results, const std::vector<std::string>& columns) {
  constexpr int kDigits = 5;
  std::vector<std::string> chosen;
  std::size_t width = 0;
  for (const std::string& column : columns) {
    if (IsAxis(column)) continue;
    chosen.push_back(column);
    width = std::max(width, column.size());
  }
  const auto label = [width](const std::string& text) { return text + std::string(width - text.size(), ' '); };
  std::string text = label(std::string("metric").substr(0, width)) + Cell("eyes") + Cell("mean") + Cell("SD");
  for (const double percentile : kPercentiles) {
    text += Cell(percentile == 0 ? "smallest" : percentile == 100 ? "largest" : NumberText(percentile, 3) + " %");
  }
  text += '\n';
  const std::size_t rows = CountRows(results);
  const std::size_t together = std::max<std::size_t>(1, kMaxBytes / (sizeof(double) * std::max<std::size_t>(1, rows)));
  for (std::size_t first = 0; first < chosen.size(); first += together) {
    const std::span part =
        std::span<const std::string>(chosen).subspan(first, std::min(together, chosen.size() - first));
    std::vector<std::vector<double>> values = ReadColumns(results, part, rows);
    for (std::size_t i = 0; i < part.size(); ++i) {
      const Statistics statistics = StatisticsOf(values[i]);
      text += label(part[i]) + Cell(std::to_string(statistics.count));
      if (statistics.count == 0) {
        text += '\n';
        continue;
      }
      text += Cell(NumberText(statistics.mean, kDigits)) + Cell(NumberText(statistics.deviation, kDigits));
      for (const double value : statistics.percentiles) text += Cell(NumberText(value, kDigits));
      text += '\n';
    }
  }
  return text;
}

}  // namespace orvanel::cli
