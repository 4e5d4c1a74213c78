// Reads and writes TIFF files in memory.
#ifndef ORVANEL_FILES_TIFF_MEMORY_H
#define ORVANEL_FILES_TIFF_MEMORY_H

#include <tiffio.h>

#include <memory>
#include <string>

#include "base/layers.h"

namespace orvanel::files {

// The bytes of a file, and the position of the next read or write.
struct TiffMemory {
  std::string bytes;
  std::size_t position = 0;
};

using TiffHandle = std::unique_ptr<TIFF, void (*)(TIFF*)>;

// Opens the file, which must outlive the handle; null if it is not TIFF. libtiff's own messages are silenced.
//   mode  as for TIFFOpen
TiffHandle OpenTiff(TiffMemory& file, const char* mode);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TIFF_MEMORY_H
