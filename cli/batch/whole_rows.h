// Reads the rows of a table that this program has written.
#ifndef ORVANEL_CLI_BATCH_WHOLE_ROWS_H
#define ORVANEL_CLI_BATCH_WHOLE_ROWS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <istream>
#include <string>

#include "base/fnv1a.h"
#include "base/layers.h"

namespace orvanel::cli {

// Reads rows unchanged, with their line feed; quoted fields may contain line feeds.
class RowReader {
 public:
  // The stream must outlive the reader.
  explicit RowReader(std::istream& stream) : stream_(stream) {}

  // False if no whole row is left.
  bool Next(std::string& row);

 private:
  std::istream& stream_;
  std::string buffer_;
  std::size_t next_ = 0;  // in buffer_
};

// The last column of a table of results is empty if there is no error.
inline bool HasError(const std::string& row) { return row.size() < 2 || row[row.size() - 2] != ','; }

struct WholeRows {
  std::uintmax_t bytes = 0;  // header included
  Fnv1a hash;                // of these bytes
  std::size_t rows = 0;      // without the header
  std::size_t errors = 0;    // rows with one
};

// Reads the first `bytes` bytes, or fewer if these end within a row or after the end. Throws Error if the first row
// differs from the header.
//   visit  gets each row after the header, counted from 0
WholeRows ReadWholeRows(std::istream& stream, const std::string& header, std::uintmax_t bytes,
                        const std::function<void(std::size_t, const std::string&)>& visit);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_WHOLE_ROWS_H
