// Reads tables of eyes: classifies the columns, and converts each row to an eye.
#ifndef ORVANEL_FILES_TABLES_EYE_TABLE_H
#define ORVANEL_FILES_TABLES_EYE_TABLE_H

#include <array>
#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/layers.h"
#include "eye/conventions/column_name.h"
#include "eye/conventions/partial_convention.h"
#include "eye/eye.h"
#include "files/errors.h"
#include "files/tables/csv.h"
#include "files/tables/ndjson.h"
#include "files/tables/record.h"

namespace orvanel::files {

// Properties of a table that its columns do not show.
struct TableOptions {
  bool prescription = false;  // columns such as sphere, cylinder and axis hold a refraction that is added to the eye
  bool decimalComma = false;  // numbers of CSV have decimal commas, as in 0,12
};

// The columns of a table. Coefficients are named Z4, Z(2,0) or c[2,-2]. The columns unit, wavelength_nm, normalisation,
// order, y_axis, eye, pupil_diameter_mm and reference_wavelength_nm state their convention. All other columns are the
// user's own and identify the row. Blanks around names are ignored, as is the case of the columns of the convention.
class EyeColumns {
 public:
  // Throws ErrorAt if a name is repeated, if it is almost a known one, or if no column holds coefficients.
  //   stated  the parts of the convention on the command line, for every row
  EyeColumns(const Record& header, std::string file, const PartialConvention& stated, TableOptions options = {});

  // Converts a row to an eye. Throws ErrorAt with the column and its name.
  Eye Read(const Record& row) const;

  // Positions and names of the user's own columns.
  const std::vector<std::size_t>& identifiers() const { return identifiers_; }
  const std::vector<std::string>& names() const { return names_; }

  // Lists how the columns are read: "read as coefficients: Z4, Z7; copied: id".
  std::string Summary() const;

  // Every term that a row may have, by OSA index, in ascending order.
  std::vector<std::size_t> Terms() const;

  // The terms of the columns, from left to right, if their numbers are those of an index scheme.
  const std::vector<std::size_t>& Terms(IndexScheme scheme) const;

  // An index scheme that contains the terms of all rows. Empty if columns have numbers and each row may state another
  // scheme.
  std::optional<IndexScheme> CommonScheme() const;

  // True if a row may have a reference wavelength.
  bool MayStateReference() const;

 private:
  struct CoefficientColumn {
    std::size_t column;
    CoefficientName name;
  };
  struct Resolved {  // the terms of the columns in one index scheme
    std::vector<std::size_t> osa;
    std::optional<std::size_t> faulty;  // a column without a term, or with the term of an earlier column
    std::string fault;
  };

  struct PartColumn {
    std::size_t column;
    const char* key;  // the part of the convention
  };

  bool HasColumnFor(const char* key) const;
  void Sort(const Record& header);
  bool SortPart(const Record& header, std::size_t column);
  bool SortPrescription(const Record& header, std::size_t column);
  void CheckPrescription(const Record& header) const;
  void Resolve(IndexScheme scheme);
  double Number(const Record& row, std::size_t column) const;
  PartialConvention PartsOfRow(const Record& row) const;
  std::optional<PowerVector> PrescriptionOfRow(const Record& row) const;
  static Place PlaceOf(const Record& row, std::size_t column);
  [[noreturn]] void Refuse(const Record& row, std::size_t column, const std::string& reason) const;
  [[noreturn]] void Refuse(const Record& row, std::size_t column, const std::string& before,
                           const FileError& cause) const;

  std::string file_;
  std::vector<std::string> names_;
  PartialConvention stated_;
  TableOptions options_;
  std::vector<CoefficientColumn> coefficients_;
  std::vector<PartColumn> parts_;
  std::array<std::optional<std::size_t>, 3> prescription_;  // sphere, cylinder and axis
  std::vector<std::size_t> identifiers_;
  bool numbered_ = false;  // a column is named by a number and needs an index scheme
  std::array<Resolved, 4> resolved_;
  std::optional<std::size_t> nameColumn_;
};

struct TableEye {
  std::size_t line = 0;
  Eye eye;
  std::vector<std::string> identifiers;  // texts of the user's own columns
};

enum class TableKind { kCsv, kNdjson };

// Reads eyes from a stream row by row. The memory does not depend on the number of rows.
class EyeTable {
 public:
  // Reads the header; throws ErrorAt if it is invalid. The stream must outlive the table.
  EyeTable(std::istream& stream, std::string file, TableKind kind, const PartialConvention& stated,
           TableOptions options = {});

  // Reads the next eye; false at the end. Throws ErrorAt for an invalid row; its identifiers are set as far as they
  // could be read. The next call continues with the next row.
  bool Next(TableEye& eye);

  // Skips the next eye; false at the end. Throws ErrorAt only if the row is malformed.
  bool Skip();

  // Of the stream, up to the end of the last row.
  std::uint64_t bytesTaken() const { return csv_ ? csv_->bytesTaken() : ndjson_->bytesTaken(); }

  // Names of the user's own columns. In a table of JSON they are those of the first row. Later rows may lack some, but
  // must not have others.
  const std::vector<std::string>& identifierNames() const { return identifierNames_; }

  // Lists how the columns are read. In a table of JSON, these are the keys of the first row.
  std::string Summary() const { return columns_->Summary(); }

  // Every term that a row may have, by OSA index. In a table of JSON those of the first row.
  std::vector<std::size_t> Terms() const { return columns_->Terms(); }

  // The terms of the columns, from left to right, if their numbers are those of an index scheme.
  const std::vector<std::size_t>& Terms(IndexScheme scheme) const { return columns_->Terms(scheme); }

  // An index scheme that contains the terms of all rows. Empty if columns have numbers and each row may state another
  // scheme.
  std::optional<IndexScheme> CommonScheme() const { return columns_->CommonScheme(); }

  // True if a row may have a reference wavelength. In a table of JSON, by the keys of the first row.
  bool MayStateReference() const { return columns_->MayStateReference(); }

 private:
  void ReadHeader();
  bool NextRow();
  void UnderstandKeys();
  void IdentifyFaulty(TableEye& eye) const;

  std::string file_;
  PartialConvention stated_;
  TableOptions options_;
  std::optional<CsvReader> csv_;
  std::optional<NdjsonReader> ndjson_;
  bool firstRowRead_ = false;  // row_ is the first row of JSON, read for its keys
  Record header_, row_;
  std::unique_ptr<EyeColumns> columns_;
  std::vector<std::string> identifierNames_;
  std::unordered_map<std::string, std::size_t> slotOf_;  // position of each name
  std::vector<std::size_t> slots_;                       // positions of the current identifiers among the names
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_EYE_TABLE_H
