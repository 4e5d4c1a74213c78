// The whole rows at the beginning of a table that this program writes, whose last row may be torn.
#ifndef ORVANEL_CLI_BATCH_WHOLE_ROWS_H
#define ORVANEL_CLI_BATCH_WHOLE_ROWS_H

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>

namespace orvanel::cli {

// Reads rows as they stand, with their line feed; quoted fields may hold line feeds.
class RowReader {
 public:
  // The stream must outlive the reader.
  explicit RowReader(std::istream& stream) : stream_(stream) {}

  // False where no whole row is left.
  bool Next(std::string& row);

 private:
  std::istream& stream_;
  std::string buffer_;
  std::size_t next_ = 0;  // in buffer_
};

// The last column of a table of results is empty where there is no error.
inline bool HasError(const std::string& row) { return row.size() < 2 || row[row.size() - 2] != ','; }

struct WholeRows {
  std::uintmax_t bytes = 0;    // up to the end of the last row counted, header included
  std::size_t rows = 0;        // without the header
  std::size_t errors = 0;      // rows with one
  bool headerIsWhole = false;  // else nothing is counted
};

// At most `most` rows. Bytes of value 0, which a computer that lost its power may leave in a file, end the count.
// Throws Error where the first row is another than the header.
WholeRows CountWholeRows(std::istream& stream, const std::string& header, std::size_t most);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_WHOLE_ROWS_H
