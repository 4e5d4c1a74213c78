// Checks files before decoding, so that decoders get only complete files of a bearable size, and pictures after it.
#include "files/pictures/picture_file.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/error.h"
#include "files/input_file.h"
#include "files/pictures/png_damage.h"
#include "files/pictures/stb_decoder.h"
#if ORVANEL_WITH_JPEG
#include "files/pictures/exif.h"
#include "files/pictures/jpeg_decoder.h"
#endif
#if ORVANEL_WITH_TIFF
#include "files/pictures/tiff_decoder.h"
#endif

namespace orvanel::files {
namespace {

// Above the files of cameras; decoding takes up to 16 bytes per pixel.
constexpr std::size_t kLargestFile = std::size_t{256} << 20;  // bytes
constexpr int kLongestSide = 32768;
constexpr std::int64_t kMaxPixels = 64'000'000;

[[noreturn]] void Refuse(const std::string& file, const std::string& reason) { throw Error(file + ": " + reason); }

std::string ReadPicture(const std::string& file) {
  std::string bytes = ReadBytes(file, kLargestFile);
  if (bytes.size() > kLargestFile) Refuse(file, "is larger than 256 MiB; save the picture smaller");
  if (bytes.empty()) Refuse(file, "is empty; save the picture again");
  return bytes;
}

#if ORVANEL_WITH_JPEG
// Turned and mirrored by Exif's orientation: 2 to 4 keep rows as rows, 5 to 8 turn rows into columns.
DecodedPicture Upright(DecodedPicture picture, int orientation) {
  if (orientation == 1) return picture;
  const bool turned = orientation >= 5;
  const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const bool fromBelow = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  DecodedPicture upright = picture;
  if (turned) std::swap(upright.width, upright.height);
  const auto width = static_cast<std::size_t>(picture.width), height = static_cast<std::size_t>(picture.height);
  const auto channels = static_cast<std::size_t>(picture.channels);
  std::size_t out = 0;
  for (std::size_t y = 0; y < static_cast<std::size_t>(upright.height); ++y) {
    for (std::size_t x = 0; x < static_cast<std::size_t>(upright.width); ++x) {
      std::size_t column = turned ? y : x, row = turned ? x : y;
      if (fromRight) column = width - 1 - column;
      if (fromBelow) row = height - 1 - row;
      for (std::size_t c = 0; c < channels; ++c) {
        upright.samples[out++] = picture.samples[(row * width + column) * channels + c];
      }
    }
  }
  return upright;
}

DecodedPicture JpegUpright(const std::string& bytes) {
  DecodedPicture picture = JpegDecode(bytes);
  return picture.width == 0 ? picture : Upright(std::move(picture), OrientationOfJpeg(bytes));
}
#endif

// A kind of file: how to recognise it, read its header and decode it.
struct Kind {
  const char* name;
  const char* library;                                           // the library that decodes it
  std::vector<std::string_view> beginnings;                      // the first bytes of its files
  DecodedPicture (*header)(const std::string& bytes) = nullptr;  // null if the program is built without the library
  DecodedPicture (*decode)(const std::string& bytes) = nullptr;
};

std::vector<Kind> Kinds() {
  Kind png{"PNG", "stb_image", {"\x89PNG\r\n\x1a\n"}, StbHeader, StbDecode};
  Kind jpeg{"JPEG", "libturbojpeg", {"\xff\xd8\xff"}};
  Kind tiff{"TIFF", "libtiff", {std::string_view("II*\0", 4), std::string_view("MM\0*", 4)}};
#if ORVANEL_WITH_JPEG
  jpeg.header = JpegHeader;
  jpeg.decode = JpegUpright;
#endif
#if ORVANEL_WITH_TIFF
  tiff.header = TiffHeader;
  tiff.decode = TiffDecode;
#endif
  return {png, jpeg, tiff};
}

Kind KindOf(const std::string& file, const std::string& bytes) {
  for (Kind& kind : Kinds()) {
    const auto begins = [&bytes](std::string_view beginning) { return bytes.starts_with(beginning); };
    if (std::none_of(kind.beginnings.begin(), kind.beginnings.end(), begins)) continue;
    if (kind.decode != nullptr) return kind;
    Refuse(file, std::string("is a ") + kind.name + " picture, and this program was built without " + kind.library +
                     "; save it as PNG");
  }
  Refuse(file, "is not a PNG, JPEG or TIFF picture; save it as PNG");
}

void RefuseLarge(const std::string& file, const DecodedPicture& header) {
  if (header.width <= kLongestSide && header.height <= kLongestSide &&
      std::int64_t{header.width} * header.height <= kMaxPixels) {
    return;
  }
  Refuse(file, "has " + std::to_string(header.width) + " x " + std::to_string(header.height) +
                   " pixels; at most 64 million are taken, and 32768 a side: scale it down, 256 x 256 are used");
}

}  // namespace

DecodedPicture ReadPictureFile(const std::string& file) {
  const std::string bytes = ReadPicture(file);
  const Kind kind = KindOf(file, bytes);
  const std::string name = kind.name;
  if (name == "PNG" && !DamageOfPng(bytes).empty()) {
    Refuse(file, "is a PNG picture that " + std::string(DamageOfPng(bytes)) + "; copy it again from where it came");
  }
  const auto refuseUndecoded = [&file, &name](const DecodedPicture& picture) {
    if (picture.width >= 1 && picture.height >= 1) return;
    Refuse(file, "is a " + name +
                     " picture that cannot be decoded: it is cut short, damaged or of a rare kind; save it as PNG");
  };
  const DecodedPicture header = kind.header(bytes);
  refuseUndecoded(header);
  RefuseLarge(file, header);
  if (name == "PNG" && PngHoldsTooMuch(bytes)) {
    Refuse(file, "is a PNG picture whose data are more than its size in pixels allows; save it again");
  }
  DecodedPicture picture = kind.decode(bytes);
  refuseUndecoded(picture);
  return picture;
}

ObjectPicture ReadObjectPicture(const PictureRequest& request) {
  return FitToField(ReadPictureFile(request.file), request);
}

ObjectPicture ReadWholePicture(const PictureRequest& request) {
  const DecodedPicture picture = ReadPictureFile(request.file);
  if (picture.width > kLongestWholeSide || picture.height > kLongestWholeSide) {
    Refuse(request.file, "has " + std::to_string(picture.width) + " x " + std::to_string(picture.height) +
                             " pixels; at most " + std::to_string(kLongestWholeSide) +
                             " a side keep their size: scale it down, or leave out its angular size");
  }
  return PixelsAsTheyAre(picture, request);
}

}  // namespace orvanel::files
