// Tables as text: RFC 4180, and what spreadsheets make of it.
#ifndef ORVANEL_FILES_TABLES_CSV_H
#define ORVANEL_FILES_TABLES_CSV_H

#include <istream>
#include <string>
#include <string_view>

#include "base/layers.h"
#include "files/tables/record.h"

namespace orvanel::files {

// Reads a stream row by row. Lines end with LF or CRLF; a byte order mark is skipped; so are rows without a single
// character but separators. Fields may be quoted, with quotes doubled and line breaks inside. The separator, a comma, a
// semicolon or a tabulator, is the one that stands in the first row outside of quotes and brackets; two of them there
// are refused.
class CsvReader {
 public:
  // The stream must outlive the reader.
  //   file          as messages name it
  //   decimalComma  numbers have commas, so that commas separate columns only where all fields are in quotes
  CsvReader(std::istream& stream, std::string file, bool decimalComma = false);

  // The next row; false at the end. Throws ErrorAt for a row that is not well formed, with the fields up to the one at
  // fault, and then goes on with the next line. No more of a row is read than the 64 MiB that it may have.
  bool Next(Record& record);

  char separator() const { return separator_; }

 private:
  int Peek();
  int Take();
  bool Fill();
  void SkipMark();
  void FindSeparator();
  bool ReadRow(Record& record);
  void ReadField(Record& record);
  void ReadQuoted(Record& record);
  [[noreturn]] void Refuse(Place place, const std::string& reason);

  std::istream& stream_;
  std::string file_;
  bool decimalComma_;
  std::string buffer_;
  std::size_t next_ = 0;  // in buffer_
  Place place_{1, 1};     // of the next character
  bool started_ = false;
  bool isWithinRow_ = false;  // of which something was refused
  char separator_ = ',';
};

// A field as it must stand in a row with commas: in quotes where it has to.
std::string CsvField(std::string_view text);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_CSV_H
