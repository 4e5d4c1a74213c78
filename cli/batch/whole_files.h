// Checks whether files that this program has written exist and are complete.
#ifndef ORVANEL_CLI_BATCH_WHOLE_FILES_H
#define ORVANEL_CLI_BATCH_WHOLE_FILES_H

#include <filesystem>

#include "base/layers.h"

namespace orvanel::cli {

// By the chunk at the end of every PNG file.
bool IsWholePng(const std::filesystem::path& file);

// By the length in the header of an HDF5 file of the oldest version.
bool IsWholeHdf5(const std::filesystem::path& file);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_WHOLE_FILES_H
