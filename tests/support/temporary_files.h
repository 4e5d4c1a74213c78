// Makes a temporary folder, and reads and writes files in it.
#ifndef ORVANEL_TESTS_SUPPORT_TEMPORARY_FILES_H
#define ORVANEL_TESTS_SUPPORT_TEMPORARY_FILES_H

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "tests/support/temporary_folder.h"

namespace orvanel {

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

}  // namespace orvanel

#endif  // ORVANEL_TESTS_SUPPORT_TEMPORARY_FILES_H
