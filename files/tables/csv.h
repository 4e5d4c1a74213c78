// Reads and writes CSV by RFC 4180, with the variants that spreadsheets write.
#ifndef ORVANEL_FILES_TABLES_CSV_H
#define ORVANEL_FILES_TABLES_CSV_H

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

#include "base/layers.h"
#include "files/tables/record.h"

namespace orvanel::files {

// Reads a stream row by row. Lines end with LF or CRLF. A byte order mark, and rows that have only separators, are
// skipped. Fields may be quoted, with quotes doubled and line breaks inside. The separator is a comma, a semicolon or a
// tabulator. It is the one in the first row outside quotes and brackets; two different ones there are refused.
class CsvReader {
 public:
  // The stream must outlive the reader.
  //   file          its name in messages
  //   decimalComma  numbers have decimal commas; then commas separate columns only if all fields are in quotes
  CsvReader(std::istream& stream, std::string file, bool decimalComma = false);

  // Reads the next row; false at the end. Throws ErrorAt for a malformed row. Then the record has the fields up to the
  // invalid one, and the next call continues with the next line. Reads at most 64 MiB of a row, its limit.
  bool Next(Record& record);

  char separator() const { return separator_; }

  // Of the stream, up to the end of the last row.
  std::uint64_t bytesTaken() const { return bytesRead_ - (buffer_.size() - next_); }

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
  std::uint64_t bytesRead_ = 0;
  Place place_{1, 1};  // of the next character
  bool started_ = false;
  bool isWithinRow_ = false;  // the rest of a refused row is not read yet
  char separator_ = ',';
};

// Formats a field of a row with commas; in quotes if necessary.
std::string CsvField(std::string_view text);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_CSV_H
