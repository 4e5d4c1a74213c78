// Appends whole rows to the table of results and locks it for one run.
#ifndef ORVANEL_CLI_BATCH_OUTPUT_RESULTS_FILE_H
#define ORVANEL_CLI_BATCH_OUTPUT_RESULTS_FILE_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "base/layers.h"

namespace orvanel::cli {

// The name "-" is standard output, which can only be appended to.
class ResultsFile {
 public:
  // Opens or creates the file and locks out other runs. Throws Error if it cannot be written, is not a plain file, or
  // is locked by another run. A link is not a plain file.
  //   isNew  the file must not exist
  ResultsFile(std::string file, bool isNew);

  std::uintmax_t size() const { return size_; }

  // Truncates the file to so many bytes.
  void Keep(std::uintmax_t bytes);

  // Appends whole rows. If they do not all fit, restores the file and throws Error.
  void Append(const std::string& rows);

  // Flushes appended rows to the disk.
  void Synchronise();

  // Removes the file if it is empty, so that a run that could not begin leaves nothing.
  void RemoveIfEmpty();

 private:
  [[noreturn]] void Refuse(const std::string& reason) const;

  struct Close {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
  };

  std::string file_;
  std::unique_ptr<std::FILE, Close> stream_;
  std::uintmax_t size_ = 0;
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_OUTPUT_RESULTS_FILE_H
