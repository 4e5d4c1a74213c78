// Tells whether files that this program has written are there and have all their bytes.
#ifndef ORVANEL_CLI_BATCH_WHOLE_FILES_H
#define ORVANEL_CLI_BATCH_WHOLE_FILES_H

#include <filesystem>

#include "base/layers.h"

namespace orvanel::cli {

// By the chunk that ends every PNG file.
bool IsWholePng(const std::filesystem::path& file);

// By the length that an HDF5 file of the oldest version has in its head.
bool IsWholeHdf5(const std::filesystem::path& file);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_WHOLE_FILES_H
