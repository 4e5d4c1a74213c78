// Reads a row of names, then a square matrix of numbers.
#include "files/tables/covariance_table.h"

#include <algorithm>

#include "base/error.h"
#include "base/number_text.h"
#include "eye/conventions/column_name.h"
#include "eye/conventions/partial_convention.h"
#include "files/tables/csv.h"

namespace orvanel::files {
namespace {

class Reader {
 public:
  Reader(std::istream& stream, const std::string& file, std::optional<IndexScheme> scheme, bool decimalComma)
      : file_(file), scheme_(scheme), point_(decimalComma ? ',' : '.'), csv_(stream, file, decimalComma) {}

  CovarianceTable Read() {
    if (!csv_.Next(row_)) throw ErrorAt(file_, {1, 1}, "the table is empty; its first row names the coefficients");
    ReadNames();
    if (table_.names.empty()) Refuse(0, "no column names a coefficient; it is like Z4, Z(2,0) or c[2,-2]");
    while (csv_.Next(row_)) ReadRow();
    if (rows_ != table_.names.size()) {
      throw Error(file_ + ": has " + std::to_string(rows_) + " rows below its " + std::to_string(table_.names.size()) +
                  " names; a covariance must be square");
    }
    return table_;
  }

 private:
  [[noreturn]] void Refuse(std::size_t field, const std::string& reason) const {
    throw ErrorAt(file_, row_.place(std::min(field, row_.size() - 1)), reason);
  }

  void ReadNames() {
    for (std::size_t field = 0; field < row_.size(); ++field) {
      try {
        const auto name = ParseCoefficientName(row_[field]);
        if (!name) {
          if (Folded(row_[field]) == kReferenceKey && !referenceColumn_) {
            referenceColumn_ = field;
            continue;
          }
          if (field == 0 && row_.size() > 1) {
            labels_ = 1;
            continue;
          }
          throw Error(Quoted(row_[field]) + " is not a name of a coefficient; write Z4, Z(2,0) or c[2,-2]");
        }
        const std::size_t term = OsaIndex(TermNamed(*name, scheme_));
        if (std::find(table_.terms.begin(), table_.terms.end(), term) != table_.terms.end()) {
          throw Error("the term " + Symbol(Term(term)) + " has a column already; keep one");
        }
        columns_.push_back(field);
        table_.terms.push_back(term);
        table_.names.emplace_back(row_[field]);
      } catch (const Error& error) {
        Refuse(field, error.what());
      }
    }
  }

  void ReadRow() {
    const std::size_t width = labels_ + table_.names.size() + (referenceColumn_ ? 1 : 0);
    if (row_.size() != width) {
      Refuse(width,
             "the row has " + std::to_string(row_.size()) + " fields, but the header has " + std::to_string(width));
    }
    if (rows_ == table_.names.size())
      Refuse(0, "the matrix has a row for each column already; a covariance must be square");
    if (labels_ == 1 && row_[0] != table_.names[rows_]) {
      Refuse(0, "the row is labelled " + Quoted(row_[0]) + ", but " + Quoted(table_.names[rows_]) +
                    " is expected; rows must have the order of the columns");
    }
    for (std::size_t i = 0; i < table_.names.size(); ++i) {
      try {
        table_.matrix.push_back(ParseNumber(row_[columns_[i]], point_));
      } catch (const Error& error) {
        Refuse(columns_[i], "column " + Quoted(table_.names[i]) + ": " + error.what());
      }
    }
    if (referenceColumn_) ReadReference(*referenceColumn_);
    ++rows_;
  }

  void ReadReference(std::size_t column) {
    if (Trimmed(row_[column]).empty()) return;
    try {
      PartialConvention above, row;
      above.reference = table_.reference;
      SetPart(row, kReferenceKey, ShortestText(ParseNumber(row_[column], point_)));
      table_.reference = Combined(above, "a row above", row, "this row").reference;
    } catch (const Error& error) {
      Refuse(column, error.what());
    }
  }

  const std::string& file_;
  std::optional<IndexScheme> scheme_;
  char point_;
  CsvReader csv_;
  Record row_;
  CovarianceTable table_;
  std::vector<std::size_t> columns_;  // of the coefficients
  std::optional<std::size_t> referenceColumn_;
  std::size_t labels_ = 0, rows_ = 0;
};

}  // namespace

CovarianceTable ReadCovariance(std::istream& stream, const std::string& file, std::optional<IndexScheme> scheme,
                               bool decimalComma) {
  return Reader(stream, file, scheme, decimalComma).Read();
}

}  // namespace orvanel::files
