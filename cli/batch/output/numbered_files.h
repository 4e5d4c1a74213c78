// Names, finds and removes files beside the results that have the number of a row or chunk in their names.
#ifndef ORVANEL_CLI_BATCH_OUTPUT_NUMBERED_FILES_H
#define ORVANEL_CLI_BATCH_OUTPUT_NUMBERED_FILES_H

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "base/layers.h"

namespace orvanel::cli {

// Names of the form prefix + digits + ending. ReplaceFile writes the files.
struct NumberedFiles {
  std::filesystem::path folder;
  std::string beginning, ending;
  std::size_t digits;

  std::filesystem::path Path(std::size_t number) const;

  // Existing files whose number `owned` accepts, including partial ones.
  std::vector<std::filesystem::path> Existing(const std::function<bool(std::size_t number)>& owned) const;
};

// Removes existing files if `replace`; otherwise throws Error with the first name.
void ClearAway(const std::vector<std::filesystem::path>& existing, bool replace);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_OUTPUT_NUMBERED_FILES_H
