// A temporary folder, and what is in its files.
#ifndef ORVANEL_TESTS_CLI_TEMPORARY_FOLDER_H
#define ORVANEL_TESTS_CLI_TEMPORARY_FOLDER_H

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "tests/support/temporary_folder.h"

namespace orvanel::cli {

using test::TemporaryFolder;

inline void Write(const std::filesystem::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

inline std::string Read(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The names in a folder.
inline std::set<std::string> Names(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.insert(entry.path().filename().string());
  return names;
}

}  // namespace orvanel::cli

#endif  // ORVANEL_TESTS_CLI_TEMPORARY_FOLDER_H
