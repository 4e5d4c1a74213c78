// Reads tables with one JSON object in each line (NDJSON).
#ifndef ORVANEL_FILES_TABLES_NDJSON_H
#define ORVANEL_FILES_TABLES_NDJSON_H

#include <cstdint>
#include <istream>
#include <string>

#include "base/layers.h"
#include "files/tables/record.h"

namespace orvanel::files {

// Reads a stream line by line: objects of numbers and strings, without repeated keys. Empty lines are skipped.
class NdjsonReader {
 public:
  // The stream must outlive the reader.
  NdjsonReader(std::istream& stream, std::string file);

  // Reads keys and values of the next line, values as text; false at the end. Throws ErrorAt for a malformed line. Then
  // keys and values have what could be read, and the next call continues with the next line. Reads at most 64 MiB of a
  // line, its limit.
  bool Next(Record& keys, Record& values);

  // Of the stream, up to the end of the last line.
  std::uint64_t bytesTaken() const { return bytesTaken_; }

 private:
  static constexpr std::size_t kPiece = 1 << 12;

  bool TakePiece(std::string& piece);
  bool TakeLine();
  [[noreturn]] void Refuse(std::size_t column, const std::string& reason) const;

  std::istream& stream_;
  std::string file_;
  std::size_t line_ = 0;
  std::uint64_t bytesTaken_ = 0;
  std::string text_;
  bool isWithinLine_ = false;  // the rest of a line that is too long is not read yet
  bool ended_ = false;
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_NDJSON_H
