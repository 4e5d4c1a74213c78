// Stages results in a temporary folder and moves them.
#include "files/output_folder.h"

#include <algorithm>
#include <random>
#include <string>
#include <utility>

#include "base/error.h"
#include "files/errors.h"
#include "files/input_file.h"
#include "files/json_text.h"
#include "files/new_file.h"

namespace orvanel::files {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(const fs::path& place, const std::string& reason) {
  throw Error(place.string() + ": " + reason);
}

bool Contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// Whether a name stays inside its folder.
bool IsPlainName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && fs::path(name) == fs::path(name).filename();
}

// The regular files in a folder that the summary of an earlier run lists; none without such a summary.
std::vector<std::string> FilesOfEarlierRun(const fs::path& folder) {
  std::vector<std::string> files;
  constexpr std::size_t kLargest = std::size_t{16} << 20;
  std::error_code failure;
  if (!fs::is_regular_file(folder / kSummaryFile, failure)) return files;
  const Json summary = JsonOf(ReadBytes((folder / kSummaryFile).string(), kLargest)).value_or(Json());
  if (!summary.is_object() || summary.value("program", Json()) != "orvanel") return files;
  for (const auto& name : summary.value("files", Json::array())) {
    if (!name.is_string() || !IsPlainName(name)) continue;
    if (fs::is_regular_file(fs::symlink_status(folder / std::string(name)))) files.push_back(name);
  }
  return files;
}

// A new folder with an unpredictable name.
fs::path MakeTemporaryFolder(const fs::path& beginning) {
  std::random_device random;
  while (true) {
    fs::path folder = beginning;
    folder += ".orvanel-" + std::to_string(random());
    std::error_code failure;
    if (fs::create_directory(folder, failure)) return folder;
    if (failure) Refuse(beginning.parent_path(), "cannot create a folder here: " + failure.message());
  }
}

void Move(const fs::path& from, const fs::path& to) {
  std::error_code failure;
  fs::rename(from, to, failure);
  if (failure) Refuse(to, "cannot be put in place: " + failure.message());
}

}  // namespace

OutputFolder::OutputFolder(const fs::path& place, std::vector<std::string> names, bool replace)
    : names_(std::move(names)) {
  std::error_code failure;
  place_ = fs::absolute(place, failure);
  if (!failure) place_ = fs::weakly_canonical(place_, failure);
  if (failure) Refuse(place, failure.message());
  if (!place_.has_filename()) place_ = place_.parent_path();  // "folder/"
  const fs::file_status status = fs::status(place_, failure);
  if (failure && status.type() == fs::file_type::none) Refuse(place, failure.message());
  exists_ = fs::exists(status);
  if (exists_ && !fs::is_directory(status)) {
    Refuse(place, "is a file; give the name of a folder for the pictures");
  }
  if (!exists_) {
    if (!fs::is_directory(place_.parent_path(), failure)) {
      Refuse(place,
             "cannot be created, since " + place_.parent_path().string() + " is not a folder; create that first");
    }
    staging_ = MakeTemporaryFolder(place_);
    return;
  }
  const bool empty = fs::is_empty(place_, failure);
  if (failure) Refuse(place, "cannot be read: " + failure.message());
  if (!empty && !replace) {
    throw FileError(FileFix::kReplaceFolder, place.string() + ": is a folder with files in it; choose another, or ",
                    "allow those of an earlier run to be replaced");
  }
  earlier_ = FilesOfEarlierRun(place_);
  for (const std::string& name : names_) {
    if (fs::exists(fs::symlink_status(place_ / name)) && !Contains(earlier_, name)) {
      Refuse(place_ / name, "is not from an earlier run and is not replaced; move it away");
    }
  }
  // Inside the folder, since it may be the root of a file system.
  staging_ = MakeTemporaryFolder(place_ / "");
}

OutputFolder::~OutputFolder() {
  std::error_code ignored;
  if (!staging_.empty()) fs::remove_all(staging_, ignored);
}

void OutputFolder::Add(const std::string& name, const std::string& bytes) {
  if (!Contains(names_, name)) throw std::logic_error("file not announced: " + name);
  const std::error_code failure = WriteNewFile(staging_ / name, bytes);
  if (failure) Refuse(place_ / name, "cannot be written: " + failure.message());
}

void OutputFolder::Commit() {
  if (!exists_) {
    Move(staging_, place_);
    staging_.clear();
    return;
  }
  // The summary is moved first. If the rest is interrupted, all files are known as this program's.
  Move(staging_ / kSummaryFile, place_ / kSummaryFile);
  for (const std::string& name : names_) {
    if (name != kSummaryFile) Move(staging_ / name, place_ / name);
  }
  for (const std::string& name : earlier_) {
    std::error_code failure;
    if (!Contains(names_, name) && !fs::remove(place_ / name, failure) && failure) {
      Refuse(place_ / name, "cannot be removed: " + failure.message());
    }
  }
  fs::remove(staging_);
  staging_.clear();
}

}  // namespace orvanel::files
