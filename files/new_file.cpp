// Stages a file beside its place, so that the last step is a rename within one folder.
#include "files/new_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>
#include <system_error>
#include <utility>

#include "base/error.h"
#include "files/errors.h"
#include "files/path_of.h"
#include "files/platform.h"

namespace orvanel::files {
namespace fs = std::filesystem;

fs::path UniqueName(const fs::path& beginning) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::random_device random;
  std::string ending = ".orvanel-";
  for (int i = 0; i < 8; ++i) ending += kDigits[random() % 16];
  return fs::path(beginning).concat(ending);
}

std::error_code WriteNewFile(const fs::path& file, const std::string& bytes) {
  std::FILE* const stream = CreateNewFile(file);
  if (stream == nullptr) return {errno, std::generic_category()};
  bool good = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
  int reason = errno;
  if (std::fclose(stream) != 0 && good) {
    good = false;
    reason = errno;
  }
  if (good) return {};
  std::error_code ignored;
  fs::remove(file, ignored);
  return {reason, std::generic_category()};
}

void ReplaceFile(const fs::path& file, const std::string& bytes) {
  const fs::path part = fs::path(file).concat(kPart);
  std::error_code failure;
  const fs::file_status left = fs::symlink_status(part, failure);
  if (fs::is_regular_file(left)) {
    fs::remove(part, failure);
  } else if (fs::exists(left)) {
    throw Error(part.string() + ": is not a plain file and blocks a temporary file; remove it");
  }
  failure = WriteNewFile(part, bytes);
  if (failure) throw Error(file.string() + ": cannot be written: " + failure.message());
  fs::rename(part, file, failure);
  if (!failure) return;
  std::error_code ignored;
  fs::remove(part, ignored);
  throw Error(file.string() + ": cannot be put in place: " + failure.message());
}

NewFile::NewFile(std::string file, bool replace) : file_(std::move(file)) {
  std::error_code failure;
  const fs::file_status status = fs::symlink_status(PathOf(file_), failure);
  if (fs::is_directory(status)) Refuse("is a folder; give the name of a file");
  if (const fs::file_status end = fs::status(PathOf(file_), failure); fs::exists(end) && !fs::is_regular_file(end)) {
    Refuse("is not a plain file and is not replaced; give the name of a file");
  }
  if (fs::exists(status) && !replace) {
    throw FileError(FileFix::kReplaceFile, file_ + ": exists already; choose another name, or ",
                    "allow it to be replaced");
  }
  staged_ = UniqueName(PathOf(file_));
  stream_.reset(CreateNewFile(staged_));
  if (stream_) return;
  staged_.clear();  // this file exists, and belongs to another process
  Refuse(std::string("cannot be written: ") + std::strerror(errno));
}

NewFile::~NewFile() {
  if (staged_.empty()) return;
  stream_.reset();
  std::error_code ignored;
  fs::remove(staged_, ignored);
}

void NewFile::Refuse(const std::string& reason) const { throw Error(file_ + ": " + reason); }

void NewFile::Write(const std::string& text) {
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stream_.get()) != text.size()) {
    Refuse(std::string("cannot be written: ") + std::strerror(errno));
  }
}

void NewFile::Commit() {
  if (std::fclose(stream_.release()) != 0) Refuse(std::string("cannot be written: ") + std::strerror(errno));
  std::error_code failure;
  fs::rename(staged_, PathOf(file_), failure);
  if (failure) Refuse("cannot be put in place: " + failure.message());
  staged_.clear();
}

}  // namespace orvanel::files
