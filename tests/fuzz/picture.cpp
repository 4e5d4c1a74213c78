// Fuzzes picture files: PNG, JPEG and TIFF give light between 0 and 1, or a message.
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/error.h"
#include "files/pictures/picture_file.h"
#include "files/pictures/stb_decoder.h"
#include "targets/object_picture.h"
#if ORVANEL_WITH_JPEG
#include "files/pictures/jpeg_decoder.h"
#endif
#if ORVANEL_WITH_TIFF
#include "files/pictures/tiff_decoder.h"
#endif
#include "tests/fuzz/memory_file.h"

using namespace orvanel;
using namespace orvanel::files;

namespace {

// Pictures that are large, but not refused for it, would only cost time.
bool IsLarge(const DecodedPicture& header) { return header.width > 512 || header.height > 512; }

bool IsLarge(const std::string& bytes) {
  if (IsLarge(StbHeader(bytes))) return true;
#if ORVANEL_WITH_JPEG
  if (IsLarge(JpegHeader(bytes))) return true;
#endif
#if ORVANEL_WITH_TIFF
  if (IsLarge(TiffHeader(bytes))) return true;
#endif
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const orvanel::fuzz::MemoryFile file;
  if (IsLarge(std::string(reinterpret_cast<const char*>(data), size))) return 0;
  file.Hold(data, size);
  try {
    const DecodedPicture picture = ReadPictureFile(file.name());
    ORVANEL_REQUIRE(picture.width >= 1 && picture.height >= 1);
    ORVANEL_REQUIRE(picture.channels >= 1 && picture.channels <= 4);
    ORVANEL_REQUIRE(picture.bits == 8 || picture.bits == 16);
    ORVANEL_REQUIRE(picture.samples.size() == static_cast<std::size_t>(picture.width) *
                                                  static_cast<std::size_t>(picture.height) *
                                                  static_cast<std::size_t>(picture.channels));
    const ObjectPicture whole = PixelsAsTheyAre(picture, {});
    ORVANEL_REQUIRE(whole.channels.size() == (picture.channels < 3 ? 1U : 3U));
    for (const Plane& channel : whole.channels) {
      ORVANEL_REQUIRE(channel.columns() == picture.width && channel.rows() == picture.height);
      for (const double light : channel) ORVANEL_REQUIRE(light >= 0.0 && light <= 1.0);
    }
  } catch (const Error& error) {
    ORVANEL_REQUIRE(*error.what() != '\0');
  }
  return 0;
}
