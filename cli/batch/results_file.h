// The table of results while it grows: whole rows at its end, one run at a time.
#ifndef ORVANEL_CLI_BATCH_RESULTS_FILE_H
#define ORVANEL_CLI_BATCH_RESULTS_FILE_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "base/layers.h"

namespace orvanel::cli {

// With the name "-" it is standard output, which is only added to.
class ResultsFile {
 public:
  // Opens or makes the file and locks out other runs. Throws Error where it cannot be written, is a link or no plain
  // file, or another run writes it.
  //   isNew  nothing of this name must be there
  ResultsFile(std::string file, bool isNew);

  std::uintmax_t size() const { return size_; }

  // Cuts off what is behind so many bytes.
  void Keep(std::uintmax_t bytes);

  // Adds whole rows at the end. Where they do not all fit, the file is as before, and Error is thrown.
  void Append(const std::string& rows);

  // Has what was added come to the disk.
  void Synchronise();

  // Removes the file, should it be empty: a run that could not begin leaves nothing.
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

#endif  // ORVANEL_CLI_BATCH_RESULTS_FILE_H
