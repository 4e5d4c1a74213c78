// Decodes rows of 16-bit samples unchanged, and everything else by libtiff's conversion to 8-bit colours.
#include "files/pictures/tiff_decoder.h"

#include <cstdlib>

#include "files/tiff_memory.h"

namespace orvanel::files {
namespace {

int Tag(TIFF* tiff, ttag_t tag) {
  std::uint16_t value = 0;
  return TIFFGetFieldDefaulted(tiff, tag, &value) == 1 ? value : 0;
}

DecodedPicture Header(TIFF* tiff) {
  std::uint32_t width = 0, height = 0;
  TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
  TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
  if (width > INT32_MAX || height > INT32_MAX) return {};
  DecodedPicture header;
  header.width = static_cast<int>(width);
  header.height = static_cast<int>(height);
  header.bits = Tag(tiff, TIFFTAG_BITSPERSAMPLE) > 8 ? 16 : 8;
  const int photometric = Tag(tiff, TIFFTAG_PHOTOMETRIC);
  const bool grey = photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE;
  header.channels = grey ? 1 : 3;
  const int stored = photometric == PHOTOMETRIC_PALETTE ? 1 : header.channels;
  return Tag(tiff, TIFFTAG_SAMPLESPERPIXEL) == stored ? header : DecodedPicture();
}

bool HasDeepRows(TIFF* tiff) {
  return Tag(tiff, TIFFTAG_BITSPERSAMPLE) == 16 && Tag(tiff, TIFFTAG_SAMPLEFORMAT) == SAMPLEFORMAT_UINT &&
         Tag(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_CONTIG &&
         Tag(tiff, TIFFTAG_ORIENTATION) == ORIENTATION_TOPLEFT &&
         (Tag(tiff, TIFFTAG_PHOTOMETRIC) == PHOTOMETRIC_MINISBLACK ||
          Tag(tiff, TIFFTAG_PHOTOMETRIC) == PHOTOMETRIC_RGB);
}

// An empty picture if rows cannot be read: libtiff refuses to read rows of a tiled picture.
DecodedPicture DeepRows(TIFF* tiff, DecodedPicture picture) {
  const std::size_t row = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels);
  if (static_cast<std::size_t>(TIFFScanlineSize(tiff)) != 2 * row) return {};
  picture.samples.resize(row * static_cast<std::size_t>(picture.height));
  for (int y = 0; y < picture.height; ++y) {
    std::uint16_t* const out = picture.samples.data() + static_cast<std::size_t>(y) * row;
    if (TIFFReadScanline(tiff, out, static_cast<std::uint32_t>(y), 0) != 1) return {};
  }
  return picture;
}

DecodedPicture EightBits(TIFF* tiff, DecodedPicture picture) {
  constexpr int kStopAtErrors = 1;
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
  if (TIFFReadRGBAImageOriented(tiff, static_cast<std::uint32_t>(picture.width),
                                static_cast<std::uint32_t>(picture.height), pixels.data(), ORIENTATION_TOPLEFT,
                                kStopAtErrors) != 1) {
    return {};
  }
  const auto add = [&picture](std::uint32_t value) {
    picture.samples.push_back(static_cast<std::uint16_t>(257 * value));
  };
  picture.samples.reserve(pixels.size() * static_cast<std::size_t>(picture.channels));
  for (const std::uint32_t pixel : pixels) {
    add(TIFFGetR(pixel));
    if (picture.channels == 1) continue;
    add(TIFFGetG(pixel));
    add(TIFFGetB(pixel));
  }
  return picture;
}

}  // namespace

DecodedPicture TiffHeader(const std::string& bytes) {
  TiffMemory file{bytes};
  const TiffHandle tiff = OpenTiff(file, "r");
  return tiff == nullptr ? DecodedPicture() : Header(tiff.get());
}

DecodedPicture TiffDecode(const std::string& bytes) {
  TiffMemory file{bytes};
  const TiffHandle tiff = OpenTiff(file, "r");
  if (tiff == nullptr) return {};
  const DecodedPicture header = Header(tiff.get());
  if (HasDeepRows(tiff.get())) return DeepRows(tiff.get(), header);
  return header.bits == 8 ? EightBits(tiff.get(), header) : DecodedPicture();
}

}  // namespace orvanel::files
