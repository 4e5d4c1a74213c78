// Gives the eyes of a batch: the rows of a table, or one eye file after the other.
#ifndef ORVANEL_CLI_BATCH_EYE_SOURCE_H
#define ORVANEL_CLI_BATCH_EYE_SOURCE_H

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/error.h"
#include "base/layers.h"
#include "cli/batch/run_record.h"
#include "eye/statement.h"
#include "files/tables/eye_table.h"

namespace orvanel::cli {

// An eye file that cannot be read or is too large: the fault of one row.
class UnreadableEye : public Error {
 public:
  using Error::Error;
};

class EyeSource {
 public:
  // The rows of a table. Throws as InputFile and EyeTable do.
  EyeSource(const std::string& table, TableKind kind, const Statement& stated, TableOptions options);

  // An eye a file. Reads all files once for their hashes.
  EyeSource(const std::vector<std::string>& files, Statement stated);

  ~EyeSource();

  // The next eye; false at the end. Throws ErrorAt or UnreadableEye for an eye at fault, and the call after that gives
  // the next eye. Throws Error for an eye file whose bytes are not those of the hash.
  bool Next(TableEye& eye);

  // Passes over the next eye; false at the end. Throws ErrorAt where it is no row of a table.
  bool Skip();

  // The table's own columns; "file" for eye files.
  const std::vector<std::string>& identifierNames() const;

  // What the columns of the table are read as; empty for eye files.
  std::string Summary() const;

  // The share of the eyes that is passed, from 0 to 1; empty where it is not known.
  std::optional<double> Share() const;

  // Of the bytes of the table that are read so far; empty for eye files.
  std::string tableHash() const;

  // The eye files; a file that could not be read when its turn came has no hash any more. Empty for a table.
  const std::vector<EyeFile>& files() const { return files_; }

 private:
  struct Table;

  bool NextFile(TableEye& eye);

  std::unique_ptr<Table> table_;
  std::vector<EyeFile> files_;
  Statement stated_;
  std::size_t next_ = 0;  // of the files
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_EYE_SOURCE_H
