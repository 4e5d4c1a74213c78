// Staging beside the place, so that the last step is a rename within one folder.
#include "cli/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>
#include <system_error>
#include <utility>

#include "cli/error.h"
#include "cli/path_of.h"
#include "cli/platform.h"

namespace orvanel::cli {
namespace fs = std::filesystem;

fs::path UniqueName(const fs::path& beginning) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::random_device random;
  std::string ending = ".orvanel-";
  for (int i = 0; i < 8; ++i) ending += kDigits[random() % 16];
  return fs::path(beginning).concat(ending);
}

std::error_code WriteFile(const fs::path& file, const std::string& bytes) {
  std::FILE* const stream = OpenForWriting(file);
  bool good = stream != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
  int reason = errno;
  if (stream != nullptr && std::fclose(stream) != 0 && good) {
    good = false;
    reason = errno;
  }
  return good ? std::error_code() : std::error_code(reason, std::generic_category());
}

void ReplaceFile(const fs::path& file, const std::string& bytes) {
  const fs::path part = fs::path(file).concat(kPart);
  const char* unable = ": cannot be written: ";
  std::error_code failure = WriteFile(part, bytes);
  if (!failure) {
    unable = ": cannot be put in place: ";
    fs::rename(part, file, failure);
  }
  if (!failure) return;
  std::error_code ignored;
  fs::remove(part, ignored);
  throw Error(file.string() + unable + failure.message());
}

NewFile::NewFile(std::string file, bool replace) : file_(std::move(file)) {
  std::error_code failure;
  const fs::file_status status = fs::symlink_status(PathOf(file_), failure);
  if (fs::is_directory(status)) Refuse("is a folder; give the name of a file");
  if (const fs::file_status end = fs::status(PathOf(file_), failure); fs::exists(end) && !fs::is_regular_file(end)) {
    Refuse("is no ordinary file and is not replaced; give the name of a file");
  }
  if (fs::exists(status) && !replace) Refuse("is there already; choose another name, or let --force replace it");
  staged_ = UniqueName(PathOf(file_));
  errno = 0;
  stream_.open(staged_, std::ios::binary);
  if (!stream_) Refuse(std::string("cannot be written: ") + std::strerror(errno));
}

NewFile::~NewFile() {
  if (staged_.empty()) return;
  stream_.close();
  std::error_code ignored;
  fs::remove(staged_, ignored);
}

void NewFile::Refuse(const std::string& reason) const { throw Error(file_ + ": " + reason); }

void NewFile::Write(const std::string& text) {
  errno = 0;
  if (!stream_.write(text.data(), static_cast<std::streamsize>(text.size()))) {
    Refuse(std::string("cannot be written: ") + std::strerror(errno));
  }
}

void NewFile::Commit() {
  errno = 0;
  stream_.close();
  if (!stream_) Refuse(std::string("cannot be written: ") + std::strerror(errno));
  std::error_code failure;
  fs::rename(staged_, PathOf(file_), failure);
  if (failure) Refuse("cannot be put in place: " + failure.message());
  staged_.clear();
}

}  // namespace orvanel::cli
