// Parses both fields of each row.
#include "files/tables/number_pairs.h"

#include <string_view>

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

std::vector<NumberPair> ReadNumberPairs(const std::string& file, const PairTable& table) {
  const std::string name = InputName(file);
  InputFile stream(file);
  CsvReader reader(stream, name);
  std::vector<NumberPair> pairs;
  Record record;
  for (bool first = true; reader.Next(record); first = false) {
    if (record.size() != 2) {
      throw ErrorAt(name, record.place(0),
                    "the row has " + std::to_string(record.size()) + " fields; write two, " + table.columns);
    }
    if (first && !IsNumber(record[0])) continue;
    if (pairs.size() == table.mostRows) {
      throw ErrorAt(name, record.place(0),
                    std::string(table.name) + " has at most " + std::to_string(table.mostRows) + " rows");
    }
    pairs.push_back({{NumberIn(record, 0, name), NumberIn(record, 1, name)}, {record.place(0), record.place(1)}});
  }
  if (pairs.empty()) throw Error(name + ": has no numbers; write rows of " + table.columns);
  return pairs;
}

}  // namespace orvanel::files
