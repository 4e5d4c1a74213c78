// Reads and writes the record beside a table of results, "results.csv.orvanel": the settings and progress of its run.
#ifndef ORVANEL_CLI_BATCH_RUN_RECORD_H
#define ORVANEL_CLI_BATCH_RUN_RECORD_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/fnv1a.h"
#include "base/layers.h"
#include "cli/batch/shard.h"

namespace orvanel::cli {

// An eye file of a batch without a table.
struct EyeFile {
  std::string name;  // as given
  std::string hash;  // of its bytes; empty if it cannot be read
  friend bool operator==(const EyeFile&, const EyeFile&) = default;
};

// The settings that determine the bytes of the results, and the progress.
struct RunRecord {
  std::string version;                                        // of the program
  std::vector<std::pair<std::string, std::string>> settings;  // options as given, by name
  std::vector<std::string> columns;                           // computed columns
  std::string tableHash;  // of the bytes of the table of eyes; empty for eye files, and for a pipe before it is read
  Shard shard;
  std::size_t chunkRows = 0;
  std::uintmax_t resultsBytes = 0;           // bytes of the results that are certainly of this run
  std::string resultsHash = Fnv1a().Text();  // of these bytes
  struct End {
    std::size_t tableRows = 0;  // of the table of eyes
    std::size_t errors = 0;     // among the rows of the results
    friend bool operator==(const End&, const End&) = default;
  };
  std::optional<End> end;                                   // set when the results are complete
  std::vector<std::pair<std::string, double>> constants{};  // columns left out: all rows have the same value
  std::vector<EyeFile> eyeFiles{};                          // in order; empty for a table of eyes
  std::map<std::string, std::string> lightFiles{};  // spectra that rows name, with the hashes of their bytes; an empty
                                                    // hash if the file cannot be read
};

// "results.csv.orvanel".
std::string RecordFileOf(const std::string& results);

// Writes the record atomically; standard output, "-", has no record. Throws Error.
void WriteRecord(const std::string& results, const RunRecord& record);

// Empty if there is none. Throws Error if the file is not a record, or if it is a record of an older version without
// the needed fields.
std::optional<RunRecord> ReadRecord(const std::string& results);

// The difference of two records, in words for the user; empty if only the progress differs. With `anyShard`, the shard
// and the places of files may differ too.
std::string Difference(const RunRecord& before, const RunRecord& now, bool anyShard);

// The hash of all bytes of a file, in hexadecimal digits; empty for a pipe, which cannot be read twice.
std::string HashOfFile(const std::string& file);

// Options that name files beside the results; they may differ between shards.
constexpr const char* kPlanesOption = "--planes";
constexpr const char* kPicturesOption = "--pictures";

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_RUN_RECORD_H
