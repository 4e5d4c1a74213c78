// Reads a covariance of Zernike coefficients from a CSV table.
#ifndef ORVANEL_FILES_TABLES_COVARIANCE_TABLE_H
#define ORVANEL_FILES_TABLES_COVARIANCE_TABLE_H

#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::files {

struct CovarianceTable {
  std::vector<std::string> names;       // of the columns, as written there
  std::vector<std::size_t> terms;       // the same by OSA index
  std::vector<double> matrix;           // row by row
  std::optional<Nanometres> reference;  // the wavelength of light at which the coefficients hold, if it is stated
};

// The first row names the coefficients; each further row is a row of the matrix. If the name of the first column is not
// that of a coefficient, this column labels the rows, with the same names in the same order. A column
// reference_wavelength_nm states one number, in one row or more. Throws ErrorAt.
//   scheme  the index scheme of columns that are named by numbers
CovarianceTable ReadCovariance(std::istream& stream, const std::string& file, std::optional<IndexScheme> scheme,
                               bool decimalComma = false);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_COVARIANCE_TABLE_H
