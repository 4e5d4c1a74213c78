// Writes without a buffer, and truncates after a failed write.
#include "cli/batch/output/results_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/error.h"
#include "cli/console/report.h"
#include "files/input_file.h"
#include "files/path_of.h"
#include "files/platform.h"

namespace orvanel::cli {
namespace fs = std::filesystem;

ResultsFile::ResultsFile(std::string file, bool isNew) : file_(std::move(file)) {
  if (file_ == kStandardStream) return;
  const fs::path path = PathOf(file_);
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) Refuse("is a folder; give the name of a file");
  if (fs::is_symlink(path, ignored))
    Refuse("is a symbolic link, which is not followed; give the name of the file itself");
  stream_.reset(OpenForAppending(path, isNew));
  if (!stream_) Refuse(std::string("cannot be written: ") + std::strerror(errno));
  if (!fs::is_regular_file(path, ignored)) Refuse("is not a plain file; give the name of one");
  if (!LockOutOthers(stream_.get())) Refuse("is being written by another run; wait for it, or give another name");
  std::setvbuf(stream_.get(), nullptr, _IONBF, 0);
  std::error_code failure;
  size_ = fs::file_size(path, failure);
  if (failure) Refuse("cannot be read: " + failure.message());
}

void ResultsFile::Refuse(const std::string& reason) const { throw Error(file_ + ": " + reason); }

void ResultsFile::Keep(std::uintmax_t bytes) {
  if (bytes == size_) return;
  std::error_code failure;
  fs::resize_file(PathOf(file_), bytes, failure);
  if (failure) Refuse("cannot be cut to its whole rows: " + failure.message());
  size_ = bytes;
}

void ResultsFile::Append(const std::string& rows) {
  if (!stream_) {
    PrintOutput(rows, "");
    return;
  }
  errno = 0;
  if (std::fwrite(rows.data(), 1, rows.size(), stream_.get()) == rows.size()) {
    size_ += rows.size();
    return;
  }
  const std::string reason = std::strerror(errno);
  std::error_code ignored;
  fs::resize_file(PathOf(file_), size_, ignored);
  Refuse("cannot be written: " + reason + "; all rows in it are complete, and --resume continues from there");
}

void ResultsFile::Synchronise() {
  if (stream_) cli::Synchronise(stream_.get());
}

void ResultsFile::RemoveIfEmpty() {
  if (size_ > 0 || !stream_) return;
  stream_.reset();
  std::error_code ignored;
  fs::remove(PathOf(file_), ignored);
}

}  // namespace orvanel::cli
