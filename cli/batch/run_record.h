// The record beside a table of results, "results.csv.orvanel": of which run its rows are.
#ifndef ORVANEL_CLI_BATCH_RUN_RECORD_H
#define ORVANEL_CLI_BATCH_RUN_RECORD_H

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/fnv1a.h"
#include "base/layers.h"
#include "cli/batch/shard.h"

namespace orvanel::cli {

// One of the eye files that take the place of a table.
struct EyeFile {
  std::string name;  // as given
  std::string hash;  // of its bytes; empty where it cannot be read
  friend bool operator==(const EyeFile&, const EyeFile&) = default;
};

// What decides on the bytes of the results, and how far they are.
struct RunRecord {
  std::string version;                                        // of the program
  std::vector<std::pair<std::string, std::string>> settings;  // options as given, by name
  std::vector<std::string> columns;                           // that are computed
  std::string tableHash;  // of the bytes of the table of eyes; empty for eye files, and a pipe that is not read yet
  Shard shard;
  std::size_t chunkRows = 0;
  std::uintmax_t resultsBytes = 0;           // of the results, so many are this run's beyond doubt
  std::string resultsHash = Fnv1a().Text();  // of these
  struct End {
    std::size_t tableRows = 0;  // of the table of eyes
    std::size_t errors = 0;     // among the rows of the results
    friend bool operator==(const End&, const End&) = default;
  };
  std::optional<End> end;                                   // where the results are complete
  std::vector<std::pair<std::string, double>> constants{};  // columns left out, since they are the same in all rows
  std::vector<EyeFile> eyeFiles{};                          // in their order, where there is no table of eyes
};

// "results.csv.orvanel".
std::string RecordFileOf(const std::string& results);

// Comes to its place whole, or not at all; standard output, "-", has no record. Throws Error.
void WriteRecord(const std::string& results, const RunRecord& record);

// Empty where there is none. Throws Error where there is something else in its place, or a record of an older version
// that says too little.
std::optional<RunRecord> ReadRecord(const std::string& results);

// What is different, in words for the user; empty where nothing is but how far the results are and, if `anyShard`, the
// shard and the places of files.
std::string Difference(const RunRecord& before, const RunRecord& now, bool anyShard);

// A hash of all bytes of a file, in hexadecimal digits; empty where it is a pipe, which cannot be read twice.
std::string HashOfFile(const std::string& file);

// Options that name files beside the results; shards may have others.
constexpr const char* kPlanesOption = "--planes";
constexpr const char* kPicturesOption = "--pictures";

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_RUN_RECORD_H
