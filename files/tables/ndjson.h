// Tables of one JSON object a line.
#ifndef ORVANEL_FILES_TABLES_NDJSON_H
#define ORVANEL_FILES_TABLES_NDJSON_H

#include <istream>
#include <string>

#include "base/layers.h"
#include "files/tables/record.h"

namespace orvanel::files {

// Reads a stream line by line: objects of numbers and strings, no key twice. Empty lines are skipped.
class NdjsonReader {
 public:
  // The stream must outlive the reader.
  NdjsonReader(std::istream& stream, std::string file);

  // The keys and values of the next line, values as text; false at the end. Throws ErrorAt for a line that is not well
  // formed, with the keys and values that could be read, and then goes on with the next. No more of a line is read than
  // the 64 MiB that it may have.
  bool Next(Record& keys, Record& values);

 private:
  static constexpr std::size_t kPiece = 1 << 12;

  bool TakePiece(std::string& piece);
  bool TakeLine();
  [[noreturn]] void Refuse(std::size_t column, const std::string& reason) const;

  std::istream& stream_;
  std::string file_;
  std::size_t line_ = 0;
  std::string text_;
  bool isWithinLine_ = false;  // behind the beginning of a line that is too long
  bool ended_ = false;
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_NDJSON_H
