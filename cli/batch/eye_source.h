// Iterates over the eyes of a batch: the rows of a table, or eye files one after the other.
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
#include "eye/conventions/partial_convention.h"
#include "files/tables/eye_table.h"

namespace orvanel::cli {

// An eye file that cannot be read or is too large: an error of one row.
class UnreadableEye : public Error {
 public:
  using Error::Error;
};

class EyeSource {
 public:
  // The rows of a table. Throws as InputFile and EyeTable do.
  EyeSource(const std::string& table, TableKind kind, const PartialConvention& stated, TableOptions options);

  // One eye per file. Reads all files once for their hashes.
  EyeSource(const std::vector<std::string>& files, PartialConvention stated);

  ~EyeSource();

  // The next eye; false at the end. Throws ErrorAt or UnreadableEye for an invalid eye; the next call returns the next
  // eye. Throws Error if the bytes of an eye file do not match its hash.
  bool Next(TableEye& eye);

  // Skips the next eye; false at the end. Throws ErrorAt if it is not a row of a table.
  bool Skip();

  // The user's columns of the table; "file" for eye files.
  const std::vector<std::string>& identifierNames() const;

  // A summary of how the table's columns are read; empty for eye files.
  std::string Summary() const;

  // The share of the eyes that is done, from 0 to 1; empty if it is unknown.
  std::optional<double> Share() const;

  // The hash of the bytes of the table that are read so far; empty for eye files.
  std::string tableHash() const;

  // The eye files; a file that could not be read in its turn has no hash any more. Empty for a table.
  const std::vector<EyeFile>& files() const { return files_; }

 private:
  struct Table;

  bool NextFile(TableEye& eye);

  std::unique_ptr<Table> table_;
  std::vector<EyeFile> files_;
  PartialConvention stated_;
  std::size_t next_ = 0;  // index of the next file
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_EYE_SOURCE_H
