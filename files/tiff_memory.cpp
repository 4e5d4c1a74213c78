// Implements the five functions through which libtiff accesses a file.
#include "files/tiff_memory.h"

#include <algorithm>
#include <cstring>

namespace orvanel::files {
namespace {

TiffMemory& Memory(thandle_t handle) { return *static_cast<TiffMemory*>(handle); }

tmsize_t ReadBytes(thandle_t handle, void* out, tmsize_t count) {
  TiffMemory& file = Memory(handle);
  if (file.position >= file.bytes.size()) return 0;
  const std::size_t available = std::min(static_cast<std::size_t>(count), file.bytes.size() - file.position);
  std::memcpy(out, file.bytes.data() + file.position, available);
  file.position += available;
  return static_cast<tmsize_t>(available);
}

tmsize_t WriteBytes(thandle_t handle, void* data, tmsize_t count) {
  TiffMemory& file = Memory(handle);
  const std::size_t end = file.position + static_cast<std::size_t>(count);
  if (end > file.bytes.size()) file.bytes.resize(end);
  std::memcpy(file.bytes.data() + file.position, data, static_cast<std::size_t>(count));
  file.position = end;
  return count;
}

toff_t Seek(thandle_t handle, toff_t offset, int whence) {
  TiffMemory& file = Memory(handle);
  const std::size_t from = whence == SEEK_CUR ? file.position : whence == SEEK_END ? file.bytes.size() : 0;
  file.position = from + offset;
  return file.position;
}

int Close(thandle_t) { return 0; }

toff_t Size(thandle_t handle) { return Memory(handle).bytes.size(); }

}  // namespace

TiffHandle OpenTiff(TiffMemory& file, const char* mode) {
  TIFFSetErrorHandler(nullptr);
  TIFFSetWarningHandler(nullptr);
  return {TIFFClientOpen("TIFF", mode, &file, ReadBytes, WriteBytes, Seek, Close, Size, nullptr, nullptr), TIFFClose};
}

}  // namespace orvanel::files
