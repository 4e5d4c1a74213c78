// Tables of eyes, one a row: which column holds what, and the eye of each row.
#ifndef ORVANEL_FILES_TABLES_EYE_TABLE_H
#define ORVANEL_FILES_TABLES_EYE_TABLE_H

#include <array>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/layers.h"
#include "eye/conventions/column_name.h"
#include "eye/conventions/statement.h"
#include "eye/eye.h"
#include "files/errors.h"
#include "files/tables/csv.h"
#include "files/tables/ndjson.h"
#include "files/tables/record.h"

namespace orvanel::files {

// How a table is read, where its columns do not say it.
struct TableOptions {
  bool prescription = false;  // columns such as sphere, cylinder and axis hold a refraction to be added to the eye
  bool decimalComma = false;  // numbers of CSV are written as 0,12
};

// What the columns of a table are. Coefficients are named Z4, Z(2,0) or c[2,-2]; unit, wavelength_nm, normalisation,
// order, y_axis, eye, pupil_diameter_mm and reference_wavelength_nm state how they are meant; all other columns are the
// user's own and identify the row. Blanks around a name do not count, nor does the case of those that state something.
class EyeColumns {
 public:
  // Throws ErrorAt where a name comes twice, is nearly one of ours, or no column holds coefficients.
  //   stated  what the command line states for every row
  EyeColumns(const Record& header, std::string file, const Statement& stated, TableOptions options = {});

  // The eye of a row. Throws ErrorAt with the column and its name.
  Eye Read(const Record& row) const;

  // Positions and names of the user's own columns.
  const std::vector<std::size_t>& identifiers() const { return identifiers_; }
  const std::vector<std::string>& names() const { return names_; }

  // Which columns are read as what: "read as coefficients: Z4, Z7; carried through: id".
  std::string Summary() const;

  // Every term that a row may have, by OSA index, in ascending order.
  std::vector<std::size_t> Terms() const;

  // Those of the rows in one order, as the columns stand.
  const std::vector<std::size_t>& Terms(Order order) const;

  // An order that can hold all rows; empty where columns have numbers and each row may state what they mean.
  std::optional<Order> CommonOrder() const;

  // Whether a row may have a reference wavelength.
  bool MayStateReference() const;

 private:
  struct CoefficientColumn {
    std::size_t column;
    CoefficientName name;
  };
  struct Resolved {  // the columns' terms in one order
    std::vector<std::size_t> osa;
    std::optional<std::size_t> faulty;  // the column that has no term, or that of an earlier one
    std::string fault;
  };

  struct StatementColumn {
    std::size_t column;
    const char* key;  // what it states
  };

  bool HasColumnFor(const char* key) const;
  void Sort(const Record& header);
  bool SortStatement(const Record& header, std::size_t column);
  bool SortPrescription(const Record& header, std::size_t column);
  void CheckPrescription(const Record& header) const;
  void Resolve(Order order);
  double Number(const Record& row, std::size_t column) const;
  Statement StatementOfRow(const Record& row) const;
  std::optional<PowerVector> PrescriptionOfRow(const Record& row) const;
  static Place PlaceOf(const Record& row, std::size_t column);
  [[noreturn]] void Refuse(const Record& row, std::size_t column, const std::string& reason) const;
  [[noreturn]] void Refuse(const Record& row, std::size_t column, const std::string& before,
                           const FileError& cause) const;

  std::string file_;
  std::vector<std::string> names_;
  Statement stated_;
  TableOptions options_;
  std::vector<CoefficientColumn> coefficients_;
  std::vector<StatementColumn> statements_;
  std::array<std::optional<std::size_t>, 3> prescription_;  // sphere, cylinder and axis
  std::vector<std::size_t> identifiers_;
  bool numbered_ = false;  // some column is named by a number, so that an order must be stated
  std::array<Resolved, 4> resolved_;
  std::optional<std::size_t> nameColumn_;
};

struct TableEye {
  std::size_t line = 0;
  Eye eye;
  std::vector<std::string> identifiers;  // texts of the user's own columns
};

enum class TableKind { kCsv, kNdjson };

// Reads eyes from a stream, row by row; memory does not grow with the number of rows.
class EyeTable {
 public:
  // The stream must outlive the table. Reads the header; throws ErrorAt where it is at fault.
  EyeTable(std::istream& stream, std::string file, TableKind kind, const Statement& stated, TableOptions options = {});

  // The next eye; false at the end. Throws ErrorAt for a row that is at fault, and then goes on with the next; what
  // identifies the row is there all the same, as far as the row can be read.
  bool Next(TableEye& eye);

  // Passes over the next eye; false at the end. Throws ErrorAt only where the row is not well formed.
  bool Skip();

  // Names of the user's own columns. In a table of JSON they are those of the first row; later rows may lack some, but
  // have no others.
  const std::vector<std::string>& identifierNames() const { return identifierNames_; }

  // Which columns are read as what; in a table of JSON, the keys of the first row.
  std::string Summary() const { return columns_->Summary(); }

  // Every term that a row may have, by OSA index. In a table of JSON those of the first row.
  std::vector<std::size_t> Terms() const { return columns_->Terms(); }

  // Those of the rows in one order, as the columns stand.
  const std::vector<std::size_t>& Terms(Order order) const { return columns_->Terms(order); }

  // An order that can hold all rows; empty where columns have numbers and each row may state what they mean.
  std::optional<Order> CommonOrder() const { return columns_->CommonOrder(); }

  // Whether a row may have a reference wavelength. In a table of JSON, by the keys of the first row.
  bool MayStateReference() const { return columns_->MayStateReference(); }

 private:
  void ReadHeader();
  bool NextRow();
  void UnderstandKeys();
  void IdentifyFaulty(TableEye& eye) const;

  std::string file_;
  Statement stated_;
  TableOptions options_;
  std::optional<CsvReader> csv_;
  std::optional<NdjsonReader> ndjson_;
  bool firstRowRead_ = false;  // of JSON, for its keys
  Record header_, row_;
  std::unique_ptr<EyeColumns> columns_;
  std::vector<std::string> identifierNames_;
  std::unordered_map<std::string, std::size_t> slotOf_;  // position of each of these names
  std::vector<std::size_t> slots_;                       // of the current row's own columns among the names
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_EYE_TABLE_H
