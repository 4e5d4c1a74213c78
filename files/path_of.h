// Names of files as the program holds them in text: UTF-8 on Windows, bytes as given elsewhere.
#ifndef ORVANEL_FILES_PATH_OF_H
#define ORVANEL_FILES_PATH_OF_H

#include <filesystem>
#include <string>

#include "base/layers.h"

namespace orvanel::files {

// Made from plain text, a path would take the bytes for those of the locale.
inline std::filesystem::path PathOf(const std::string& name) { return std::u8string(name.begin(), name.end()); }

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PATH_OF_H
