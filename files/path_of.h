// Converts file names from the program's text to paths: UTF-8 on Windows, bytes as given elsewhere.
#ifndef ORVANEL_FILES_PATH_OF_H
#define ORVANEL_FILES_PATH_OF_H

#include <filesystem>
#include <string>

#include "base/layers.h"

namespace orvanel::files {

// A path made from plain text would interpret the bytes by the locale.
inline std::filesystem::path PathOf(const std::string& name) { return std::u8string(name.begin(), name.end()); }

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PATH_OF_H
