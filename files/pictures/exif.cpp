// Walks the segments of a JPEG file to the first Exif directory. Sources: ITU-T T.81; Exif 2.3.
#include "files/pictures/exif.h"

#include <cstdint>
#include <functional>

namespace orvanel::files {
namespace {

// The number in `count` bytes from `position`, which must exist.
std::uint32_t Number(std::string_view bytes, std::size_t position, std::size_t count, bool littleEndian = false) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = littleEndian ? count - 1 - i : i;
    number = number << 8 | static_cast<std::uint8_t>(bytes[position + at]);
  }
  return number;
}

constexpr std::uint32_t kStartOfScan = 0xda;

// Iterates over the segments of a JPEG file before its first scan: marker and data.
void VisitSegments(std::string_view bytes,
                   const std::function<void(std::uint32_t marker, std::string_view data)>& visit) {
  std::size_t position = 2;
  while (position + 4 <= bytes.size() && Number(bytes, position, 1) == 0xff) {
    const std::uint32_t marker = Number(bytes, position + 1, 1);
    if (marker == 0xff) {  // fill bytes
      ++position;
      continue;
    }
    const std::size_t length = Number(bytes, position + 2, 2);
    if (length < 2 || position + 2 + length > bytes.size()) break;
    visit(marker, bytes.substr(position + 4, length - 2));
    position += 2 + length;
    if (marker == kStartOfScan) break;
  }
}

// The orientation in the first directory of Exif data; 1 if it is missing.
int OrientationOfExif(std::string_view exif) {
  constexpr std::uint32_t kOrientation = 0x0112, kShort = 3;
  constexpr std::size_t kHeader = 8, kEntry = 12;
  if (exif.size() < kHeader) return 1;
  const bool little = exif.starts_with("II");
  const std::size_t directory = Number(exif, 4, 4, little);
  if (directory > exif.size() - 2) return 1;
  const std::size_t entries = Number(exif, directory, 2, little);
  for (std::size_t i = 0; i < entries; ++i) {
    const std::size_t entry = directory + 2 + i * kEntry;
    if (entry + kEntry > exif.size()) break;
    if (Number(exif, entry, 2, little) != kOrientation || Number(exif, entry + 2, 2, little) != kShort) continue;
    const std::uint32_t orientation = Number(exif, entry + 8, 2, little);
    return orientation >= 1 && orientation <= 8 ? static_cast<int>(orientation) : 1;
  }
  return 1;
}

}  // namespace

int OrientationOfJpeg(std::string_view bytes) {
  constexpr std::uint32_t kApplication1 = 0xe1;
  constexpr std::string_view kExif("Exif\0\0", 6);
  int orientation = 1;
  VisitSegments(bytes, [&](std::uint32_t marker, std::string_view data) {
    if (marker == kApplication1 && data.starts_with(kExif)) orientation = OrientationOfExif(data.substr(kExif.size()));
  });
  return orientation;
}

}  // namespace orvanel::files
