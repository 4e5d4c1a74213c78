// Reads a CSV table of two columns of numbers.
#ifndef ORVANEL_FILES_TABLES_NUMBER_PAIRS_H
#define ORVANEL_FILES_TABLES_NUMBER_PAIRS_H

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::files {

struct NumberPair {
  std::array<double, 2> numbers;
  std::array<Place, 2> places;  // of its fields
};

struct NumberRow {
  std::vector<double> numbers;
  std::vector<Place> places;  // of its fields
};

// For messages.
struct PairTable {
  const char* name;     // "a spectrum"
  const char* columns;  // "a wavelength in nm and its weight"
  std::size_t mostRows;
};

// Rows of two to four numbers. A first row that is no number is a header and is skipped. Throws ErrorAt for a row that
// is not so many finite numbers, or one too many; and Error if there are no rows.
std::vector<NumberRow> ReadNumberRows(const std::string& file, std::size_t columns, const PairTable& table);

// Rows of two.
std::vector<NumberPair> ReadNumberPairs(const std::string& file, const PairTable& table);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_NUMBER_PAIRS_H
