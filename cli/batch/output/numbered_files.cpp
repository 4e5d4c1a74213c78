// Parses and formats the numbers in names.
#include "cli/batch/output/numbered_files.h"

#include <algorithm>
#include <optional>
#include <system_error>

#include "base/error.h"
#include "files/new_file.h"

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;

std::optional<std::size_t> NumberIn(const NumberedFiles& files, std::string name) {
  if (name.ends_with(kPart)) name.resize(name.size() - std::string_view(kPart).size());
  if (!name.starts_with(files.beginning) || !name.ends_with(files.ending)) return std::nullopt;
  if (name.size() < files.beginning.size() + files.digits + files.ending.size()) return std::nullopt;
  const std::string digits =
      name.substr(files.beginning.size(), name.size() - files.beginning.size() - files.ending.size());
  constexpr std::size_t kMaxDigits = 18;
  if (digits.size() > kMaxDigits || digits.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
  return std::stoull(digits);
}

}  // namespace

fs::path NumberedFiles::Path(std::size_t number) const {
  std::string text = std::to_string(number);
  if (text.size() < digits) text.insert(0, digits - text.size(), '0');
  return folder / (beginning + text + ending);
}

std::vector<fs::path> NumberedFiles::Existing(const std::function<bool(std::size_t)>& owned) const {
  std::vector<fs::path> existing;
  std::error_code failure;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, failure), end; !failure && entry != end;
       entry.increment(failure)) {
    const auto number = NumberIn(*this, entry->path().filename().string());
    if (number && *number > 0 && owned(*number)) existing.push_back(entry->path());
  }
  if (failure) throw Error(folder.string() + ": cannot be read: " + failure.message());
  std::sort(existing.begin(), existing.end());
  return existing;
}

void ClearAway(const std::vector<fs::path>& existing, bool replace) {
  if (existing.empty()) return;
  if (!replace) {
    throw Error(existing.front().string() + ": exists already; choose another name, or let --force remove it" +
                (existing.size() > 1 ? " and " + std::to_string(existing.size() - 1) + " more" : ""));
  }
  for (const fs::path& file : existing) {
    std::error_code failure;
    fs::remove(file, failure);
    if (failure) throw Error(file.string() + ": cannot be removed: " + failure.message());
  }
}

}  // namespace orvanel::cli
