// Parses the fields of each row.
#include "files/tables/number_pairs.h"

#include <string_view>
#include <utility>

#include "base/number_text.h"
#include "files/input_file.h"
#include "files/tables/csv.h"

namespace orvanel::files {
namespace {

bool IsNumber(std::string_view text) {
  try {
    ParseNumber(text);
  } catch (const Error&) {
    return false;
  }
  return true;
}

double NumberIn(const Record& record, std::size_t column, const std::string& file) {
  try {
    return ParseNumber(record[column]);
  } catch (const Error& error) {
    throw ErrorAt(file, record.place(column), error.what());
  }
}

}  // namespace

std::vector<NumberRow> ReadNumberRows(const std::string& file, std::size_t columns, const PairTable& table) {
  const std::string name = InputName(file);
  InputFile stream(file);
  CsvReader reader(stream, name);
  std::vector<NumberRow> rows;
  Record record;
  for (bool first = true; reader.Next(record); first = false) {
    if (record.size() != columns) {
      constexpr const char* kCounts[] = {"none", "one", "two", "three", "four"};
      throw ErrorAt(
          name, record.place(0),
          "the row has " + std::to_string(record.size()) + " fields; write " + kCounts[columns] + ", " + table.columns);
    }
    if (first && !IsNumber(record[0])) continue;
    if (rows.size() == table.mostRows) {
      throw ErrorAt(name, record.place(0),
                    std::string(table.name) + " has at most " + std::to_string(table.mostRows) + " rows");
    }
    NumberRow row;
    for (std::size_t column = 0; column < columns; ++column) {
      row.numbers.push_back(NumberIn(record, column, name));
      row.places.push_back(record.place(column));
    }
    rows.push_back(std::move(row));
  }
  if (rows.empty()) throw Error(name + ": has no numbers; write rows of " + table.columns);
  return rows;
}

std::vector<NumberPair> ReadNumberPairs(const std::string& file, const PairTable& table) {
  std::vector<NumberPair> pairs;
  for (const NumberRow& row : ReadNumberRows(file, 2, table)) {
    pairs.push_back({{row.numbers[0], row.numbers[1]}, {row.places[0], row.places[1]}});
  }
  return pairs;
}

}  // namespace orvanel::files
